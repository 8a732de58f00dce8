// SPDX-License-Identifier: MIT
#include "ui/widget/ui_tool_button.h"

#include <QStyle>
#include <QVariant>

namespace {

constexpr QSize state_icon_size(24, 24);

} // namespace

ui_tool_button_t::ui_tool_button_t(QWidget *parent) : QToolButton(parent) {}

void ui_tool_button_t::set_state(const QString &name, const QString &value)
{
    state_text = value;
    setProperty(name.toLatin1().constData(), value);
    // Qt evaluates property selectors only when a widget is polished.
    style()->unpolish(this);
    style()->polish(this);

    const QIcon icon = state_icons.value(value);
    if (!icon.isNull()) {
        setIcon(icon);
        setIconSize(state_icon_size);
    }
}

void ui_tool_button_t::set_icons(const QMap<QString, QIcon> &icons, const QSize &size)
{
    state_icons = icons;
    setIconSize(size);
}
