// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>

#include <functional>

/// Runs `open`, which shows a modal dialog and returns when it is closed, uses that dialog
/// meanwhile and then presses Escape. False when no dialog showed or Escape left it open.
bool use_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use);

/// The label of a field, the text of a button or what assistive technology reads out.
QString label_of(const QDialog &dialog, const QWidget *widget);

/// Clicks the button with this text or, for "label=value", puts a value into a field: with keys, or
/// from the clipboard where a key does not type it. False when there is nothing to click or fill.
bool perform(const QDialog &dialog, const QString &step);

/// What the field with this label shows; " off" follows in a disabled list.
QString shown(const QDialog &dialog, const QString &label);

/// Goes once around a dialog with Tab, presses Return at each stop and returns their labels.
QStringList press_return_everywhere(const QDialog &dialog);
