// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_label.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_tool_button.h"

#include <QAbstractItemView>
#include <QScrollBar>
#include <QtTest>

class test_widget_kit : public QObject
{
    Q_OBJECT

private slots:
    void wide_text_never_fits_or_is_lost();
    void click_on_popup_or_clear_button_is_lost();
    void state_change_keeps_the_old_look();
    void wheel_changes_a_closed_list_or_what_is_around_it();
};

void test_widget_kit::wide_text_never_fits_or_is_lost()
{
    ui_label_t label;
    label.set_shrink(true);
    label.set_elide(true);
    label.setText(QString(2000, QLatin1Char('W')));
    for (const int width : {100, 9000, 50000}) {
        label.resize(width, 28);
        label.show();
        QCOMPARE(label.toolTip().size(), width == 100 ? 2000 : 0);
        QCOMPARE(label.text().size() == 2000, label.font().pixelSize() > 1);
    }
}

void test_widget_kit::click_on_popup_or_clear_button_is_lost()
{
    ui_line_edit_t edit;
    edit.add_clear_action();
    edit.setText(QStringLiteral("*IDN?"));
    edit.show();
    auto *button = edit.findChild<QToolButton *>();
    QTRY_VERIFY(edit.hasFocus() && button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(edit.text(), QString());
    edit.clearFocus();
    QVERIFY(!button->isVisible());

    ui_combo_box_t combo;
    combo.add_color_items();
    combo.showPopup();
    const QRect item = combo.view()->visualRect(combo.model()->index(2, 0));
    QTest::mouseClick(combo.view()->viewport(), Qt::LeftButton, {}, item.center());
    QTRY_COMPARE(combo.currentText(), QStringLiteral("Red"));
}

void test_widget_kit::state_change_keeps_the_old_look()
{
    ui_tool_button_t button;
    button.setStyleSheet(QStringLiteral("ui_tool_button_t[link=\"up\"] { min-width: 321px }"));
    button.show();
    for (const char *const state : {"up", "down", "up"}) {
        button.set_state(QStringLiteral("link"), QLatin1String(state));
        QCOMPARE(button.minimumWidth() >= 321, QByteArray(state) == "up");
    }
    QPixmap picture(48, 48);
    picture.fill(Qt::red);
    button.set_icons({{QStringLiteral("up"), QIcon(picture)}}, QSize(16, 16));
    QCOMPARE(button.iconSize(), QSize(16, 16));
    button.set_state(QStringLiteral("link"), QStringLiteral("up"));
    QCOMPARE(button.iconSize(), QSize(24, 24));
}

void test_widget_kit::wheel_changes_a_closed_list_or_what_is_around_it()
{
    const auto turn = [](QWidget &target) {
        QWheelEvent notch(QPointF(5, 5), target.mapToGlobal(QPointF(5, 5).toPoint()), QPoint(),
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&target, &notch);
        return notch.isAccepted();
    };
    ui_combo_box_t combo;
    for (int item = 0; item < 100; ++item)
        combo.addItem(QString::number(item));
    combo.show();
    // What is not accepted goes on to what is around.
    QVERIFY(turn(combo));
    QCOMPARE(combo.currentIndex(), 0);
    combo.showPopup();
    turn(*combo.view()->viewport());
    QVERIFY(combo.view()->verticalScrollBar()->value() > 0);
}

QTEST_MAIN(test_widget_kit)
#include "test_widget_kit.moc"
