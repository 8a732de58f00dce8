// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>

#include <cstdint>

class QLineEdit;
class QProgressBar;
class ui_push_button_t;
class upgrade_thread_t;

/// The dialog in which the user picks a firmware package, starts the upgrade of the connected
/// instrument and follows it.
///
/// Making one asks the instrument which packages it accepts. During a transfer it does not close
/// but says so; once the end has been told, it closes when the instrument has been rebooted. Only
/// its destruction, which waits for the reboot, and the end of the session stop a transfer. It does
/// not keep a program alive whose main window is closed.
class ui_upgrade_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_upgrade_dialog_t(QWidget *parent = nullptr);

signals:
    // For users of the class; the dialog itself does not emit them.
    void sendShowMsg(QString message);
    void upgrade_begin_msg();
    void upgrade_end_msg();

public slots:
    /// Lets the user choose a package. A cancelled choice forgets the one before, although the
    /// field goes on showing it.
    void browse_btn_click_slot();
    /// Checks the package and starts the upgrade; while one runs, starts nothing.
    void begin_btn_click_slot();
    /// A segment of `total` bytes begins.
    void init_progress_bar_slot(ulong total, uint type);
    /// `done` bytes of the segment are sent or, with `ok` false, the upgrade has failed.
    void set_progress_bar_slot(ulong done, bool ok);
    void upgrade_success_slot();

public:
    void reject() override;

private:
    void build_widgets();
    void connect_widgets();
    void show_percent(int percent);
    void tell_end(const QString &text);

    QString path;
    QLineEdit *path_edit;
    ui_push_button_t *browse_btn;
    ui_push_button_t *begin_btn;
    QProgressBar *progress_bar;
    upgrade_thread_t *thread;
    std::uint32_t segment_bytes = 0;
    /// From the start of the thread until the user has been told how it ended.
    bool transferring = false;
};
