// SPDX-License-Identifier: MIT
#include "ui/widget/q_ip_line_edit.h"

#include <QAction>
#include <QClipboard>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

/// A window with an address field between two buttons, as a form has it.
struct form_t
{
    form_t()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&before);
        layout->addWidget(&address);
        layout->addWidget(&after);
        address.setFixedHeight(30);
        window.show();
        window.activateWindow();
    }

    QList<QLineEdit *> octets() const { return address.findChildren<QLineEdit *>(); }

    /// Index of the octet that has the focus; -1 when none has.
    int focused() const
    {
        return octets().indexOf(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    }

    /// Clicks into an octet and puts its cursor where a row wants it.
    void enter(int octet, int cursor)
    {
        QTest::mouseClick(octets().at(octet), Qt::LeftButton);
        octets().at(octet)->setCursorPosition(cursor);
    }

    QWidget window;
    QPushButton before;
    QIPLineEdit address;
    QPushButton after;
};

/// Types to whatever has the focus at each key, as a keyboard does.
void type(const QString &keys)
{
    for (const QChar key : keys)
        QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
}

} // namespace

class test_address_editor : public QObject
{
    Q_OBJECT

private slots:
    void invalid_address_changes_nothing_data();
    void invalid_address_changes_nothing();
    void typing_loses_or_misplaces_a_digit_data();
    void typing_loses_or_misplaces_a_digit();
    void key_leaves_the_octet_too_early_or_never_data();
    void key_leaves_the_octet_too_early_or_never();
    void selection_is_left_behind_data();
    void selection_is_left_behind();
    void tab_is_trapped_by_the_outer_edit();
    void click_into_a_gap_lands_nowhere();
    void paste_fills_one_octet_data();
    void paste_fills_one_octet();
    void copy_takes_one_octet();
    void context_menu_means_one_octet();
    void disabled_field_takes_no_address();
    void dots_are_missing();
    void narrow_field_clips_digits();
};

void test_address_editor::invalid_address_changes_nothing_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("valid");
    QTest::newRow("lowest") << "0.0.0.0" << true;
    QTest::newRow("highest") << "255.255.255.255" << true;
    QTest::newRow("leading zeros") << "192.168.001.010" << true;
    QTest::newRow("octet beyond 255") << "256.1.1.1" << false;
    QTest::newRow("octet beyond 255 at the end") << "1.1.1.260" << false;
    QTest::newRow("three octets") << "1.2.3" << false;
    QTest::newRow("five octets") << "1.2.3.4.5" << false;
    QTest::newRow("empty octet") << "1..2.3" << false;
    QTest::newRow("only dots") << "..." << false;
    QTest::newRow("four digits") << "0001.1.1.1" << false;
    QTest::newRow("blank in front") << " 1.2.3.4" << false;
    QTest::newRow("line end behind") << "1.2.3.4\n" << false;
    QTest::newRow("empty") << "" << false;
}

void test_address_editor::invalid_address_changes_nothing()
{
    QFETCH(QString, address);
    QFETCH(bool, valid);
    QIPLineEdit field;
    QCOMPARE(field.text(), QStringLiteral("..."));
    field.setText(QStringLiteral("10.20.30.40"));

    QCOMPARE(QIPLineEdit::is_valid_ip(address), valid);
    field.setText(address);
    QCOMPARE(field.text(), valid ? address : QStringLiteral("10.20.30.40"));
}

void test_address_editor::typing_loses_or_misplaces_a_digit_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("focused");
    const QString empty;
    QTest::newRow("with dots") << empty << "192.168.1.1"
                               << "192.168.1.1" << 3;
    QTest::newRow("dots after full octets") << empty << "255.255.255.0"
                                            << "255.255.255.0" << 3;
    QTest::newRow("without dots") << empty << "1921681011"
                                  << "192.168.101.1" << 3;
    QTest::newRow("two digits fill from 26 on") << empty << "26262626"
                                                << "26.26.26.26" << 3;
    QTest::newRow("over an old address") << "10.20.30.40"
                                         << "1921681234"
                                         << "192.168.123.4" << 3;
    QTest::newRow("dots over an old address") << "10.20.30.40"
                                              << "1.2.3.4"
                                              << "1.2.3.4" << 3;
    QTest::newRow("octet refuses 256") << empty << "256"
                                       << "25..." << 0;
    QTest::newRow("full last octet refuses") << "1.1.1.1"
                                             << "1.1.1.1921"
                                             << "1.1.1.192" << 3;
    QTest::newRow("zeros") << empty << "0.0.0.0"
                           << "0.0.0.0" << 3;
    QTest::newRow("zero behind a value") << empty << "250"
                                         << "250..." << 0;
    QTest::newRow("dots skip empty octets") << empty << "..7"
                                            << "..7." << 2;
    QTest::newRow("letters and signs") << empty << "a1-,2/"
                                       << "12..." << 0;
}

