// SPDX-License-Identifier: MIT
#include "ui/widget/ui_line_edit.h"

#include "ui/widget/widget_height.h"

#include <QAction>
#include <QIcon>

ui_line_edit_t::ui_line_edit_t(QWidget *parent) : QLineEdit(parent)
{
    setFixedHeight(widget_height);
}

void ui_line_edit_t::add_clear_action()
{
    if (clear_installed)
        return;
    clear_action =
        new QAction(QIcon(QStringLiteral(":/image/widget/line_edit/clear.svg")), QString(), this);
    addAction(clear_action, QLineEdit::TrailingPosition);
    connect(clear_action, SIGNAL(triggered()), this, SLOT(clear()));
    clear_installed = true;
    clear_action->setVisible(false);
}

void ui_line_edit_t::show_from_start(const QString &text)
{
    setText(text);
    setCursorPosition(0);
}

void ui_line_edit_t::focusInEvent(QFocusEvent *event)
{
    if (clear_installed)
        clear_action->setVisible(true);
    QLineEdit::focusInEvent(event);
}

void ui_line_edit_t::focusOutEvent(QFocusEvent *event)
{
    if (clear_installed)
        clear_action->setVisible(false);
    QLineEdit::focusOutEvent(event);
}
