// SPDX-License-Identifier: MIT
#include "ui/widget/q_ip_line_edit.h"

#include <QClipboard>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

/// A window with an address field between two buttons; the focus starts on the upper one.
struct form_t
{
    form_t()
    {
        window.setStyleSheet(QStringLiteral("QLineEdit { background: #434346; padding: 0 4px }"));
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&before);
        layout->addWidget(&address);
        layout->addWidget(&after);
        window.show();
        window.activateWindow();
        before.setFocus();
    }

    /// Index of the octet with the focus; -1 when a button has it.
    int focused() const
    {
        return octets.indexOf(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    }

    QWidget window;
    QPushButton before;
    QIPLineEdit address;
    QPushButton after;
    const QList<QLineEdit *> octets = address.findChildren<QLineEdit *>();
};

/// Presses keys in whatever has the focus at each: T and U tab forth and back, H and E are Home and
/// End, < and > the arrows, S selects to the left, B is Backspace; the rest types itself.
void press(const char *keys)
{
    static const QHash<char, QPair<Qt::Key, Qt::KeyboardModifier>> named{
        {'T', {Qt::Key_Tab, Qt::NoModifier}},     {'U', {Qt::Key_Tab, Qt::ShiftModifier}},
        {'H', {Qt::Key_Home, Qt::NoModifier}},    {'E', {Qt::Key_End, Qt::NoModifier}},
        {'<', {Qt::Key_Left, Qt::NoModifier}},    {'>', {Qt::Key_Right, Qt::NoModifier}},
        {'S', {Qt::Key_Left, Qt::ShiftModifier}}, {'B', {Qt::Key_Backspace, Qt::NoModifier}}};
    for (; *keys != '\0'; ++keys) {
        const auto key = named.find(*keys);
        if (key != named.end())
            QTest::keyClick(QApplication::focusWidget(), key->first, key->second);
        else
            QTest::keyClick(QApplication::focusWidget(), *keys);
    }
}

/// Opens the context menu at the widget's centre and clicks an entry.
void choose(QWidget *widget, const char *label)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, widget->rect().center());
    QApplication::sendEvent(widget, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    for (QAction *action : menu->actions()) {
        if (action->text().startsWith(QLatin1String(label)))
            return QTest::mouseClick(menu, Qt::LeftButton, {},
                                     menu->actionGeometry(action).center());
    }
}

} // namespace

class test_address_editor : public QObject
{
    Q_OBJECT

private slots:
    void invalid_address_changes_the_field();
    void key_is_lost_or_lands_in_the_wrong_octet_data();
    void key_is_lost_or_lands_in_the_wrong_octet();
    void click_into_a_gap_is_lost();
    void paste_fills_one_octet_or_cuts_the_text();
    void copy_or_menu_means_one_octet();
    void dots_are_missing_or_digits_clipped();
};

void test_address_editor::invalid_address_changes_the_field()
{
    QIPLineEdit field;
    QCOMPARE(field.text(), QStringLiteral("..."));
    for (const char *valid : {"0.0.0.0", "255.255.255.255", "192.168.001.010"}) {
        field.setText(QLatin1String(valid));
        QCOMPARE(field.text(), QLatin1String(valid));
    }
    for (const char *invalid : {"256.1.1.1", "1.1.1.260", "1.2.3", "1.2.3.4.5", "1..2.3", "...",
                                "0001.1.1.1", " 1.2.3.4", "1.2.3.4\n", ""}) {
        QVERIFY2(!QIPLineEdit::is_valid_ip(QLatin1String(invalid)), invalid);
        field.setText(QLatin1String(invalid));
        QCOMPARE(field.text(), QStringLiteral("192.168.001.010"));
    }
}

