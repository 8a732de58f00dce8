// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

class QAction;

/// Line edit of the kit's height with a clear button on request.
class ui_line_edit_t : public QLineEdit
{
    Q_OBJECT

public:
    explicit ui_line_edit_t(QWidget *parent = nullptr);

    /// Installs the clear button, which is visible only while the field has the focus.
    /// A second call does nothing.
    void add_clear_action();

    /// Replaces the text and shows its beginning, whatever its length.
    void show_from_start(const QString &text);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool clear_installed = false;
    QAction *clear_action = nullptr;
};
