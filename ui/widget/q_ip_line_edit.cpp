// SPDX-License-Identifier: MIT
#include "ui/widget/q_ip_line_edit.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QRegExp>
#include <QRegExpValidator>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int octet_digits = 3;
constexpr int octet_maximum = 255;
constexpr int octet_gap_px = 10;
constexpr int field_margin_px = 2;
constexpr qreal dot_radius_px = 1.75;
/// What a line edit keeps free around its text, left and right, above and below.
constexpr QSize text_margins_px(2 * 2 + 1, 2 * 1);

/// Centre of the dot between two neighbours: in the gap, standing on the text's baseline.
QPointF dot_center(const QLineEdit &left, const QLineEdit &right)
{
    const QFontMetrics metrics = left.fontMetrics();
    const int text_top = left.y() + (left.height() - metrics.height()) / 2;
    return {(left.x() + left.width() + right.x()) / 2.0,
            text_top + metrics.ascent() - dot_radius_px};
}

/// The entry of a line edit's standard menu with Qt's own label: the entries carry no other name.
QAction *standard_action(const QMenu &menu, const char *label)
{
    const QString text = QCoreApplication::translate("QLineEdit", label);
    const QList<QAction *> actions = menu.actions();
    const auto found = std::find_if(actions.begin(), actions.end(), [&text](const QAction *action) {
        return action->text().section(QLatin1Char('\t'), 0, 0) == text;
    });
    return found != actions.end() ? *found : nullptr;
}

} // namespace

/// A key that leaves an octet when the cursor stands at the named end of its text.
struct QIPLineEdit::octet_move_t
{
    Qt::Key key;
    bool from_end;
    int step;
    arrival_t arrival;
};

QIPLineEdit::QIPLineEdit(QWidget *parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setFocusPolicy(Qt::NoFocus);

    auto *layout = new QHBoxLayout(this);
    layout->setSpacing(octet_gap_px);
    layout->setContentsMargins(field_margin_px, field_margin_px, field_margin_px, field_margin_px);
    int number = 0;
    for (QLineEdit *&octet : octets) {
        octet = create_octet(++number);
        layout->addWidget(octet);
    }
}

QLineEdit *QIPLineEdit::create_octet(int number)
{
    static const QRegExp octet_pattern(QStringLiteral("(2[0-5]{2}|2[0-4][0-9]|1?[0-9]{1,2})"));

    auto *octet = new QLineEdit(this);
    octet->setFrame(false);
    octet->setMaxLength(octet_digits);
    octet->setAlignment(Qt::AlignCenter);
    octet->setAttribute(Qt::WA_InputMethodEnabled, false);
    octet->setValidator(new QRegExpValidator(octet_pattern, octet));
    octet->setAccessibleName(tr("Octet %1").arg(number));
    // Leaves the menu to the address field, whose copy and paste mean the whole address.
    octet->setContextMenuPolicy(Qt::NoContextMenu);
    octet->installEventFilter(this);
    return octet;
}

QString QIPLineEdit::text() const
{
    QStringList parts;
    for (const QLineEdit *octet : octets)
        parts << octet->text();
    return parts.join(QLatin1Char('.'));
}

void QIPLineEdit::setText(const QString &address)
{
    if (!is_valid_ip(address))
        return;
    const QStringList parts = address.split(QLatin1Char('.'));
    auto part = parts.begin();
    for (QLineEdit *octet : octets)
        octet->setText(*part++);
}

