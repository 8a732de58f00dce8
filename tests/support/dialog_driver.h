// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>

#include <functional>

class QFileDialog;

// In all of these a widget's label is a button's text, that of the label before a field or else
// what assistive technology reads out.

/// Runs `open`, which shows a modal dialog and returns when it is closed, uses that dialog
/// meanwhile and then presses Escape. False when no dialog showed or Escape left it open.
bool use_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use);

/// Clicks the button with this label or, for "label=value", chooses or types a value. False when
/// there is nothing to click or fill.
bool perform(const QDialog &dialog, const QString &step);

/// What the field with this label shows; " off" follows in a disabled list.
QString shown(const QDialog &dialog, const QString &label);

/// Goes once around a dialog with Tab, presses Return at each stop and returns their labels.
QStringList press_return_everywhere(const QDialog &dialog);

/// Presses "Browse", types a path into the file dialog and presses Return, or Escape when the path
/// is empty. `look` sees the file dialog first.
bool choose_file(
    const QDialog &dialog, const QString &path,
    const std::function<void(const QFileDialog &)> &look = [](const QFileDialog &) {});
