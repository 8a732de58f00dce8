// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QString>

/// Text label of the kit's height that can shrink its font to fit or cut its text with an ellipsis.
/// Both are off until asked for; with both on the font shrinks first.
class ui_label_t : public QLabel
{
    Q_OBJECT

public:
    explicit ui_label_t(QWidget *parent = nullptr);

    /// Shows the text, fitted to the label's width. Hides QLabel::setText, which must not be
    /// called: the label would forget the text at its next resize.
    void setText(const QString &text);

    /// With the flag set, plain text too wide for the label ends in an ellipsis and the whole text
    /// becomes the tool tip; the label asks for the room of the whole text and makes do with any.
    /// Rich text is never cut; a label whose text format is plain takes no text for rich.
    void set_elide(bool on);

    /// With the flag set, the font is as large as the width allows, from the base size down to one
    /// pixel.
    void set_shrink(bool on);

    /// Sets the pixel size that shrinking starts from.
    void set_base_size(int pixels);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fit_text();
    bool is_cut_to_fit() const;
    void shrink_font();
    void show_text();

    QString full_text;
    /// The full text while the label shows it cut, else empty: the tool tip that is the label's
    /// own.
    QString elided_text;
    bool elide = false;
    bool shrink = false;
    int base_size = 13;
};
