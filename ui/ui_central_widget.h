// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QMap>

class port_frame_t;
class ui_connect_widget_t;
class ui_port_widget_t;

/// The main window's content: the connection panel above the front panel of the connected product.
class ui_central_widget_t : public QFrame
{
    Q_OBJECT

public:
    explicit ui_central_widget_t(QWidget *parent);

    /// The number of VNA ports, 2 or 4, of the product that is shown; 2 before the first.
    int vna_port_count() const noexcept;
    /// Shows the current product again, with what its instrument reports now.
    void refresh();

public slots:
    /// Shows the front panel of the product type, or the blank one for a type that is unknown.
    void change_port_widget_slot(int product_type);

private:
    void add_port_frames();

    ui_connect_widget_t *connect_widget;
    ui_port_widget_t *empty_panel;
    /// By product type.
    QMap<int, port_frame_t *> port_frames;
    int current_product_type = 0;
    int vna_ports = 2;
};
