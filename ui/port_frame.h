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
    /// The front panel in the frame, which owns it; the first call makes it.
    port_control_t *control_widget();

protected:
    explicit port_frame_t(QWidget *parent);

private:
    virtual port_control_t *make_control(QWidget *parent) const = 0;

    QGroupBox *group;
    port_control_t *control = nullptr;
};
