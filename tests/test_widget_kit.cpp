// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_combo_widget.h"
#include "ui/widget/ui_label.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_push_button.h"
#include "ui/widget/ui_tool_button.h"

#include <QAbstractItemView>
#include <QAction>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

class test_widget_kit : public QObject
{
    Q_OBJECT

private slots:
    void style_sheet_misses_the_class_or_the_row_is_uneven();
    void shrinking_never_ends_or_stops_early_data();
    void shrinking_never_ends_or_stops_early();
    void cut_text_is_lost_data();
    void cut_text_is_lost();
    void tool_tip_of_the_caller_is_lost();
    void color_items_are_out_of_order();
    void popup_takes_no_click();
    void combo_frame_adds_a_margin();
    void clear_button_ignores_the_focus();
    void clear_button_appears_unasked();
    void state_change_keeps_the_old_look();
};

void test_widget_kit::style_sheet_misses_the_class_or_the_row_is_uneven()
{
    ui_label_t label;
    ui_combo_box_t combo;
    ui_line_edit_t edit;
    ui_push_button_t push;
    ui_tool_button_t tool;
    const QHash<const QWidget *, const char *> names{{&label, "ui_label_t"},
                                                     {&combo, "ui_combo_box_t"},
                                                     {&edit, "ui_line_edit_t"},
                                                     {&push, "ui_push_button_t"},
                                                     {&tool, "ui_tool_button_t"}};
    for (auto it = names.begin(); it != names.end(); ++it) {
        QCOMPARE(it.key()->metaObject()->className(), it.value());
        if (it.key() != &tool) {
            QCOMPARE(it.key()->minimumHeight(), 28);
            QCOMPARE(it.key()->maximumHeight(), 28);
        }
    }
}

void test_widget_kit::shrinking_never_ends_or_stops_early_data()
{
    QTest::addColumn<int>("letters");
    QTest::addColumn<int>("base");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("fits at the base size") << 1 << 13 << 13 << 13;
    QTest::newRow("fits at a larger base size") << 1 << 20 << 20 << 20;
    QTest::newRow("fits when smaller") << 20 << 13 << 2 << 12;
    QTest::newRow("never fits") << 2000 << 13 << 1 << 1;
}

void test_widget_kit::shrinking_never_ends_or_stops_early()
{
    QFETCH(int, letters);
    QFETCH(int, base);
    QFETCH(int, least);
    QFETCH(int, most);
    ui_label_t label;
    label.set_shrink(true);
    label.set_base_size(base);
    label.setText(QString(letters, QLatin1Char('W')));
    label.resize(120, 28);
    label.show();

    const int size = label.font().pixelSize();
    QVERIFY2(size >= least && size <= most, qPrintable(QString::number(size)));
    const auto width_at = [&label](int pixels) {
        QFont font = label.font();
        font.setPixelSize(pixels);
        return QFontMetrics(font).horizontalAdvance(label.text());
    };
    QVERIFY(size == 1 || width_at(size) <= 120);
    QVERIFY(size == base || width_at(size + 1) > 120);
}

void test_widget_kit::cut_text_is_lost_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("elide");
    QTest::addColumn<bool>("cut");
    const QString wide(50, QLatin1Char('W'));
    QTest::newRow("short") << "short" << true << false;
    QTest::newRow("wide") << wide << true << true;
    QTest::newRow("wide without eliding") << wide << false << false;
    QTest::newRow("rich") << QStringLiteral("<b>%1</b>").arg(wide) << true << false;
}

void test_widget_kit::cut_text_is_lost()
{
    QFETCH(QString, text);
    QFETCH(bool, elide);
    QFETCH(bool, cut);
    ui_label_t label;
    label.resize(100, 28);
    label.set_elide(elide);
    label.setText(text);
    label.show();
    QCOMPARE(label.text() != text, cut);
    QCOMPARE(label.toolTip(), cut ? text : QString());

    label.resize(5000, 28);
    QCOMPARE(label.text(), text);
    QCOMPARE(label.toolTip(), QString());
}

