// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_label.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_tool_button.h"

#include <QAbstractItemView>
#include <QVBoxLayout>
#include <QtTest>

class test_widget_kit : public QObject
{
    Q_OBJECT

private slots:
    void shrinking_never_ends_or_stops_early();
    void cut_text_is_lost();
    void popup_loses_a_color_or_takes_no_click();
    void clear_button_ignores_the_focus();
    void state_change_keeps_the_old_look();
};

void test_widget_kit::shrinking_never_ends_or_stops_early()
{
    ui_label_t label;
    label.set_shrink(true);
    label.resize(120, 28);
    label.show();
    const auto size_for = [&label](int letters) {
        label.setText(QString(letters, QLatin1Char('W')));
        return label.font().pixelSize();
    };
    QCOMPARE(size_for(2000), 1);
    QCOMPARE(size_for(1), 13);
    const int size = size_for(20);
    QVERIFY2(size > 1 && size < 13, qPrintable(QString::number(size)));
    QVERIFY(label.fontMetrics().horizontalAdvance(label.text()) <= 120);
    label.resize(1000, 28);
    QCOMPARE(label.font().pixelSize(), 13);
}

void test_widget_kit::cut_text_is_lost()
{
    const QString wide(50, QLatin1Char('W'));
    ui_label_t label;
    label.resize(100, 28);
    label.show();
    label.setText(wide);
    QCOMPARE(label.text(), wide);
    label.set_elide(true);
    QVERIFY(label.text().endsWith(QChar(0x2026)));
    QCOMPARE(label.toolTip(), wide);
    label.resize(5000, 28);
    QCOMPARE(label.text(), wide);
    QCOMPARE(label.toolTip(), QString());
    label.resize(100, 28);
    label.setText(QStringLiteral("<b>%1</b>").arg(wide));
    QVERIFY(label.text().endsWith(QLatin1String("</b>")));
}

void test_widget_kit::popup_loses_a_color_or_takes_no_click()
{
    ui_combo_box_t combo;
    combo.add_color_items();
    combo.show();
    for (const char *color : {"Green", "Red", "Blue", "Cyan"}) {
        combo.showPopup();
        const int row = combo.findText(QLatin1String(color));
        const QRect item = combo.view()->visualRect(combo.model()->index(row, 0));
        QTest::mouseClick(combo.view()->viewport(), Qt::LeftButton, {}, item.center());
        QTRY_COMPARE(combo.currentText(), QLatin1String(color));
        QTRY_VERIFY(!combo.view()->isVisible());
    }
    QCOMPARE(combo.currentIndex(), 0);
}

void test_widget_kit::clear_button_ignores_the_focus()
{
    QWidget window;
    QVBoxLayout layout(&window);
    ui_line_edit_t edit;
    ui_line_edit_t plain;
    layout.addWidget(&edit);
    layout.addWidget(&plain);
    edit.add_clear_action();
    edit.setText(QStringLiteral("*IDN?"));
    auto *button = edit.findChild<QToolButton *>();
    QVERIFY(button->isHidden());
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    QTest::mouseClick(&plain, Qt::LeftButton);
    QVERIFY(plain.findChild<QToolButton *>() == nullptr);
    QVERIFY(!button->isVisible());
    QTest::mouseClick(&edit, Qt::LeftButton);
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(edit.text(), QString());
    QVERIFY(edit.hasFocus());
}

void test_widget_kit::state_change_keeps_the_old_look()
{
    ui_tool_button_t button;
    button.setStyleSheet(QStringLiteral("ui_tool_button_t[link=\"up\"] { min-width: 321px }"));
    const QIcon icon(QPixmap(16, 16));
    button.set_icons({{QStringLiteral("up"), icon}}, QSize(10, 10));
    button.show();
    QVERIFY(button.minimumWidth() < 321);
    for (const auto &state : {QStringLiteral("up"), QStringLiteral("down")}) {
        button.set_state(QStringLiteral("link"), state);
        QCOMPARE(button.minimumWidth() >= 321, state == QLatin1String("up"));
        QCOMPARE(button.icon().cacheKey(), icon.cacheKey());
        QCOMPARE(button.iconSize(), QSize(24, 24));
    }
}

QTEST_MAIN(test_widget_kit)
#include "test_widget_kit.moc"
