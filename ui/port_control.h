// SPDX-License-Identifier: MIT
#pragma once

#include "ui/port_layout.h"

#include <QButtonGroup>
#include <QFrame>
#include <QMap>
#include <QString>
#include <QVector>

class QAbstractButton;
class QBoxLayout;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QToolButton;
class ui_push_button_t;
class ui_tool_button_t;

/// Paints a port button: the only way in which the panel does.
void set_text_color(QWidget *widget, const QString &color);

/// A product's front panel: one button per VNA port and per test port, and Reset.
///
/// The panel shows the routes that the instrument reports, never what it sent, and reports no
/// failure: what was refused does not light up. Each product has a class of its own that adds the
/// slots to this one (see `port_panels.h`).
class port_control_t : public QFrame
{
public:
    /// How many VNA ports have a button.
    int vna_port_count() const noexcept { return layout_data.vna_ports.size(); }

    /// Reads colours and routes from the instrument and shows them.
    virtual void device_connect_slot() = 0;

protected:
    port_control_t(const port_layout_t &layout, QWidget *parent, const QString &object_name,
                   const QString &style_sheet);

    /// Connects the buttons with the slots of the product's class; call from its constructor.
    void connect_slots();

    /// Removes every route. A VNA port that is picked stays picked.
    void reset();
    /// Picks an idle VNA port, or removes the route of a routed one.
    void click_vna_port(QAbstractButton *button);
    /// Routes the picked VNA port to a free test port; with none picked, removes the test port's
    /// route.
    void click_test_port(QAbstractButton *button);
    void refresh();

private:
    void build_vna_buttons();
    void build_test_blocks();
    QGroupBox *build_block(int first_port);
    void build_reset_button();
    void build_veil();
    void set_tab_order();

    void refresh_port_colors();
    void refresh_routes();
    QToolButton *reported_route(const QString &letter);
    void paint_ports(const QMap<QWidget *, QString> &lit);
    void enable_all_ports();
    void disable_other_vna_ports(const QString &letter);

    const port_layout_t &layout_data;
    QMap<QString, ui_tool_button_t *> vna_buttons;
    /// Holds "0", what an unrouted port reports, without a button.
    QMap<QString, QToolButton *> test_buttons;
    /// A mirror of the instrument's state, rewritten by `refresh_routes` only.
    QMap<QString, QToolButton *> routes;
    QMap<QString, QString> port_colors;
    QString selected_vna_port;
    QButtonGroup vna_group;
    QButtonGroup test_group;
    QVector<QGroupBox *> test_blocks;
    QHBoxLayout *vna_layout;
    QGridLayout *test_layout;
    ui_push_button_t *reset_btn;
};
