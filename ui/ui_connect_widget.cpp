// SPDX-License-Identifier: MIT
#include "ui/ui_connect_widget.h"

#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "drv/transport.h"
#include "ui/information_box.h"
#include "ui/instrument_traffic.h"
#include "ui/widget/q_ip_line_edit.h"
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_label.h"
#include "ui/widget/ui_push_button.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>

#include <stdexcept>

namespace {

constexpr int panel_margin = 6;
constexpr int control_height = 30;
constexpr int button_width = 75;
constexpr int group_width = 900;
const QString identity_part = QStringLiteral("TMX");

enum link_button_t { usb_button = 1, lan_button = 2 };

/// The product type as a number; 0, which is no product, for a text that does not begin with one.
int product_type_of(const std::string &product_id)
{
    try {
        return std::stoi(product_id);
    } catch (const std::logic_error &) {
        return 0;
    }
}

QString identity_line(const device_info_t &info)
{
    return QString::fromStdString(info.model_name + ",Serial:" + info.serial_number +
                                  ",Version:" + info.software_version);
}

QGroupBox *build_group(const QString &title, QWidget *parent)
{
    auto *const group = new QGroupBox(title, parent);
    group->setFixedWidth(group_width);
    return group;
}

/// Fills a group with an entry that takes the room and a button.
void fill_group(QGroupBox *group, QWidget *entry, ui_push_button_t *button)
{
    entry->setFixedHeight(control_height);
    button->setFixedSize(button_width, control_height);
    auto *const row = new QHBoxLayout(group);
    row->addWidget(entry);
    row->addWidget(button);
}

} // namespace

ui_connect_widget_t::ui_connect_widget_t(QWidget *parent) : QFrame(parent)
{
    // In the order in which the Tab key visits them.
    build_link_buttons();
    build_lan_group();
    build_usb_group();
    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(panel_margin, 0, panel_margin, 0);
    rows->addLayout(build_status_row());
    rows->addLayout(build_link_row());
    connect_widgets();
    usb_radio->setChecked(true);
    use_usb_type();
}

void ui_connect_widget_t::build_link_buttons()
{
    lan_radio = new QRadioButton(tr("LAN"), this);
    usb_radio = new QRadioButton(tr("USB"), this);
    auto *const buttons = new QButtonGroup(this);
    buttons->addButton(usb_radio, usb_button);
    buttons->addButton(lan_radio, lan_button);
}

void ui_connect_widget_t::build_usb_group()
{
    usb_group = build_group(tr("Use USB"), this);
    device_list = new ui_combo_box_t(usb_group);
    device_list->setAccessibleName(tr("Instruments"));
    rescan_btn = new ui_push_button_t(usb_group);
    rescan_btn->setText(tr("Rescan"));
    fill_group(usb_group, device_list, rescan_btn);
}

void ui_connect_widget_t::build_lan_group()
{
    lan_group = build_group(tr("Use LAN"), this);
    ip_edit = new QIPLineEdit(lan_group);
    ip_edit->setAccessibleName(tr("IP address"));
    apply_btn = new ui_push_button_t(lan_group);
    apply_btn->setText(tr("Apply"));
    // Lets Return press it, too.
    apply_btn->setAutoDefault(true);
    fill_group(lan_group, ip_edit, apply_btn);
}

QBoxLayout *ui_connect_widget_t::build_status_row()
{
    status_label = new ui_label_t(this);
    status_label->setTextFormat(Qt::PlainText);
    status_label->set_elide(true);
    status_label->setText(tr("TMX is disconnected!"));
    status_label->setStyleSheet(QStringLiteral("font-size:22px"));
    link_label = new ui_label_t(this);
    link_label->setText(QStringLiteral("(/)"));
    link_label->setStyleSheet(QStringLiteral("font-size:18px;color: green;"));

    auto *const row = new QHBoxLayout;
    row->addWidget(status_label);
    row->addWidget(link_label);
    row->addStretch(1);
    return row;
}

