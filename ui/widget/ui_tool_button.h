// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QMap>
#include <QString>
#include <QToolButton>

/// Tool button whose look follows a named state: a style-sheet property and an icon per value.
class ui_tool_button_t : public QToolButton
{
    Q_OBJECT

public:
    explicit ui_tool_button_t(QWidget *parent = nullptr);

    /// Sets the dynamic property `name` to `value`, so that a selector like `[name="value"]`
    /// applies, and shows the value's icon at 24 × 24. A value without an icon keeps the icon.
    void set_state(const QString &name, const QString &value);

    /// Stores the icon of each state value. Shows nothing yet: the next set_state() picks from it.
    void set_icons(const QMap<QString, QIcon> &icons, const QSize &size);

    /// The value last given to set_state(); empty before.
    QString state() const { return state_text; }

private:
    QString state_text;
    QMap<QString, QIcon> state_icons;
};