void test_address_editor::typing_loses_or_misplaces_a_digit()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    form.address.setText(before);
    QTest::mouseClick(form.octets().first(), Qt::LeftButton);
    QTest::keyClick(form.octets().first(), Qt::Key_A, Qt::ControlModifier);

    type(keys);
    QTEST(form.address.text(), "after");
    QTEST(form.focused(), "focused");
}

void test_address_editor::key_leaves_the_octet_too_early_or_never_data()
{
    QTest::addColumn<int>("octet");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("octet_after");
    QTest::addColumn<int>("cursor_after");
    for (int octet = 0; octet < 4; ++octet) {
        const bool first = octet == 0;
        const bool last = octet == 3;
        const auto add = [octet](const char *name, int cursor, int key, int to, int to_cursor) {
            QTest::addRow("%s in octet %d", name, octet + 1)
                << octet << cursor << key << to << to_cursor;
        };
        add("left at the start", 0, Qt::Key_Left, first ? 0 : octet - 1, first ? 0 : 2);
        add("left inside", 1, Qt::Key_Left, octet, 0);
        add("right at the end", 2, Qt::Key_Right, last ? 3 : octet + 1, last ? 2 : 0);
        add("right inside", 1, Qt::Key_Right, octet, 2);
        add("backspace at the start", 0, Qt::Key_Backspace, first ? 0 : octet - 1, first ? 0 : 2);
        add("dot inside", 1, Qt::Key_Period, octet, 1);
    }
}

void test_address_editor::key_leaves_the_octet_too_early_or_never()
{
    QFETCH(int, octet);
    QFETCH(int, cursor);
    QFETCH(int, key);
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    form.address.setText(QStringLiteral("10.20.30.40"));
    form.enter(octet, cursor);

    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    QTEST(form.focused(), "octet_after");
    QTEST(form.octets().at(form.focused())->cursorPosition(), "cursor_after");
    QCOMPARE(form.address.text(), QStringLiteral("10.20.30.40"));
}

void test_address_editor::selection_is_left_behind_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("selected");
    QTest::newRow("backspace") << int(Qt::Key_Backspace) << "10..30.40"
                               << "";
    QTest::newRow("digit") << int(Qt::Key_7) << "10.7.30.40"
                           << "";
    QTest::newRow("dot") << int(Qt::Key_Period) << "10.200.30.40"
                         << "200";
}

/// The selection reaches from the end of the second octet to its start, the cursor at the start.
void test_address_editor::selection_is_left_behind()
{
    QFETCH(int, key);
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    form.address.setText(QStringLiteral("10.200.30.40"));
    form.enter(1, 3);
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(form.focused(), 1);

    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    QTEST(form.address.text(), "text");
    QTEST(form.octets().at(1)->selectedText(), "selected");
    QCOMPARE(form.focused(), 1);
}

void test_address_editor::tab_is_trapped_by_the_outer_edit()
{
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QList<QWidget *> order{&form.before};
    for (QLineEdit *octet : form.octets())
        order << octet;
    order << &form.after;

    form.before.setFocus();
    for (int i = 1; i < order.size(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), order.at(i));
    }
    for (int i = order.size() - 2; i >= 0; --i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), order.at(i));
    }
    form.address.setFocus();
    QCOMPARE(form.focused(), 0);
}

void test_address_editor::click_into_a_gap_lands_nowhere()
{
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    for (int octet = 0; octet < 4; ++octet) {
        const QRect rect = form.octets().at(octet)->geometry();
        QTest::mouseClick(&form.address, Qt::LeftButton, {}, {rect.right() + 2, rect.center().y()});
        QCOMPARE(form.focused(), octet);
    }
}

