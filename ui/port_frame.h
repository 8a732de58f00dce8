// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QString>

class port_control_t;

/// The group box "PORT" around a product's front panel. Each product has a class of its own that
/// says how the panel is made (see `port_panels.h`).
class port_frame_t : public QFrame
{
public:
    /// The front panel in the frame, which owns it; never null.
    port_control_t *control_widget() const { return control; }

protected:
    /// Makes a front panel with a parent, an object name and a style sheet.
    using make_control_t = port_control_t *(*)(QWidget *parent, const QString &object_name,
                                               const QString &style_sheet);

    /// The front panel's style sheet selects it by its class name.
    port_frame_t(const char *control_class_name, make_control_t make_control, QWidget *parent);

private:
    port_control_t *control;
};