bool QIPLineEdit::is_valid_ip(const QString &text)
{
    static const QRegExp address_pattern(
        QStringLiteral("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                       "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    return address_pattern.exactMatch(text);
}

QSize QIPLineEdit::sizeHint() const
{
    return QLineEdit::sizeHint().expandedTo(minimumSizeHint());
}

QSize QIPLineEdit::minimumSizeHint() const
{
    const QLineEdit *octet = octets.front();
    octet->ensurePolished();
    const QFontMetrics metrics = octet->fontMetrics();
    const QSize digits(metrics.horizontalAdvance(QStringLiteral("000")), metrics.height());
    QStyleOptionFrame option;
    option.initFrom(octet);
    const QSize octet_size = octet->style()->sizeFromContents(QStyle::CT_LineEdit, &option,
                                                              digits + text_margins_px, octet);
    const int count = static_cast<int>(octets.size());
    return {count * octet_size.width() + (count - 1) * octet_gap_px + 2 * field_margin_px,
            octet_size.height() + 2 * field_margin_px};
}

bool QIPLineEdit::eventFilter(QObject *object, QEvent *event)
{
    const auto octet = std::find(octets.begin(), octets.end(), object);
    if (octet != octets.end() && event->type() == QEvent::KeyPress &&
        handle_key(*octet, static_cast<QKeyEvent *>(event)))
        return true;
    return QObject::eventFilter(object, event);
}

bool QIPLineEdit::handle_key(QLineEdit *octet, QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy_address();
        return true;
    }
    if (event->matches(QKeySequence::Paste)) {
        paste_into(octet);
        return true;
    }
    if (event->key() >= Qt::Key_0 && event->key() <= Qt::Key_9)
        return handle_digit(octet, event);
    const octet_move_t *move = move_for(octet, event);
    QLineEdit *target = move != nullptr ? neighbour(octet, move->step) : nullptr;
    if (target == nullptr)
        return false;
    move_to(target, move->arrival);
    return true;
}

bool QIPLineEdit::handle_digit(QLineEdit *octet, QKeyEvent *event)
{
    constexpr Qt::KeyboardModifiers command_keys =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const bool full = !octet->hasSelectedText() && octet->text().toInt() * 10 > octet_maximum;
    QLineEdit *next = neighbour(octet, 1);
    if (!full || next == nullptr || (event->modifiers() & command_keys) != 0)
        return false;
    const QString before = octet->text();
    const bool at_end = octet->cursorPosition() == before.size();
    move_to(next, arrival_t::all_selected);
    // Straight to the octet, past this filter: the digit goes where it was typed if it fits there.
    octet->event(event);
    if (at_end && octet->text() == before)
        QCoreApplication::sendEvent(next, event);
    return true;
}

const QIPLineEdit::octet_move_t *QIPLineEdit::move_for(const QLineEdit *octet,
                                                       const QKeyEvent *event)
{
    static constexpr octet_move_t moves[] = {
        {Qt::Key_Period, true, 1, arrival_t::all_selected},
        {Qt::Key_Left, false, -1, arrival_t::cursor_at_end},
        {Qt::Key_Right, true, 1, arrival_t::cursor_at_start},
        {Qt::Key_Backspace, false, -1, arrival_t::cursor_at_end},
    };
    const auto *move = std::find_if(std::begin(moves), std::end(moves),
                                    [event](const auto &row) { return row.key == event->key(); });
    if (move == std::end(moves))
        return nullptr;
    // A selection is extended and deleted inside its octet.
    const bool extends = (event->modifiers() & Qt::ShiftModifier) != 0 &&
                         (move->key == Qt::Key_Left || move->key == Qt::Key_Right);
    const bool deletes = move->key == Qt::Key_Backspace && octet->hasSelectedText();
    const int leaving_position = move->from_end ? octet->text().size() : 0;
    const bool leaves = octet->cursorPosition() == leaving_position && !extends && !deletes;
    return leaves ? move : nullptr;
}

QLineEdit *QIPLineEdit::neighbour(const QLineEdit *octet, int step) const
{
    const auto own = std::find(octets.begin(), octets.end(), octet);
    const auto index = std::distance(octets.begin(), own) + step;
    const bool exists = index >= 0 && index < static_cast<std::ptrdiff_t>(octets.size());
    return exists ? octets[static_cast<std::size_t>(index)] : nullptr;
}

void QIPLineEdit::move_to(QLineEdit *octet, arrival_t arrival)
{
    octet->setFocus(Qt::OtherFocusReason);
    switch (arrival) {
    case arrival_t::all_selected:
        octet->selectAll();
        break;
    case arrival_t::cursor_at_start:
        octet->setCursorPosition(0);
        break;
    case arrival_t::cursor_at_end:
        octet->setCursorPosition(octet->text().size());
        break;
    }
}

void QIPLineEdit::copy_address() const
{
    QGuiApplication::clipboard()->setText(text());
}

void QIPLineEdit::paste_into(QLineEdit *octet)
{
    const QString pasted = QGuiApplication::clipboard()->text().trimmed();
    if (is_valid_ip(pasted)) {
        setText(pasted);
        move_to(octets.back(), arrival_t::cursor_at_end);
    } else if (pasted.size() <= octet_digits) {
        octet->insert(pasted);
    }
    // Anything longer would be cut to its first digits: the beginning of something else.
}

void QIPLineEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    for (std::size_t right = 1; right < octets.size(); ++right) {
        painter.drawEllipse(dot_center(*octets[right - 1], *octets[right]), dot_radius_px,
                            dot_radius_px);
    }
}

void QIPLineEdit::focusInEvent(QFocusEvent *event)
{
    // Reached by setFocus() only; a focus proxy would light the whole field with its first octet.
    octets.front()->setFocus(event->reason());
}

void QIPLineEdit::mousePressEvent(QMouseEvent *event)
{
    octet_near(event->pos().x())->setFocus(Qt::MouseFocusReason);
}

void QIPLineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QLineEdit *octet = octet_near(event->pos().x());
    QMenu *menu = octet->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (QAction *copy = standard_action(*menu, "&Copy")) {
        disconnect(copy, &QAction::triggered, octet, nullptr);
        connect(copy, &QAction::triggered, this, [this] { copy_address(); });
        copy->setEnabled(true);
    }
    if (QAction *paste = standard_action(*menu, "&Paste")) {
        disconnect(paste, &QAction::triggered, octet, nullptr);
        connect(paste, &QAction::triggered, this, [this, octet] { paste_into(octet); });
    }
    menu->popup(event->globalPos());
}

QLineEdit *QIPLineEdit::octet_near(int x) const
{
    return *std::min_element(octets.begin(), octets.end(),
                             [x](const QLineEdit *one, const QLineEdit *other) {
                                 return std::abs(one->geometry().center().x() - x) <
                                        std::abs(other->geometry().center().x() - x);
                             });
}
