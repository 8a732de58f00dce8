// SPDX-License-Identifier: MIT
#include "tests/support/window_driver.h"

#include "app/application_look.h"
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "ui/port_control.h"
#include "ui/ui_empty_widget.h"
#include "ui/widget/q_ip_line_edit.h"
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_label.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>
#include <QtTest/QTest>

namespace {

constexpr int window_width = 1000;
constexpr int window_height = 400;

template <typename widget_t>
QList<widget_t *> visible_children(const QWidget &parent)
{
    QList<widget_t *> visible;
    for (widget_t *const child : parent.findChildren<widget_t *>())
        if (child->isVisible())
            visible.append(child);
    return visible;
}

/// True when some pixel of the widget, as it is painted, has exactly one of these colours.
bool paints(const QWidget &widget, const QVector<QColor> &colors)
{
    const QImage image = const_cast<QWidget &>(widget).grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (colors.contains(QColor(image.pixel(x, y))))
                return true;
    return false;
}

} // namespace

window_driver_t::window_driver_t() : window(nullptr)
{
    drv_command_t::instance()->set_link_mode(link_modes::not_connected);
    drv_device_t::instance()->set_usb_link(true);
    window.resize(window_width, window_height);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the main window does not show");
}

QAbstractButton *window_driver_t::button(const QString &text) const
{
    for (QAbstractButton *const candidate : visible_children<QAbstractButton>(window))
        if (candidate->text() == text)
            return candidate;
    return nullptr;
}

bool window_driver_t::click(const QString &text)
{
    QAbstractButton *const target = button(text);
    if (target == nullptr || !target->isEnabled())
        return false;
    QTest::mouseClick(target, Qt::LeftButton);
    return true;
}

QMenu *window_driver_t::menu(const QString &title) const
{
    for (QMenu *const candidate : window.findChildren<QMenu *>())
        if (candidate->title() == title)
            return candidate;
    return nullptr;
}

bool window_driver_t::choose(const QString &title, const QString &entry)
{
    QMenu *const opened = menu(title);
    if (opened == nullptr || !entries(title).contains(entry))
        return false;
    QMenuBar *const bar = window.menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                      bar->actionGeometry(opened->menuAction()).center());
    for (QAction *const action : opened->actions())
        if (action->text() == entry)
            QTest::mouseClick(opened, Qt::LeftButton, Qt::NoModifier,
                              opened->actionGeometry(action).center());
    return true;
}

QStringList window_driver_t::entries(const QString &title) const
{
    QStringList texts;
    for (const QAction *const action : menu(title)->actions())
        if (action->isVisible())
            texts.append(action->text());
    return texts;
}

void window_driver_t::connect_lan(const QString &address)
{
    click("LAN");
    const QList<QLineEdit *> octets =
        window.findChild<QIPLineEdit *>()->findChildren<QLineEdit *>();
    for (QLineEdit *const part : octets)
        part->clear();
    QLineEdit *const octet = octets.first();
    QTest::mouseClick(octet, Qt::LeftButton);
    QTest::keyClicks(octet, address.section(QLatin1Char('.'), 0, 0));
    for (const QChar &key : address.mid(address.indexOf(QLatin1Char('.'))))
        QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
    click("Apply");
}

bool window_driver_t::connect_usb(const QString &serial)
{
    click("USB");
    click("Rescan");
    const auto list = visible_children<ui_combo_box_t>(window).value(0);
    for (int index = 0; index < list->count(); ++index) {
        if (list->itemText(index).contains(serial)) {
            choose_item(*list, index);
            return list->currentIndex() == index;
        }
    }
    return false;
}

QString window_driver_t::panel() const
{
    for (const QFrame *const frame : visible_children<QFrame>(window)) {
        QString name = frame->metaObject()->className();
        if (dynamic_cast<const port_control_t *>(frame) != nullptr ||
            qobject_cast<const ui_empty_widget_t *>(frame) != nullptr)
            return name;
    }
    return {};
}

QString window_driver_t::status_text() const
{
    return visible_children<ui_label_t>(window).at(0)->text();
}

QString window_driver_t::link_text() const
{
    return visible_children<ui_label_t>(window).at(1)->text();
}

QStringList window_driver_t::devices() const
{
    const auto *const list = window.findChild<ui_combo_box_t *>();
    QStringList names;
    for (int index = 0; index < list->count(); ++index)
        names.append(list->itemText(index));
    return names;
}

QStringList
window_driver_t::ports_where(const std::function<bool(const QAbstractButton &)> &condition) const
{
    QStringList ports;
    for (const QToolButton *const port : visible_children<QToolButton>(window))
        if (condition(*port))
            ports.append(port->text());
    return ports;
}

QStringList window_driver_t::painted(const QVector<QColor> &colors) const
{
    return ports_where([&colors](const QAbstractButton &port) { return paints(port, colors); });
}

QStringList window_driver_t::lit_ports() const
{
    return painted(
        {QColor("blue"), QColor("deepskyblue"), QColor("greenyellow"), QColor("magenta")});
}

QStringList window_driver_t::disabled_ports() const
{
    return ports_where([](const QAbstractButton &port) { return !port.isEnabled(); });
}

QStringList window_driver_t::take_boxes()
{
    return boxes.take_boxes();
}

void choose_item(QComboBox &list, int index)
{
    QTest::keyClick(&list, Qt::Key_F4);
    QAbstractItemView *const view = list.view();
    QTest::keyClick(view, Qt::Key_Home);
    for (int row = 0; row < index; ++row)
        QTest::keyClick(view, Qt::Key_Down);
    QTest::keyClick(view, Qt::Key_Return);
}

int run_gui_test(int argc, char **argv, const std::function<int(int, char **)> &run)
{
    scale_with_display();
    const QApplication application(argc, argv);
    apply_application_look();
    return run(argc, argv);
}