void test_address_editor::paste_fills_one_octet_data()
{
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<QString>("text");
    QTest::newRow("address") << "192.168.1.10"
                             << "192.168.1.10";
    QTest::newRow("address in blanks") << " \t192.168.1.10\r\n"
                                       << "192.168.1.10";
    QTest::newRow("one octet") << " 77\n"
                               << "10.20.77.40";
    QTest::newRow("octet beyond 255") << "256"
                                      << "10.20.30.40";
    QTest::newRow("address with an octet beyond 255") << "192.168.1.256"
                                                      << "10.20.30.40";
    QTest::newRow("address and port") << "192.168.1.10:80"
                                      << "10.20.30.40";
}

void test_address_editor::paste_fills_one_octet()
{
    QFETCH(QString, pasted);
    for (const auto &keys :
         {QKeySequence(Qt::CTRL | Qt::Key_V), QKeySequence(Qt::SHIFT | Qt::Key_Insert)}) {
        form_t form;
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        form.address.setText(QStringLiteral("10.20.30.40"));
        form.enter(2, 0);
        form.octets().at(2)->selectAll();
        QGuiApplication::clipboard()->setText(pasted);

        QTest::keySequence(QApplication::focusWidget(), keys);
        QTEST(form.address.text(), "text");
    }
}

void test_address_editor::copy_takes_one_octet()
{
    for (const auto &keys :
         {QKeySequence(Qt::CTRL | Qt::Key_C), QKeySequence(Qt::CTRL | Qt::Key_Insert)}) {
        form_t form;
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        form.address.setText(QStringLiteral("10.20.30.40"));
        form.enter(1, 0);
        form.octets().at(1)->selectAll();
        QGuiApplication::clipboard()->clear();

        QTest::keySequence(QApplication::focusWidget(), keys);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("10.20.30.40"));
    }
}

void test_address_editor::context_menu_means_one_octet()
{
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    const auto choose = [&form](QWidget *widget, const char *label) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, widget->rect().center());
        QApplication::sendEvent(widget, &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        for (QAction *action : menu->actions()) {
            if (action->text().startsWith(QLatin1String(label))) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                break;
            }
        }
    };

    QGuiApplication::clipboard()->setText(QStringLiteral("192.168.1.10"));
    choose(form.octets().at(2), "&Paste");
    QCOMPARE(form.address.text(), QStringLiteral("192.168.1.10"));

    QGuiApplication::clipboard()->setText(QStringLiteral("old"));
    choose(&form.address, "&Copy");
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("192.168.1.10"));
}

void test_address_editor::disabled_field_takes_no_address()
{
    form_t form;
    form.address.setDisabled(true);
    form.address.setText(QStringLiteral("10.20.30.40"));
    QCOMPARE(form.address.text(), QStringLiteral("10.20.30.40"));
}

void test_address_editor::dots_are_missing()
{
    form_t form;
    form.address.setStyleSheet(QStringLiteral("QLineEdit { background: #434346 }"));
    QVERIFY(QTest::qWaitForWindowExposed(&form.window));
    const QImage image = form.address.grab().toImage();
    for (int left = 0; left < 3; ++left) {
        const QRect before = form.octets().at(left)->geometry();
        const int center = (before.right() + form.octets().at(left + 1)->x()) / 2;
        int white_rows = 0;
        for (int y = before.top(); y <= before.bottom(); ++y)
            white_rows += image.pixelColor(center, y) == QColor(Qt::white) ? 1 : 0;
        QVERIFY2(white_rows >= 2 && white_rows <= 5, qPrintable(QString::number(white_rows)));
    }
}

void test_address_editor::narrow_field_clips_digits()
{
    form_t form;
    form.address.setStyleSheet(QStringLiteral("QLineEdit { padding: 0 4px; font-size: 16px }"));
    form.window.adjustSize();
    form.window.resize(form.window.minimumSizeHint());
    form.address.setText(QStringLiteral("200.200.200.200"));
    for (QLineEdit *octet : form.octets()) {
        const int text = octet->fontMetrics().horizontalAdvance(octet->text());
        QVERIFY(octet->width() >= text + 2 * 4);
    }
}

QTEST_MAIN(test_address_editor)
#include "test_address_editor.moc"
