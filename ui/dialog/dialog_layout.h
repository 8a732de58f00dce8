// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>

class QBoxLayout;
class QDialog;
class QLayout;
class QPushButton;
class QString;

/// Fills a dialog with the look that the dialogs share: one group box around everything.
void set_group_layout(QDialog *dialog, const QString &title, QLayout *content);

/// `content` above a row of buttons at the right. The buttons do nothing on Return: what these
/// dialogs do to an instrument cannot be undone.
QBoxLayout *layout_above_buttons(QLayout *content, std::initializer_list<QPushButton *> buttons);
