// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QGroupBox;
class port_control_t;

/// The group box "PORT" around a product's front panel. Each product has a class of its own that
/// makes the panel (see `port_panels.h`).
class port_frame_t : public QFrame
{
public:
    /// The front panel in the frame, which owns it.
    port_control_t *control_widget() const noexcept;

protected:
    explicit port_frame_t(QWidget *parent);

    /// Puts the panel on its picture and into the frame.
    void set_control_widget(port_control_t *control);

private:
    port_control_t *control = nullptr;
};

/// Makes `picture` the border image of `widget`, which gets the object name, so that no widget
/// inside inherits it.
void set_panel_picture(QWidget *widget, const QString &object_name, const QString &picture);

/// A group box titled "PORT" around a panel; it has no parent yet.
QGroupBox *build_port_group(QWidget *panel);
