// SPDX-License-Identifier: MIT
#pragma once

#include "app/main_window.h"
#include "tests/support/box_watcher.h"

#include <QAbstractButton>
#include <QColor>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class QComboBox;
class QMenu;

/// The real main window and the hands and eyes of its user.
class window_driver_t
{
public:
    window_driver_t();

    /// Clicks the visible button with this text; false when there is none that takes clicks.
    bool click(const QString &text);
    /// The visible button with this text, or null.
    QAbstractButton *button(const QString &text) const;
    /// Chooses an entry of a menu with the mouse; false when it is not shown.
    bool choose(const QString &title, const QString &entry);
    /// What the menu shows, top to bottom.
    QStringList entries(const QString &title) const;
    /// Selects LAN, types the address and presses Apply.
    void connect_lan(const QString &address);
    /// Rescans, which connects the first instrument, and picks the one with this serial number.
    bool connect_usb(const QString &serial);
    /// The class name of the front panel that is shown.
    QString panel() const;
    QString status_text() const;
    QString link_text() const;
    QStringList devices() const;
    /// The port buttons whose text is painted in one of these colours, VNA ports first.
    QStringList painted(const QVector<QColor> &colors) const;
    /// The port buttons that are painted in any colour of a VNA port.
    QStringList lit_ports() const;
    /// The port buttons that do not take clicks.
    QStringList disabled_ports() const;
    /// The message boxes since the last call.
    QStringList take_boxes();

    MainWindow window;

private:
    QMenu *menu(const QString &title) const;
    QStringList ports_where(const std::function<bool(const QAbstractButton &)> &condition) const;

    box_watcher_t boxes;
};

/// Opens the list of a combo box and chooses an item with the keyboard.
void choose_item(QComboBox &list, int index);

/// Starts a test program's `QApplication` with the program's look and runs one test object.
int run_gui_test(int argc, char **argv, const std::function<int(int, char **)> &run);

/// A test program's `main` for a test class that needs the program's look.
#define CORVANE_GUI_TEST_MAIN(test_class)                                                          \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return run_gui_test(argc, argv, [](int count, char **arguments) {                          \
            test_class test;                                                                       \
            return QTest::qExec(&test, count, arguments);                                          \
        });                                                                                        \
    }
