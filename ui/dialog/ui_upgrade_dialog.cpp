// SPDX-License-Identifier: MIT
#include "ui/dialog/ui_upgrade_dialog.h"

#include "drv/drv_command.h"
#include "ui/dialog/dialog_layout.h"
#include "ui/information_box.h"
#include "ui/instrument_traffic.h"
#include "ui/widget/ui_push_button.h"
#include "upgrade/accepted_id.h"
#include "upgrade/package_reader.h"
#include "upgrade/upgrade_file.h"
#include "upgrade/upgrade_thread.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>

namespace {

constexpr int full_percent = 100;

void read_accepted_ids()
{
    const instrument_traffic_t traffic;
    upgrade_id_t record = accepts_nothing;
    drv_command_t::instance()->upgrade_id_read(record);
    set_accepted_ids(record);
}

/// Percentage of a segment in 32 bits, which wrap above 42,949,672 bytes. An empty segment has 0.
std::uint32_t percent_of(std::uint32_t done, std::uint32_t total)
{
    return total != 0 ? done * full_percent / total : 0;
}

} // namespace

ui_upgrade_dialog_t::ui_upgrade_dialog_t(QWidget *parent) : QDialog(parent)
{
    build_widgets();
    setAttribute(Qt::WA_QuitOnClose, false);
    read_accepted_ids();
    thread = new upgrade_thread_t(this);
    connect_widgets();
}

void ui_upgrade_dialog_t::build_widgets()
{
    path_edit = new QLineEdit;
    path_edit->setPlaceholderText(QStringLiteral(" "));
    path_edit->setAlignment(Qt::AlignLeft);
    path_edit->setReadOnly(true);
    path_edit->setAccessibleName(tr("Package"));
    browse_btn = new ui_push_button_t;
    browse_btn->setText(tr("Browse"));
    browse_btn->setAutoDefault(false);
    begin_btn = new ui_push_button_t;
    begin_btn->setText(tr("Begin"));
    begin_btn->setAutoDefault(false);
    progress_bar = new QProgressBar;
    progress_bar->setValue(0);

    auto *const file_row = new QHBoxLayout;
    file_row->addWidget(path_edit);
    file_row->addWidget(browse_btn);
    auto *const rows = new QVBoxLayout;
    rows->addLayout(file_row);
    rows->addWidget(begin_btn);
    rows->addWidget(progress_bar);
    set_group_layout(this, tr("Firmware Upgrade "), rows);
}

void ui_upgrade_dialog_t::connect_widgets()
{
    connect(browse_btn, SIGNAL(clicked()), this, SLOT(browse_btn_click_slot()),
            Qt::DirectConnection);
    connect(begin_btn, SIGNAL(clicked()), this, SLOT(begin_btn_click_slot()), Qt::DirectConnection);
    connect(thread, SIGNAL(init_progress_bar(ulong, uint)), this,
            SLOT(init_progress_bar_slot(ulong, uint)), Qt::QueuedConnection);
    connect(thread, SIGNAL(send_upgrade_state(ulong, bool)), this,
            SLOT(set_progress_bar_slot(ulong, bool)), Qt::QueuedConnection);
    connect(thread, SIGNAL(send_upgrade_success()), this, SLOT(upgrade_success_slot()),
            Qt::QueuedConnection);
}

void ui_upgrade_dialog_t::browse_btn_click_slot()
{
    // Windows' own dialog leaves the program in the chosen folder; what opens the acknowledgment
    // would be looked for there.
    const QString working_folder = QDir::currentPath();
    path = QFileDialog::getOpenFileName(nullptr, tr("Select upgrade files"), QStringLiteral("/"),
                                        QStringLiteral("*.ADS"));
    QDir::setCurrent(working_folder);
    QFile file(path);
    // Opening anything else could wait for ever.
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) {
        file.close();
        path_edit->setText(path);
    }
}

void ui_upgrade_dialog_t::begin_btn_click_slot()
{
    const std::string name = to_package_name(path);
    set_upgrade_file_name(name);
    upgrade_header_t header{};
    if (name.empty() || !read_upgrade_header(to_file_path(name), header)) {
        show_information(this, tr("Upgrade file error!"));
        return;
    }
    // The end of the program closes the box without an answer.
    const bool begin =
        QMessageBox::information(this, tr("Information"), tr("Upgrade begin!"), QMessageBox::Ok,
                                 QMessageBox::Ok) == QMessageBox::Ok;
    if (begin && !thread->isRunning()) {
        transferring = true;
        thread->start(QThread::InheritPriority);
    }
}

/// A progress bar paints each value at once. Segments that nothing is sent for come faster than
/// that, so that painting is left to the event loop.
void ui_upgrade_dialog_t::show_percent(int percent)
{
    progress_bar->setUpdatesEnabled(false);
    progress_bar->setValue(percent);
    progress_bar->setUpdatesEnabled(true);
}

void ui_upgrade_dialog_t::tell_end(const QString &text)
{
    transferring = false;
    thread->quit();
    show_information(this, text);
}

void ui_upgrade_dialog_t::init_progress_bar_slot(ulong total, uint /*type*/)
{
    segment_bytes = static_cast<std::uint32_t>(total);
    progress_bar->setRange(0, full_percent);
    show_percent(1);
}

void ui_upgrade_dialog_t::set_progress_bar_slot(ulong done, bool ok)
{
    if (!ok) {
        tell_end(tr("Upgrade FAIL!"));
        return;
    }
    const auto percent =
        static_cast<int>(percent_of(static_cast<std::uint32_t>(done), segment_bytes));
    if (percent == full_percent)
        show_percent(full_percent - 1);
    else if (percent == 0 && done != 0)
        show_percent(1);
    else
        show_percent(percent);
}

void ui_upgrade_dialog_t::upgrade_success_slot()
{
    show_percent(full_percent);
    tell_end(tr("Upgrade OK!"));
}

/// A dialog whose transfer is over stays until the thread has ended, because the link is the
/// thread's until then. The end of the session is no question: it waits for the thread here.
void ui_upgrade_dialog_t::reject()
{
    const bool session_ends = qGuiApp->isSavingSession();
    if (transferring && !session_ends) {
        show_information(this, tr("Upgrading!"));
        return;
    }
    if (session_ends) {
        thread->requestInterruption();
        thread->wait();
    }
    const bool running = thread->isRunning();
    browse_btn->setEnabled(!running);
    begin_btn->setEnabled(!running);
    if (running) {
        connect(thread, SIGNAL(finished()), this, SLOT(reject()), Qt::UniqueConnection);
        return;
    }
    disconnect(thread, SIGNAL(finished()), this, SLOT(reject()));
    QDialog::reject();
}
