// SPDX-License-Identifier: MIT
#include "ui/port_control.h"

#include "drv/drv_command.h"
#include "ui/instrument_traffic.h"
#include "ui/led_color.h"
#include "ui/port_veil.h"
#include "ui/second_press_filter.h"
#include "ui/widget/ui_push_button.h"
#include "ui/widget/ui_tool_button.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int port_button_width = 75;
constexpr int port_button_height = 30;
constexpr int port_spacing = 3;
constexpr int block_margin = 4;
constexpr int line_spacing = 4;
constexpr int panel_margin = 8;
constexpr int row_spacing = 10;

const QString idle_color = QStringLiteral("white");

bool instrument_is_open()
{
    return drv_command_t::instance()->link_mode() == link_modes::connected;
}

bool add_route(const QString &letter, const QString &label)
{
    return drv_command_t::instance()->add_route(letter.toStdString(), label.toStdString());
}

/// Gives a port button what all of them share.
void set_up_port_button(QToolButton *button, const QString &text, const QString &accessible_name)
{
    button->setText(text);
    button->setAccessibleName(accessible_name);
    button->setFixedSize(port_button_width, port_button_height);
    set_text_color(button, idle_color);
    button->installEventFilter(new second_press_filter_t(button));
}

} // namespace

void set_text_color(QWidget *widget, const QString &color)
{
    const QString style = QStringLiteral("color:%1;font-size:28px;").arg(color);
    // Setting a style sheet again costs as much as setting another one.
    if (widget->styleSheet() != style)
        widget->setStyleSheet(style);
}

port_control_t::port_control_t(const port_layout_t &layout, QWidget *parent,
                               const QString &object_name, const QString &style_sheet)
    : QFrame(parent),
      layout_data(layout),
      test_buttons{{QStringLiteral("0"), nullptr}},
      port_colors(layout.default_colors)
{
    // Before there are buttons: a sheet that comes later styles each of them again.
    setObjectName(object_name);
    setStyleSheet(style_sheet);
    for (const QString &letter : layout_data.routed_ports)
        routes.insert(letter, nullptr);
    build_vna_buttons();
    build_test_blocks();
    build_reset_button();
    build_veil();
    set_tab_order();

    auto *const top_layout = new QHBoxLayout;
    top_layout->addStretch(1);
    top_layout->addWidget(reset_btn);

    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(panel_margin, panel_margin, panel_margin, panel_margin);
    rows->setSpacing(line_spacing);
    rows->addLayout(top_layout);
    rows->addLayout(vna_layout);
    rows->addSpacing(row_spacing);
    rows->addLayout(test_layout);
}

void port_control_t::connect_slots()
{
    connect(reset_btn, SIGNAL(clicked(bool)), this, SLOT(reset_btn_slot()));
    connect(&vna_group, SIGNAL(buttonClicked(QAbstractButton *)), this,
            SLOT(vna_port_btn_click_slot(QAbstractButton *)));
    connect(&test_group, SIGNAL(buttonClicked(QAbstractButton *)), this,
            SLOT(test_port_btn_click_slot(QAbstractButton *)));
}

void port_control_t::build_vna_buttons()
{
    vna_layout = new QHBoxLayout;
    for (const QString &letter : layout_data.vna_ports) {
        auto *const button = new ui_tool_button_t(this);
        set_up_port_button(button, letter, tr("VNA port %1").arg(letter));
        vna_buttons.insert(letter, button);
        vna_group.addButton(button, -1);
        vna_layout->addWidget(button);
    }
}

void port_control_t::build_test_blocks()
{
    test_layout = new QGridLayout;
    test_layout->setVerticalSpacing(line_spacing);
    for (const port_block_t &block : layout_data.blocks) {
        test_blocks.append(build_block(block.first_port));
        test_layout->addWidget(test_blocks.last(), block.row, block.column);
    }
}

QGroupBox *port_control_t::build_block(int first_port)
{
    auto *const box = new QGroupBox(this);
    auto *const ports = new QHBoxLayout(box);
    ports->setContentsMargins(block_margin, block_margin, block_margin, block_margin);
    ports->setSpacing(port_spacing);
    for (int port = first_port; port < first_port + ports_per_block; ++port) {
        const QString label = QString::number(port);
        auto *const button = new QToolButton(box);
        set_up_port_button(button, label, tr("Test port %1").arg(label));
        test_buttons.insert(label, button);
        test_group.addButton(button, -1);
        ports->addWidget(button);
    }
    return box;
}

void port_control_t::build_reset_button()
{
    reset_btn = new ui_push_button_t(this);
    reset_btn->setText(tr("Reset"));
    reset_btn->setStyleSheet(QStringLiteral("font-size:20px;"));
    reset_btn->setFocusPolicy(Qt::TabFocus);
}

