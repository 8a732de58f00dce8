// SPDX-License-Identifier: MIT
#include "ui/widget/q_ip_line_edit.h"

#include <QClipboard>
#include <QtTest>

namespace {

/// Shows a field and enters its first octet as the Tab key does, which selects it.
bool enter(QIPLineEdit &field)
{
    field.show();
    field.activateWindow();
    const bool active = QTest::qWaitForWindowActive(&field);
    field.findChildren<QLineEdit *>().last()->setFocus();
    field.setFocus(Qt::TabFocusReason);
    return active;
}

/// Presses keys in whatever has the focus at each: T is Tab, H and E are Home and
/// End, < and > the arrows, S selects to the left, B is Backspace; the rest types itself.
void press(const char *keys)
{
    static const QHash<char, QPair<Qt::Key, Qt::KeyboardModifier>> named{
        {'T', {Qt::Key_Tab, Qt::NoModifier}},      {'H', {Qt::Key_Home, Qt::NoModifier}},
        {'E', {Qt::Key_End, Qt::NoModifier}},      {'<', {Qt::Key_Left, Qt::NoModifier}},
        {'>', {Qt::Key_Right, Qt::NoModifier}},    {'S', {Qt::Key_Left, Qt::ShiftModifier}},
        {'B', {Qt::Key_Backspace, Qt::NoModifier}}};
    for (; *keys != '\0'; ++keys) {
        const auto key = named.find(*keys);
        if (key != named.end())
            QTest::keyClick(QApplication::focusWidget(), key->first, key->second);
        else
            QTest::keyClick(QApplication::focusWidget(), *keys);
    }
}

} // namespace

class test_address_editor : public QObject
{
    Q_OBJECT

private slots:
    void key_is_lost_or_lands_in_the_wrong_octet();
    void clipboard_means_one_octet_or_a_cut_text();
    void invalid_address_is_taken();
    void dots_are_missing();
};

void test_address_editor::key_is_lost_or_lands_in_the_wrong_octet()
{
    const struct
    {
        const char *keys, *before, *after;
        int octet; ///< that has the focus at last
    } rows[] = {
        {"192.168.1.1", "", "192.168.1.1", 3},
        {"1921681011", "", "192.168.101.1", 3},
        {"1921681234", "10.20.30.40", "192.168.123.4", 3},
        {"256", "", "25...", 0},
        {"TTT1921", "", "...192", 3},
        {"0.0..7", "", "0.0..7", 3},
        // A digit goes where it was typed if it fits there, and no further than its own octet
        // unless it was typed at the end; the focus moves on.
        {"TH1", "1.92.3.4", "1.192.3.4", 2},
        {"TH0", "1.192.3.4", "1.192.3.4", 2},
        {"TH>1", "1.92.3.4", "1.92.3.4", 2},
        {"TE5", "1.26.3.4", "1.26.5.4", 2},
        {"TE5", "1.25.3.4", "1.255.3.4", 1},
        {"TTTH1", "1.2.3.92", "1.2.3.192", 3},
        {"TTTE1", "1.2.3.92", "1.2.3.92", 3},
        // A digit typed last shows where the cursor is.
        {"TH<5", "1.2.3.4", "15.2.3.4", 0},
        {"THB5", "1.2.3.4", "15.2.3.4", 0},
        {"TE>5", "1.2.3.4", "1.2.53.4", 2},
        {"H<B5", "1.2.3.4", "51.2.3.4", 0},
        {"TTTE>.5", "1.2.3.4", "1.2.3.45", 3},
        {"TH.>5", "1.2.3.4", "1.25.3.4", 1},
        {"TE<5", "1.2.3.4", "1.52.3.4", 1},
        {"TESSSS7", "1.200.3.4", "1.7.3.4", 1},
        {"TESSSSB7", "1.200.3.4", "1.7.3.4", 1},
        {"TESSSS.7", "1.200.3.4", "1.7.3.4", 1},
    };
    for (const auto &row : rows) {
        QIPLineEdit field;
        field.setText(row.before);
        QVERIFY(enter(field));
        press(row.keys);
        auto *focused = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QCOMPARE(field.text(), QString(row.after));
        QVERIFY2(field.findChildren<QLineEdit *>().indexOf(focused) == row.octet, row.keys);
    }
}

void test_address_editor::clipboard_means_one_octet_or_a_cut_text()
{
    const QStringList pasted{" \t192.168.1.10\r\n", " 77\n", "123", "256", "192.168.1.256"};
    const QStringList results{"192.168.1.10", "10.77.30.40", "10.123.30.40", "10.20.30.40",
                              "10.20.30.40"};
    for (int row = 0; row < pasted.size(); ++row) {
        QIPLineEdit field;
        field.setText(QStringLiteral("10.20.30.40"));
        QVERIFY(enter(field));
        press("T");
        QGuiApplication::clipboard()->setText(pasted.at(row));
        QTest::keySequence(QApplication::focusWidget(), QKeySequence::Paste);
        QCOMPARE(field.text(), results.at(row));
        QTest::keySequence(QApplication::focusWidget(), QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), results.at(row));
    }
}

void test_address_editor::invalid_address_is_taken()
{
    const QPair<const char *, bool> rows[] = {
        {"192.168.001.010", true}, {"255.255.255.255", true}, {"0.0.0.0", true},
        {"256.1.1.1", false},      {"1.2.3", false},          {"1.2.3.4.5", false},
        {"1.2.3.", false},         {"1.2.3.4 ", false},       {"1.2.3.260", false}};
    for (const auto &[address, valid] : rows) {
        QIPLineEdit field;
        field.setText(address);
        QCOMPARE(field.text(), valid ? QString(address) : QStringLiteral("..."));
    }
}

void test_address_editor::dots_are_missing()
{
    QIPLineEdit field;
    field.setStyleSheet("background: black; border: none");
    QVERIFY(enter(field));
    const QImage image = field.grab().toImage();
    const auto white = [&image](int left, int right) {
        int count = 0;
        for (int x = left; x < right; ++x)
            for (int y = 0; y < image.height(); ++y)
                count += image.pixelColor(x, y) == Qt::white ? 1 : 0;
        return count;
    };
    const auto octets = field.findChildren<QLineEdit *>();
    QCOMPARE(octets.size(), 4);
    for (int index = 1; index < 4; ++index) {
        const int left = octets[index - 1]->geometry().right() + 1;
        QCOMPARE(octets[index]->x() - left, 10);
        QVERIFY(white(left, octets[index]->x()) > 3);
    }
    QCOMPARE(white(0, octets[0]->x()) + white(octets[3]->geometry().right(), image.width()), 0);
}

QTEST_MAIN(test_address_editor)
#include "test_address_editor.moc"
