// SPDX-License-Identifier: MIT
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/widget/ui_combo_box.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QRadioButton>
#include <QStyleOptionComboBox>
#include <QtTest/QTest>

namespace {

/// The number of different colours in a part of a widget as it is painted.
int colors_in(QWidget &widget, const QRect &part)
{
    const QImage image = widget.grab(part).toImage();
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    return colors.size();
}

} // namespace

class test_look : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void pictures_decode_data();
    void pictures_decode();
    void font_has_latin_and_simplified_chinese();
    void svg_images_of_the_style_sheet_are_painted();
    void every_panel_fits_the_window_data();
    void every_panel_fits_the_window();

private:
    simulator_t simulator;
};

void test_look::pictures_decode_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("least_size");
    const auto row = [](const char *path, const QSize &least_size) {
        QTest::newRow(path) << QString::fromLatin1(path) << least_size;
    };
    row("norvale.ico", {16, 16});
    row("norvale.png", {128, 128});
    row("waiting.gif", {32, 32});
    row("panel.png", {948, 205});
    row("panel_1.png", {948, 205});
    row("port.png", {32, 32});
    for (const char *const color : {"blue.ico", "red.ico", "green.ico", "cyan.ico"})
        row(color, {16, 16});
    for (const char *const state : {"rest", "hover", "focus", "disabled"})
        row(qPrintable(QStringLiteral("widget/combo_box/arrow_down_%1.svg").arg(state)), {4, 4});
    for (const char *const state : {"rest", "hover", "pressed", "disabled"}) {
        for (const char *const choice : {"selected", "unselected"})
            row(qPrintable(QStringLiteral("widget/radio_button/%1_%2.svg").arg(choice, state)),
                {4, 4});
    }
    row("widget/line_edit/clear.svg", {4, 4});
    row("widget/line_edit/icon_keyboard_32.png", {32, 32});
}

void test_look::pictures_decode()
{
    QFETCH(QString, path);
    QFETCH(QSize, least_size);
    const QImage picture(":/image/" + path);
    QVERIFY2(!picture.isNull(), "no such resource, or its image plugin is missing");
    QVERIFY(picture.width() >= least_size.width());
    QVERIFY(picture.height() >= least_size.height());
}

void test_look::font_has_latin_and_simplified_chinese()
{
    const QFontMetrics metrics(QApplication::font());
    QCOMPARE(QFontInfo(QApplication::font()).family(), QApplication::font().family());
    for (const QChar &character : QStringLiteral("AZaz09é—中国测试端口网络"))
        QVERIFY2(metrics.inFont(character), qPrintable(QString(character)));
}

/// Without Qt's SVG image plugin these come out blank, and nothing says so.
void test_look::svg_images_of_the_style_sheet_are_painted()
{
    window_driver_t driver;
    for (QRadioButton *const radio : driver.window.findChildren<QRadioButton *>()) {
        QStyleOptionButton option;
        option.initFrom(radio);
        const QRect indicator =
            radio->style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, radio);
        QVERIFY2(colors_in(*radio, indicator) > 3, qPrintable(radio->text()));
    }
    auto *const list = driver.window.findChild<ui_combo_box_t *>();
    QStyleOptionComboBox option;
    option.initFrom(list);
    const QRect arrow =
        list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, list);
    QVERIFY(colors_in(*list, arrow) > 3);
}

void test_look::every_panel_fits_the_window_data()
{
    QTest::addColumn<QString>("serial");
    for (const char *const serial : {"", "SN44", "SN42", "SN24", "SN22", "SN21"})
        QTest::newRow(serial) << QString::fromLatin1(serial);
}

void test_look::every_panel_fits_the_window()
{
    QFETCH(QString, serial);
    window_driver_t driver;
    if (!serial.isEmpty())
        QVERIFY(driver.connect_usb(serial));
    QCOMPARE(driver.window.size(), QSize(1000, 400));
    const QRect inside = driver.window.rect();
    for (const QAbstractButton *const button : driver.window.findChildren<QAbstractButton *>()) {
        if (!button->isVisible())
            continue;
        const QRect place(button->mapTo(&driver.window, QPoint(0, 0)), button->size());
        QVERIFY2(inside.contains(place), qPrintable(button->text()));
        QVERIFY2(button->visibleRegion().boundingRect() == button->rect(),
                 qPrintable(button->text()));
    }
}

CORVANE_GUI_TEST_MAIN(test_look)
#include "test_look.moc"