QBoxLayout *ui_connect_widget_t::build_link_row()
{
    auto *const radios = new QVBoxLayout;
    radios->addWidget(lan_radio);
    radios->addWidget(usb_radio);
    auto *const groups = new QVBoxLayout;
    groups->addWidget(lan_group);
    groups->addWidget(usb_group);
    auto *const row = new QHBoxLayout;
    row->addLayout(radios);
    row->addLayout(groups);
    row->addStretch(1);
    return row;
}

void ui_connect_widget_t::connect_widgets()
{
    connect(rescan_btn, SIGNAL(clicked(bool)), this, SLOT(device_rescan_slot()));
    connect(apply_btn, SIGNAL(clicked(bool)), this, SLOT(lan_apply_slot()));
    connect(ip_edit, SIGNAL(returnPressed()), this, SLOT(lan_apply_slot()));
    connect(usb_radio, SIGNAL(clicked(bool)), this, SLOT(use_usb_type()));
    connect(lan_radio, SIGNAL(clicked(bool)), this, SLOT(use_lan_type()));
    connect(device_list, SIGNAL(currentIndexChanged(int)), this, SLOT(device_change_slot(int)));
}

void ui_connect_widget_t::use_usb_type()
{
    lan_group->hide();
    usb_group->show();
}

void ui_connect_widget_t::use_lan_type()
{
    usb_group->hide();
    lan_group->show();
}

void ui_connect_widget_t::device_rescan_slot()
{
    list_devices();
    if (device_list->count() == 0)
        show_information(this, tr("Target device no find!"));
}

void ui_connect_widget_t::list_devices()
{
    const instrument_traffic_t traffic;
    device_names.clear();
    device_list->clear();
    for (const found_instrument_t &instrument : transport_t::current().find())
        add_device(QString::fromStdString(instrument.name), instrument.position);
}

/// The name comes first: the list's first item is selected, and so connected, as it is added.
void ui_connect_widget_t::add_device(const QString &name, int position)
{
    device_names.append(name);
    device_list->addItem(name, position);
}

void ui_connect_widget_t::device_change_slot(int index)
{
    if (index < 0 || index >= device_names.size())
        return;
    const instrument_traffic_t traffic;
    if (transport_t::current().open(device_names.at(index).toStdString()))
        show_instrument(true);
}

void ui_connect_widget_t::lan_apply_slot()
{
    const QString address = ip_edit->text();
    if (address.split(QLatin1Char('.')).contains(QString()))
        return;
    const QString failure = connect_lan(address);
    if (!failure.isEmpty())
        show_information(this, failure);
}

/// Answers what to tell the user; empty when the instrument is connected.
QString ui_connect_widget_t::connect_lan(const QString &address)
{
    const instrument_traffic_t traffic;
    drv_device_t *const device = drv_device_t::instance();
    if (!device->visa_is_ready() || !device->lan_connect(address.toStdString()))
        return tr("Ip address no find!");
    drv_command_t *const command = drv_command_t::instance();
    std::string reply;
    // Not connected yet, so that the identity has to be asked for in spite of the link mode.
    command->query("*IDN?", reply, true);
    if (QString::fromStdString(reply).contains(identity_part, Qt::CaseInsensitive)) {
        show_instrument(false);
        return {};
    }
    command->set_link_mode(link_modes::not_connected);
    link_label->setText(QStringLiteral("(/)"));
    return tr("No target device!");
}

/// The instrument is open: reads who it is, says so and announces its product.
void ui_connect_widget_t::show_instrument(bool usb)
{
    drv_command_t *const command = drv_command_t::instance();
    command->set_link_mode(link_modes::connected);
    device_info_t info;
    command->device_info_read(info);
    status_label->setText(identity_line(info));
    // Gives the text its room before the panel's exchange, not when the event loop goes on.
    layout()->activate();
    drv_device_t::instance()->set_usb_link(usb);
    link_label->setText(usb ? QStringLiteral("(USB)") : QStringLiteral("(LAN)"));
    emit device_connect_msg(product_type_of(info.product_id));
}

void ui_connect_widget_t::device_disconnect_slot()
{
    drv_command_t::instance()->set_link_mode(link_modes::not_connected);
    link_label->setText(QStringLiteral("(/)"));
    emit device_disconnect_msg();
}
