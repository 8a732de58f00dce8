// SPDX-License-Identifier: MIT
#include "ui/ui_about_dialog.h"

#include "ui/help_viewer.h"
#include "ui/program_version.h"
#include "ui/widget/ui_label.h"
#include "ui/widget/ui_push_button.h"

#include <QPointer>
#include <QProcess>
#include <QVBoxLayout>

namespace {

constexpr QSize box_size(280, 200);
constexpr QSize logo_size(32, 32);

ui_label_t *create_label(const QString &text, QWidget *parent)
{
    auto *const label = new ui_label_t(parent);
    label->setText(text);
    return label;
}

} // namespace

ui_about_dialog_t::ui_about_dialog_t(QWidget *parent) : QDialog(parent)
{
    setFixedSize(box_size);
    setWindowTitle(tr("About"));
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    auto *const rows = new QVBoxLayout(this);
    rows->addWidget(create_logo());
    rows->addWidget(create_label(tr("\tVersion: %1").arg(QLatin1String(program_version)), this));
    rows->addWidget(create_label(tr("\tBuild: %1").arg(QLatin1String(program_build_date)), this));
    rows->addWidget(create_acknowledgment_button());
}

/// A button only for its icon beside its text; it takes neither clicks nor keys.
ui_push_button_t *ui_about_dialog_t::create_logo()
{
    auto *const logo = new ui_push_button_t(this);
    logo->setObjectName(QStringLiteral("aboutLogo"));
    logo->setIcon(QIcon(QStringLiteral(":/image/norvale.ico")));
    logo->setText(tr("Corvane"));
    logo->setIconSize(logo_size);
    logo->setAttribute(Qt::WA_TransparentForMouseEvents);
    logo->setFocusPolicy(Qt::NoFocus);
    logo->setAutoDefault(false);
    logo->setStyleSheet(QStringLiteral(
        "background:rgba(240,240,255,0);border-radius:0px;padding:0px 0px 0px 0px;"));
    return logo;
}

ui_push_button_t *ui_about_dialog_t::create_acknowledgment_button()
{
    auto *const button = new ui_push_button_t(this);
    button->setObjectName(QStringLiteral("aboutAck"));
    button->setText(tr("Open-source acknowledgment"));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this] { open_acknowledgment(); });
    return button;
}

/// Whether the viewer starts is not waited for, and not reported.
void ui_about_dialog_t::open_acknowledgment()
{
    // One for all about boxes. It belongs to the box that needed it first and goes with that box.
    static QPointer<QProcess> viewer;
    if (viewer.isNull()) {
        viewer = new QProcess(this);
        // What a viewer prints is of no use here, and unread it would pile up.
        viewer->setProcessChannelMode(QProcess::ForwardedChannels);
    }
    if (viewer->state() != QProcess::NotRunning)
        return;
    const viewer_command_t command = acknowledgment_viewer();
    viewer->start(command.program, command.arguments, QIODevice::ReadWrite);
}
