// SPDX-License-Identifier: MIT
#include "app/application_look.h"

#include "ui/widget/ui_focus_ring.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QIcon>
#include <QPalette>
#include <QResource>
#include <QStringList>
#include <QToolTip>

/// Registers the resources that are linked in with this library; a macro that has to stand outside
/// of any namespace.
static void register_resources()
{
    Q_INIT_RESOURCE(resources);
}

namespace {

struct resource_registration_t
{
    resource_registration_t() { register_resources(); }
};

const resource_registration_t registered_before_main;

QString read_style_sheets(const QStringList &paths)
{
    QString sheet;
    for (const QString &path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            sheet += QString::fromUtf8(file.readAll());
    }
    return sheet;
}

/// The font is used where it lies in the program, not from copies that Qt would keep of a file.
/// Only the family is set: sizes are the style sheet's business.
void apply_font(const QString &path)
{
    const int id = QFontDatabase::addApplicationFontFromData(QResource(path).uncompressedData());
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty())
        return;
    QFont font;
    font.setFamily(families.first());
    QApplication::setFont(font);
}

/// The style sheet makes texts white everywhere, so what it gives no ground of its own, such as
/// Qt's file dialog and tool tips, needs a dark one. The progress bar's text is black.
void apply_dark_palette()
{
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(0x26, 0x26, 0x28));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    dark.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2e));
    dark.setColor(QPalette::Highlight, QColor(0x40, 0x9e, 0xff));
    dark.setColor(QPalette::ToolTipBase, QColor(0x26, 0x26, 0x28));
    QApplication::setPalette(dark);
    QApplication::setPalette(light, "QProgressBar");
    QToolTip::setPalette(dark);
}

} // namespace

void scale_with_display()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void apply_application_look()
{
    qApp->setStyleSheet(read_style_sheets({QStringLiteral(":/ui.qss")}));
    QApplication::setStyle(QStringLiteral("Fusion"));
    apply_dark_palette();
    apply_font(QStringLiteral(":/front/SourceHanSansCN-Bold.otf"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/image/norvale.ico")));
    new ui_focus_ring_t(qApp);
}
