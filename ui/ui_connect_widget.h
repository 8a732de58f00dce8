// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QStringList>

class QBoxLayout;
class QGroupBox;
class QIPLineEdit;
class QRadioButton;
class ui_combo_box_t;
class ui_label_t;
class ui_push_button_t;

/// The strip through which the user finds an instrument, connects it and sees which one it is.
class ui_connect_widget_t : public QFrame
{
    Q_OBJECT

public:
    explicit ui_connect_widget_t(QWidget *parent);

signals:
    /// An instrument is connected; 0 stands for a product type that it did not tell.
    void device_connect_msg(int product_type);
    void device_disconnect_msg();

public slots:
    void use_usb_type();
    void use_lan_type();
    /// Connects the instrument at the typed address if it is one of ours.
    void lan_apply_slot();
    /// Lists the instruments on USB; the first one found is connected at once.
    void device_rescan_slot();
    /// Connects the instrument at `index` of the list.
    void device_change_slot(int index);
    void device_disconnect_slot();

private:
    void build_link_buttons();
    void build_usb_group();
    void build_lan_group();
    QBoxLayout *build_status_row();
    QBoxLayout *build_link_row();
    void connect_widgets();

    void list_devices();
    void add_device(const QString &name, int position);
    QString connect_lan(const QString &address);
    void show_instrument(bool usb);

    ui_label_t *status_label;
    ui_label_t *link_label;
    QRadioButton *usb_radio;
    QRadioButton *lan_radio;
    ui_combo_box_t *device_list;
    ui_push_button_t *rescan_btn;
    QIPLineEdit *ip_edit;
    ui_push_button_t *apply_btn;
    QGroupBox *usb_group;
    QGroupBox *lan_group;
    /// What the device list shows, in its order.
    QStringList device_names;
};
