// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/window_driver.h"

#include <QDialog>

#include <functional>
#include <memory>

/// The hands of a sweep's user on the real main window. Whatever the program answers, they go on:
/// a dialog that does not come up is left out.
class program_user_t
{
public:
    /// A new main window in place of the one before, not connected.
    void open_window();
    /// The window that is open.
    window_driver_t &driver() { return *opened; }

    /// Clicks buttons, as far as they are there.
    void click(const QStringList &buttons);
    void connect_lan();
    void connect_usb();
    /// Routes, takes the route away, routes again and resets.
    void use_panel();
    /// Resets; true when clicks on A and 3 light them then, and only them.
    bool routes();
    /// Performs steps in the dialog of an entry of the menu Tool.
    void use_dialog(const QString &menu_entry, const QStringList &steps);
    /// Upgrades with a package; returns when the upgrade has ended. Ends the program when it does
    /// not.
    void upgrade(const QString &package);

private:
    std::unique_ptr<window_driver_t> opened;
};

/// Runs `open`. If that brings up a dialog, and not a mere message, uses it and closes it.
void with_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use);
