// SPDX-License-Identifier: MIT
#include "ui/ui_empty_widget.h"

#include <QVBoxLayout>

namespace {

constexpr int row_spacing = 10;

} // namespace

ui_empty_widget_t::ui_empty_widget_t(QWidget *parent) : QFrame(parent)
{
    auto *const rows = new QVBoxLayout(this);
    rows->addSpacing(row_spacing);
}
