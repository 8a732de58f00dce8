// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

class QAction;
class QMenu;
class ui_central_widget_t;

/// The program's window: the menus, and the check that an instrument is connected before anything
/// is done with it.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent);

public slots:
    void scpi_btn_click_slot();
    void upgrade_btn_click_slot();
    void color_btn_click_slot();
    void lan_btn_click_slot();
    /// Factory use: no menu leads here, it is invoked by name.
    void product_btn_click_slot();
    void about_btn_click_slot();

private:
    QMenu *build_file_menu();
    QMenu *build_help_menu();
    void build_tool_menu();
    void connect_actions();
    bool device_ready_check();
    /// `device_ready_check`, and that the link is USB; `refusal` tells the user that it is not.
    bool usb_ready_check(const QString &refusal);

    ui_central_widget_t *central_widget = nullptr;
    QMenu *tool_menu = nullptr;
    QAction *scpi_action = nullptr;
    QAction *upgrade_action = nullptr;
    QAction *color_action = nullptr;
    QAction *lan_action = nullptr;
    QAction *about_action = nullptr;
};
