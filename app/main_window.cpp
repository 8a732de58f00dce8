// SPDX-License-Identifier: MIT
#include "app/main_window.h"

#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "ui/dialog/ui_color_dialog.h"
#include "ui/dialog/ui_lan_dialog.h"
#include "ui/dialog/ui_product_id_dialog.h"
#include "ui/dialog/ui_scpi_dialog.h"
#include "ui/dialog/ui_upgrade_dialog.h"
#include "ui/information_box.h"
#include "ui/program_version.h"
#include "ui/ui_about_dialog.h"
#include "ui/ui_central_widget.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QList>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

namespace {

const QString website_address = QStringLiteral("https://norvale.example/");

constexpr int scpi_width_px = 450;
constexpr int upgrade_width_px = 450;
constexpr int color_width_px = 350;
constexpr int lan_width_px = 400;
constexpr int product_width_px = 350;

/// Makes a dialog, with no parent and of a fixed width, and runs it until the user closes it. What
/// its constructor takes before the parent follows the title.
template <typename dialog_t, typename... arguments_t>
void run_dialog(int width_px, const QString &title, arguments_t... arguments)
{
    dialog_t dialog(arguments..., nullptr);
    dialog.setFixedWidth(width_px);
    dialog.setWindowTitle(title);
    dialog.setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    dialog.exec();
}

/// All about boxes of this run. A closed one is only hidden: the help viewer's process may be its
/// child, and the user's viewer window would vanish with it. That is why not even the end of the
/// program destroys them.
QList<ui_about_dialog_t *> &kept_about_dialogs()
{
    static auto *const dialogs = new QList<ui_about_dialog_t *>;
    return *dialogs;
}

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent)
{
    QMenu *const file_menu = build_file_menu();
    QMenu *const help_menu = build_help_menu();
    build_tool_menu();
    for (QMenu *const menu : {file_menu, tool_menu, help_menu})
        menuBar()->addMenu(menu);
    setWindowTitle(tr("Corvane %1").arg(QLatin1String(program_version)));
    central_widget = new ui_central_widget_t(this);
    setCentralWidget(central_widget);
    connect_actions();
}

QMenu *MainWindow::build_file_menu()
{
    auto *const menu = new QMenu(tr("File"), this);
    QAction *const exit_action = menu->addAction(tr("Exit"));
    exit_action->setShortcut(QKeySequence());
    connect(exit_action, &QAction::triggered, this, [] { QCoreApplication::exit(0); });
    return menu;
}

QMenu *MainWindow::build_help_menu()
{
    auto *const menu = new QMenu(tr("Help"), this);
    about_action = menu->addAction(tr("About"));
    QAction *const website_action = menu->addAction(tr("Website"));
    website_action->setShortcut(QKeySequence());
    connect(website_action, &QAction::triggered, this,
            [] { QDesktopServices::openUrl(QUrl(website_address)); });
    return menu;
}

/// Upgrades go over USB through VISA only; whether there is a VISA library is decided here for the
/// whole run.
void MainWindow::build_tool_menu()
{
    tool_menu = new QMenu(tr("Tool"), this);
    lan_action = tool_menu->addAction(tr("LAN"));
    scpi_action = tool_menu->addAction(tr("Scpi"));
    color_action = tool_menu->addAction(tr("Color"));
    upgrade_action = tool_menu->addAction(tr("Upgrade"));
    if (!drv_device_t::instance()->visa_is_ready())
        upgrade_action->setVisible(false);
}

void MainWindow::connect_actions()
{
    const struct
    {
        QAction *action;
        const char *slot;
    } rows[] = {
        {scpi_action, SLOT(scpi_btn_click_slot())},
        {upgrade_action, SLOT(upgrade_btn_click_slot())},
        {color_action, SLOT(color_btn_click_slot())},
        {lan_action, SLOT(lan_btn_click_slot())},
        {about_action, SLOT(about_btn_click_slot())},
    };
    for (const auto &row : rows)
        connect(row.action, SIGNAL(triggered(bool)), this, row.slot);
}

bool MainWindow::device_ready_check()
{
    switch (drv_command_t::instance()->link_mode()) {
    case link_modes::not_connected:
        show_information(this, tr("Device not connected!"));
        return false;
    case link_modes::upgrading:
        show_information(this, tr("Upgrading!"));
        return false;
    default:
        return true;
    }
}

bool MainWindow::usb_ready_check(const QString &refusal)
{
    if (!device_ready_check())
        return false;
    if (!drv_device_t::instance()->is_usb_link()) {
        show_information(this, refusal);
        return false;
    }
    return true;
}

void MainWindow::scpi_btn_click_slot()
{
    if (!device_ready_check())
        return;
    run_dialog<ui_scpi_dialog_t>(scpi_width_px, tr("SCPI"));
    central_widget->refresh();
}

void MainWindow::upgrade_btn_click_slot()
{
    if (usb_ready_check(tr("Please upgrade using USB!")))
        run_dialog<ui_upgrade_dialog_t>(upgrade_width_px, tr("UPGRADE"));
}

void MainWindow::color_btn_click_slot()
{
    if (!device_ready_check())
        return;
    run_dialog<ui_color_dialog_t>(color_width_px, tr("COLOR"), central_widget->vna_port_count());
    central_widget->refresh();
}

void MainWindow::lan_btn_click_slot()
{
    if (usb_ready_check(tr("Please change LAN using USB!")))
        run_dialog<ui_lan_dialog_t>(lan_width_px, tr("LAN"));
}

void MainWindow::product_btn_click_slot()
{
    if (device_ready_check())
        run_dialog<ui_product_id_dialog_t>(product_width_px, tr("PRODUCT"));
}

void MainWindow::about_btn_click_slot()
{
    auto *const dialog = new ui_about_dialog_t(nullptr);
    kept_about_dialogs().append(dialog);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}
