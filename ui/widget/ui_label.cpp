// SPDX-License-Identifier: MIT
#include "ui/widget/ui_label.h"

#include "ui/widget/widget_height.h"

#include <QFont>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QTextDocument>
#include <QtMath>

ui_label_t::ui_label_t(QWidget *parent) : QLabel(parent)
{
    setFixedHeight(widget_height);
}

void ui_label_t::setText(const QString &text)
{
    full_text = text;
    fit_text();
    updateGeometry();
}

void ui_label_t::set_elide(bool on)
{
    elide = on;
    fit_text();
    updateGeometry();
}

void ui_label_t::set_shrink(bool on)
{
    shrink = on;
    fit_text();
}

void ui_label_t::set_base_size(int pixels)
{
    base_size = qMax(1, pixels);
    fit_text();
}

/// What the label shows depends on its width, so its width must not depend on what it shows.
QSize ui_label_t::sizeHint() const
{
    QSize hint = QLabel::sizeHint();
    if (is_cut_to_fit())
        hint.setWidth(width() - contentsRect().width() +
                      qCeil(QFontMetricsF(font()).horizontalAdvance(full_text)));
    return hint;
}

QSize ui_label_t::minimumSizeHint() const
{
    QSize hint = QLabel::minimumSizeHint();
    if (is_cut_to_fit())
        hint.setWidth(0);
    return hint;
}

void ui_label_t::resizeEvent(QResizeEvent *event)
{
    fit_text();
    QLabel::resizeEvent(event);
}

void ui_label_t::showEvent(QShowEvent *event)
{
    fit_text();
    QLabel::showEvent(event);
}

void ui_label_t::fit_text()
{
    if (shrink && !full_text.isEmpty())
        shrink_font();
    show_text();
}

void ui_label_t::shrink_font()
{
    QFont fitting = font();
    fitting.setPixelSize(base_size);
    while (fitting.pixelSize() >= 2 &&
           QFontMetrics(fitting).horizontalAdvance(full_text) > contentsRect().width())
        fitting.setPixelSize(fitting.pixelSize() - 1);
    setFont(fitting);
}

bool ui_label_t::is_cut_to_fit() const
{
    return elide && (textFormat() == Qt::PlainText || !Qt::mightBeRichText(full_text));
}

void ui_label_t::show_text()
{
    const bool cut = is_cut_to_fit();
    const QString shown =
        cut ? fontMetrics().elidedText(full_text, Qt::ElideRight, contentsRect().width())
            : full_text;
    const bool tip_is_ours = toolTip() == elided_text;
    elided_text = shown == full_text ? QString() : full_text;
    if (tip_is_ours || !elided_text.isEmpty())
        setToolTip(elided_text);
    QLabel::setText(shown);
}
