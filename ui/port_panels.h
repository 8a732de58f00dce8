// SPDX-License-Identifier: MIT
#pragma once

#include "ui/port_control.h"
#include "ui/port_frame.h"
#include "ui/port_layout.h"

/// Declares the front panel of one product: a class with its own meta-object, whose name the
/// panel's style sheet selects and whose slots can be invoked by name. Its layout is one of
/// `port_layouts`.
#define CORVANE_PORT_CONTROL(class_name, layout)                                                   \
    class class_name final : public port_control_t                                                 \
    {                                                                                              \
        Q_OBJECT                                                                                   \
    public:                                                                                        \
        explicit class_name(QWidget *parent, const QString &object_name = {},                      \
                            const QString &style_sheet = {})                                       \
            : port_control_t(port_layouts::layout, parent, object_name, style_sheet)               \
        {                                                                                          \
            connect_slots();                                                                       \
        }                                                                                          \
    public Q_SLOTS:                                                                                \
        void reset_btn_slot() { reset(); }                                                         \
        void vna_port_btn_click_slot(QAbstractButton *button) { click_vna_port(button); }          \
        void test_port_btn_click_slot(QAbstractButton *button) { click_test_port(button); }        \
        void device_connect_slot() override { refresh(); }                                         \
    };

/// Declares the frame around the front panel of one product.
#define CORVANE_PORT_FRAME(class_name, control_class_name)                                         \
    class class_name final : public port_frame_t                                                   \
    {                                                                                              \
        Q_OBJECT                                                                                   \
    public:                                                                                        \
        explicit class_name(QWidget *parent)                                                       \
            : port_frame_t(                                                                        \
                  #control_class_name,                                                             \
                  [](QWidget *group, const QString &object_name,                                   \
                     const QString &style_sheet) -> port_control_t * {                             \
                      return new control_class_name(group, object_name, style_sheet);              \
                  },                                                                               \
                  parent)                                                                          \
        {                                                                                          \
        }                                                                                          \
    };

CORVANE_PORT_CONTROL(ui_21port_control_widget_t, tmx21)
CORVANE_PORT_CONTROL(ui_22port_control_widget_t, tmx22)
CORVANE_PORT_CONTROL(ui_24port_control_widget_t, tmx24)
CORVANE_PORT_CONTROL(ui_42port_control_widget_t, tmx42)
CORVANE_PORT_CONTROL(ui_44port_control_widget_t, tmx44)

CORVANE_PORT_FRAME(ui_21port_widget_t, ui_21port_control_widget_t)
CORVANE_PORT_FRAME(ui_22port_widget_t, ui_22port_control_widget_t)
CORVANE_PORT_FRAME(ui_24port_widget_t, ui_24port_control_widget_t)
CORVANE_PORT_FRAME(ui_42port_widget_t, ui_42port_control_widget_t)
CORVANE_PORT_FRAME(ui_44port_widget_t, ui_44port_control_widget_t)
