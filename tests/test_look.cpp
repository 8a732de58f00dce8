// SPDX-License-Identifier: MIT
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/widget/ui_combo_box.h"

#include <QApplication>
#include <QDirIterator>
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
    for (int pixel = 0; pixel < image.width() * image.height(); ++pixel)
        colors.insert(image.pixel(pixel % image.width(), pixel / image.width()));
    return colors.size();
}

} // namespace

class test_look : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void picture_does_not_decode();
    void font_lacks_a_character();
    void svg_image_of_the_style_sheet_is_blank();
    void panel_does_not_fit_the_window();

private:
    simulator_t simulator;
};

/// Neither one of the resources nor one that is named elsewhere.
void test_look::picture_does_not_decode()
{
    QStringList paths{":/image/panel.png", ":/image/port.png", ":/image/norvale.ico"};
    QDirIterator files(":/image", QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths.append(files.next());
    for (const QString &url : qApp->styleSheet().split("url(").mid(1))
        paths.append(url.section(')', 0, 0).remove('"'));
    for (const QString &path : qAsConst(paths))
        QVERIFY2(!QImage(path).isNull(), qPrintable(path));
}

void test_look::font_lacks_a_character()
{
    const QFontMetrics metrics(QApplication::font());
    QCOMPARE(QFontInfo(QApplication::font()).family(), QApplication::font().family());
    for (const QChar &character : QStringLiteral("Az09é—测试端口网络"))
        QVERIFY2(metrics.inFont(character), qPrintable(QString(character)));
}

/// Without Qt's SVG image plugin these come out blank, and nothing says so.
void test_look::svg_image_of_the_style_sheet_is_blank()
{
    window_driver_t driver;
    for (QRadioButton *const radio : driver.window.findChildren<QRadioButton *>()) {
        QStyleOptionButton option;
        option.initFrom(radio);
        constexpr auto part = QStyle::SE_RadioButtonIndicator;
        QVERIFY(colors_in(*radio, radio->style()->subElementRect(part, &option, radio)) > 3);
    }
    auto *const list = driver.window.findChild<ui_combo_box_t *>();
    QStyleOptionComboBox option;
    option.initFrom(list);
    const QRect arrow =
        list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, list);
    QVERIFY(colors_in(*list, arrow) > 3);
}

void test_look::panel_does_not_fit_the_window()
{
    for (const char *const serial : {"", "SN44", "SN42", "SN24", "SN22", "SN21"}) {
        window_driver_t driver;
        QVERIFY(*serial == '\0' || driver.connect_usb(serial));
        QCOMPARE(driver.window.size(), QSize(1000, 400));
        for (const auto *const button : driver.window.findChildren<QAbstractButton *>()) {
            const QRect seen = button->visibleRegion().boundingRect();
            QVERIFY2(!button->isVisible() || seen == button->rect(), serial);
        }
    }
}

CORVANE_GUI_TEST_MAIN(test_look)
#include "test_look.moc"