void test_widget_kit::tool_tip_of_the_caller_is_lost()
{
    ui_label_t label;
    label.setToolTip(QStringLiteral("hint"));
    label.setText(QStringLiteral("text"));
    label.show();
    QCOMPARE(label.toolTip(), QStringLiteral("hint"));
}

void test_widget_kit::color_items_are_out_of_order()
{
    ui_combo_box_t combo;
    combo.add_color_items();
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i)
        texts << combo.itemText(i);
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("Cyan Blue Red Green"));
}

void test_widget_kit::popup_takes_no_click()
{
    ui_combo_box_t combo;
    combo.add_color_items();
    combo.show();
    QVERIFY(QTest::qWaitForWindowExposed(&combo));
    combo.showPopup();
    QWidget *popup = combo.view()->window();
    QVERIFY(popup->isVisible());
    QVERIFY(popup->windowFlags().testFlag(Qt::NoDropShadowWindowHint));

    const QRect third = combo.view()->visualRect(combo.model()->index(2, 0));
    QTest::mouseClick(combo.view()->viewport(), Qt::LeftButton, {}, third.center());
    QTRY_COMPARE(combo.currentText(), QStringLiteral("Red"));
    QTRY_VERIFY(!popup->isVisible());
}

void test_widget_kit::combo_frame_adds_a_margin()
{
    ui_combo_widget_t frame;
    frame.combo_box()->add_color_items();
    frame.resize(200, 28);
    frame.show();
    QCOMPARE(frame.combo_box()->geometry(), frame.rect());
}

void test_widget_kit::clear_button_ignores_the_focus()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *edit = new ui_line_edit_t;
    auto *other = new ui_line_edit_t;
    layout->addWidget(edit);
    layout->addWidget(other);
    edit->add_clear_action();
    edit->add_clear_action();
    edit->setText(QStringLiteral("*IDN?"));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QList<QToolButton *> buttons = edit->findChildren<QToolButton *>();
    QCOMPARE(buttons.size(), 1);

    QTest::mouseClick(other, Qt::LeftButton);
    QVERIFY(!buttons.first()->isVisible());
    QTest::mouseClick(edit, Qt::LeftButton);
    QVERIFY(buttons.first()->isVisible());
    QTest::mouseClick(buttons.first(), Qt::LeftButton);
    QCOMPARE(edit->text(), QString());
    QVERIFY(edit->hasFocus());
}

void test_widget_kit::clear_button_appears_unasked()
{
    ui_line_edit_t edit;
    edit.show();
    edit.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&edit));
    edit.setFocus();
    QTest::keyClicks(&edit, QStringLiteral("text"));
    QVERIFY(edit.actions().isEmpty());
    QVERIFY(edit.findChildren<QToolButton *>().isEmpty());
}

void test_widget_kit::state_change_keeps_the_old_look()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    const QIcon icon(pixmap);
    ui_tool_button_t button;
    button.setStyleSheet(QStringLiteral("ui_tool_button_t[link=\"up\"] { min-width: 321px }"));
    button.set_icons({{QStringLiteral("up"), icon}}, QSize(10, 10));
    QCOMPARE(button.iconSize(), QSize(10, 10));
    button.show();
    QVERIFY(button.minimumWidth() < 321);

    button.set_state(QStringLiteral("link"), QStringLiteral("up"));
    QVERIFY(button.minimumWidth() >= 321);
    QCOMPARE(button.icon().cacheKey(), icon.cacheKey());
    QCOMPARE(button.iconSize(), QSize(24, 24));

    button.set_state(QStringLiteral("link"), QStringLiteral("down"));
    QCOMPARE(button.icon().cacheKey(), icon.cacheKey());
}

QTEST_MAIN(test_widget_kit)
#include "test_widget_kit.moc"
