// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLabel>
#include <QString>
#include <QStringList>

#include <functional>

/// Runs `open`, which shows a modal dialog and returns when it is closed, uses that dialog
/// meanwhile and then presses Escape. False when no dialog showed or Escape left it open.
bool use_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use);

/// Clicks the button with this text; false when there is none that takes clicks.
bool press(const QDialog &dialog, const QString &text);

/// Replaces what a text field holds, from the clipboard where keys do not type it.
void enter(QWidget *text_field, const QString &text);

/// The label of a field, the text of a button or what assistive technology reads out.
QString label_of(const QDialog &dialog, const QWidget *widget);

/// The field with this label, or null.
template <typename field_t>
field_t *field(const QDialog &dialog, const QString &label)
{
    for (field_t *const candidate : dialog.findChildren<field_t *>()) {
        if (label_of(dialog, candidate) == label)
            return candidate;
    }
    return nullptr;
}

/// Goes once around a dialog with Tab, presses Return at each stop and returns their labels.
QStringList press_return_everywhere(const QDialog &dialog);