/// Test ports are disabled by block.
void port_control_t::build_veil()
{
    auto *const veil = new port_veil_t(this);
    for (ui_tool_button_t *const button : qAsConst(vna_buttons))
        veil->watch(button);
    for (QGroupBox *const block : qAsConst(test_blocks))
        veil->watch(block);
}

/// VNA ports first, then the test ports in the order of their numbers, then Reset.
void port_control_t::set_tab_order()
{
    QVector<QWidget *> order;
    for (ui_tool_button_t *const button : qAsConst(vna_buttons))
        order.append(button);
    for (int port = 1; QToolButton *const button = test_buttons.value(QString::number(port));
         ++port)
        order.append(button);
    order.append(reset_btn);
    for (int index = 1; index < order.size(); ++index)
        setTabOrder(order.at(index - 1), order.at(index));
}

void port_control_t::refresh()
{
    const instrument_traffic_t traffic;
    refresh_port_colors();
    refresh_routes();
}

void port_control_t::reset()
{
    if (!instrument_is_open())
        return;
    const instrument_traffic_t traffic;
    for (const QString &letter : layout_data.vna_ports)
        add_route(letter, QStringLiteral("0"));
    refresh();
    enable_all_ports();
}

void port_control_t::click_vna_port(QAbstractButton *button)
{
    if (!instrument_is_open())
        return;
    const QString letter = button->text();
    if (routes[letter] != nullptr) {
        const instrument_traffic_t traffic;
        add_route(letter, QStringLiteral("0"));
        refresh_routes();
        return;
    }
    for (const int block : layout_data.unreachable_blocks.value(letter))
        test_blocks.at(block)->setEnabled(false);
    disable_other_vna_ports(letter);
    set_text_color(button, port_colors[letter]);
    selected_vna_port = letter;
}

void port_control_t::click_test_port(QAbstractButton *button)
{
    if (!instrument_is_open())
        return;
    const QString owner = routes.key(qobject_cast<QToolButton *>(button));
    if (selected_vna_port.isEmpty()) {
        if (!owner.isEmpty())
            click_vna_port(vna_buttons[owner]);
        return;
    }
    if (!owner.isEmpty())
        return;
    const instrument_traffic_t traffic;
    add_route(selected_vna_port, button->text());
    refresh_routes();
    enable_all_ports();
    selected_vna_port.clear();
}

void port_control_t::refresh_port_colors()
{
    for (auto color = port_colors.begin(); color != port_colors.end(); ++color) {
        std::string reply;
        drv_command_t::instance()->get_color(color.key().toStdString(), reply);
        if (const led_color_t *const reported = find_led_color(reply))
            color.value() = QLatin1String(reported->display);
    }
}

/// Everything is white but what the instrument reports as routed. The buttons are painted once all
/// is known, so that one which stays as it is costs nothing.
void port_control_t::refresh_routes()
{
    QMap<QWidget *, QString> lit;
    for (auto route = routes.begin(); route != routes.end(); ++route) {
        route.value() = reported_route(route.key());
        if (route.value() == nullptr)
            continue;
        const QString color = port_colors[route.key()];
        lit.insert(vna_buttons[route.key()], color);
        lit.insert(route.value(), color);
    }
    paint_ports(lit);
}

/// The button of the test port to which the instrument says that the VNA port is routed; null when
/// there is none. A VNA port without a button has no route that the panel could show or remove.
QToolButton *port_control_t::reported_route(const QString &letter)
{
    drv_command_t *const command = drv_command_t::instance();
    std::string label;
    if (layout_data.route_query == route_query_t::four_ports)
        command->route_of(letter.toStdString(), label);
    else
        command->route_of_ab(letter.toStdString(), label);
    return vna_buttons.contains(letter) ? test_buttons[QString::fromStdString(label)] : nullptr;
}

void port_control_t::paint_ports(const QMap<QWidget *, QString> &lit)
{
    for (ui_tool_button_t *const button : qAsConst(vna_buttons))
        set_text_color(button, lit.value(button, idle_color));
    for (QToolButton *const button : qAsConst(test_buttons))
        if (button != nullptr)
            set_text_color(button, lit.value(button, idle_color));
}

void port_control_t::enable_all_ports()
{
    for (QGroupBox *const block : qAsConst(test_blocks))
        block->setEnabled(true);
    for (ui_tool_button_t *const button : qAsConst(vna_buttons))
        button->setEnabled(true);
}

void port_control_t::disable_other_vna_ports(const QString &letter)
{
    for (auto button = vna_buttons.begin(); button != vna_buttons.end(); ++button)
        if (button.key() != letter)
            button.value()->setEnabled(false);
}