void test_address_editor::key_is_lost_or_lands_in_the_wrong_octet_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("octet");
    const auto add = [](const char *keys, const char *before, const char *after, int octet) {
        QTest::newRow(keys) << before << after << octet;
    };
    add("T192.168.1.1", "", "192.168.1.1", 3);
    add("T1921681011", "", "192.168.101.1", 3);
    add("T26262626", "", "26.26.26.26", 3);
    add("T1921681234", "10.20.30.40", "192.168.123.4", 3);
    add("T1.2.3.4", "10.20.30.40", "1.2.3.4", 3);
    add("T256", "", "25...", 0);
    add("T250", "", "250...", 0);
    add("TTTT1921", "", "...192", 3);
    add("T0.0..7", "", "0.0..7", 3);
    add("Ta1-,2/", "", "12...", 0);
    // A digit typed last shows where the cursor is.
    add("TTH<5", "1.2.3.4", "15.2.3.4", 0);
    add("TTHB5", "1.2.3.4", "15.2.3.4", 0);
    add("TTE>5", "1.2.3.4", "1.2.53.4", 2);
    add("TH<B5", "1.2.3.4", "51.2.3.4", 0);
    add("TTTTE>.5", "1.2.3.4", "1.2.3.45", 3);
    add("TTH.>5", "1.2.3.4", "1.25.3.4", 1);
    add("TTE<5", "1.2.3.4", "1.52.3.4", 1);
    add("TTEB5", "1.2.3.4", "1.5.3.4", 1);
    add("TTESSSS7", "1.200.3.4", "1.7.3.4", 1);
    add("TTESSSSB7", "1.200.3.4", "1.7.3.4", 1);
    add("TTESSSS.7", "1.200.3.4", "1.7.3.4", 1);
    add("TTTTT", "1.2.3.4", "1.2.3.4", -1);
    add("TTTTTUUUU7", "1.2.3.4", "7.2.3.4", 0);
    add("TTTTTUUUUU", "1.2.3.4", "1.2.3.4", -1);
}

void test_address_editor::key_is_lost_or_lands_in_the_wrong_octet()
{
    QFETCH(QString, before);
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    form.address.setText(before);
    press(QTest::currentDataTag());
    QTEST(form.address.text(), "after");
    QTEST(form.focused(), "octet");
}

void test_address_editor::click_into_a_gap_is_lost()
{
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    for (int octet = 0; octet < 4; ++octet) {
        const QRect rect = form.octets.at(octet)->geometry();
        const QPoint beside(rect.right() + 2, rect.center().y());
        QTest::mouseClick(&form.address, Qt::LeftButton, {}, beside);
        QCOMPARE(form.focused(), octet);
    }
    form.address.setFocus();
    QCOMPARE(form.focused(), 0);
}

void test_address_editor::paste_fills_one_octet_or_cuts_the_text()
{
    const QHash<QString, QString> results{
        {QStringLiteral(" \t192.168.1.10\r\n"), QStringLiteral("192.168.1.10")},
        {QStringLiteral(" 77\n"), QStringLiteral("10.20.77.40")},
        {QStringLiteral("256"), QStringLiteral("10.20.30.40")},
        {QStringLiteral("192.168.1.256"), QStringLiteral("10.20.30.40")}};
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    for (auto result = results.begin(); result != results.end(); ++result) {
        QGuiApplication::clipboard()->setText(result.key());
        for (const auto &keys : {QStringLiteral("Ctrl+V"), QStringLiteral("Shift+Ins")}) {
            form.address.setText(QStringLiteral("10.20.30.40"));
            form.before.setFocus();
            press("TTT");
            QTest::keySequence(QApplication::focusWidget(), QKeySequence(keys));
            QCOMPARE(form.address.text(), result.value());
        }
    }
}

void test_address_editor::copy_or_menu_means_one_octet()
{
    form_t form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    form.address.setText(QStringLiteral("10.20.30.40"));
    press("TT");
    QClipboard *clipboard = QGuiApplication::clipboard();
    for (const auto &keys : {QStringLiteral("Ctrl+C"), QStringLiteral("Ctrl+Ins")}) {
        clipboard->clear();
        QTest::keySequence(QApplication::focusWidget(), QKeySequence(keys));
        QCOMPARE(clipboard->text(), QStringLiteral("10.20.30.40"));
    }
    clipboard->setText(QStringLiteral("192.168.1.10"));
    choose(form.octets.at(2), "&Paste");
    QCOMPARE(form.address.text(), QStringLiteral("192.168.1.10"));
    clipboard->clear();
    choose(&form.address, "&Copy");
    QCOMPARE(clipboard->text(), QStringLiteral("192.168.1.10"));
}

void test_address_editor::dots_are_missing_or_digits_clipped()
{
    form_t form;
    form.window.resize(form.window.minimumSizeHint());
    form.address.setText(QStringLiteral("200.200.200.200"));
    const QImage image = form.address.grab().toImage();
    for (int left = 0; left < 3; ++left) {
        const QLineEdit *octet = form.octets.at(left);
        QVERIFY(octet->width() >= octet->fontMetrics().horizontalAdvance(octet->text()) + 2 * 4);
        const int center = (octet->geometry().right() + form.octets.at(left + 1)->x()) / 2;
        int white_rows = 0;
        for (int y = 0; y < image.height(); ++y)
            white_rows += image.pixelColor(center, y) == QColor(Qt::white) ? 1 : 0;
        QVERIFY2(white_rows >= 2 && white_rows <= 5, qPrintable(QString::number(white_rows)));
    }
}

QTEST_MAIN(test_address_editor)
#include "test_address_editor.moc"
