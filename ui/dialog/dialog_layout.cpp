// SPDX-License-Identifier: MIT
#include "ui/dialog/dialog_layout.h"

#include <QDialog>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

/// Between the title in the frame and what is in the group; without it they nearly touch.
constexpr int title_gap_px = 6;

} // namespace

void set_group_layout(QDialog *dialog, const QString &title, QLayout *content)
{
    auto *const group = new QGroupBox(title);
    group->setLayout(content);
    auto *const outer = new QVBoxLayout(dialog);
    outer->addWidget(group);
    QMargins margins = content->contentsMargins();
    margins.setTop(margins.top() + title_gap_px);
    content->setContentsMargins(margins);
}

QBoxLayout *layout_above_buttons(QLayout *content, std::initializer_list<QPushButton *> buttons)
{
    auto *const row = new QHBoxLayout;
    row->addStretch(1);
    for (QPushButton *const button : buttons) {
        // Otherwise the dialog makes its first button the one that Return presses in any field.
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    auto *const rows = new QVBoxLayout;
    rows->addLayout(content);
    rows->addLayout(row);
    return rows;
}
