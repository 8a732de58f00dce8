// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QString>

#include <array>

class QKeyEvent;

/// Dotted-quad address field: looks like one line edit, holds four octet editors and paints the
/// dots between them. The outer line edit takes neither input nor focus; it hands both to an octet.
/// Copy and paste always mean the whole address, whichever octet has the focus.
class QIPLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit QIPLineEdit(QWidget *parent = nullptr);

    /// The octets joined with dots, empty ones included: an untouched field gives "...".
    QString text() const;

    /// Fills the octets as they are written ("001" stays "001"); an invalid address changes
    /// nothing.
    void setText(const QString &address);

    /// Whether the text is exactly one dotted quad of numbers 0 to 255.
    static bool is_valid_ip(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    enum class arrival_t { all_selected, cursor_at_start, cursor_at_end };
    struct octet_move_t;

    QLineEdit *create_octet(int number);
    QLineEdit *octet_near(int x) const;
    QLineEdit *neighbour(const QLineEdit *octet, int step) const;
    bool handle_key(QLineEdit *octet, QKeyEvent *event);
    bool handle_digit(QLineEdit *octet, QKeyEvent *event);
    void copy_address() const;
    void paste_into(QLineEdit *octet);

    static void move_to(QLineEdit *octet, arrival_t arrival);
    static const octet_move_t *move_for(const QLineEdit *octet, const QKeyEvent *event);

    std::array<QLineEdit *, 4> octets{};
};
