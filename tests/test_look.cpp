// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/widget/q_ip_line_edit.h"
#include "ui/widget/ui_combo_box.h"

#include <QApplication>
#include <QDirIterator>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QToolButton>
#include <QtTest/QTest>

namespace {

/// The window as it is painted, cut to a widget and so many pixels around it.
QImage seen(QWidget &window, const QWidget &widget, int around = 0)
{
    const QRect part(widget.mapTo(&window, QPoint(0, 0)), widget.size());
    return window.grab(part.adjusted(-around, -around, around, around)).toImage();
}

/// The highest level of any color in a button's text.
int brightest(QWidget &window, const QWidget &button)
{
    const QImage image = seen(window, button, -4);
    int highest = 0;
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            for (const int channel :
                 {qRed(image.pixel(x, y)), qGreen(image.pixel(x, y)), qBlue(image.pixel(x, y))})
                highest = qMax(highest, channel);
    return highest;
}

/// Whether a ring of one light grey is painted around the widget.
bool is_ringed(QWidget &window, const QWidget &widget)
{
    const QImage image = seen(window, widget, 1);
    const QRgb color = image.pixel(0, image.height() / 2);
    for (int x = 0; x < image.width(); ++x)
        if (image.pixel(x, 0) != color || image.pixel(x, image.height() - 1) != color)
            return false;
    return qRed(color) == qGreen(color) && qGreen(color) == qBlue(color) && qRed(color) > 200;
}

/// Goes once around a window with Tab; the stops that look the same with the focus and without.
QStringList unseen_stops(QWidget &window)
{
    QStringList unseen;
    const QWidget *first = nullptr;
    for (;;) {
        QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window,
                        Qt::Key_Tab);
        QWidget *const stop = window.focusWidget();
        if (stop == first)
            return unseen;
        first = first == nullptr ? stop : first;
        const QImage focused = seen(window, *stop, 2);
        stop->clearFocus();
        if (seen(window, *stop, 2) == focused)
            unseen.append(stop->metaObject()->className());
        stop->setFocus(Qt::TabFocusReason);
    }
}

/// The texts that do not fit where they stand.
QStringList cut_texts(const QWidget &window)
{
    QStringList cut;
    for (const auto *const widget : window.findChildren<QWidget *>()) {
        const bool group = widget->inherits("QGroupBox");
        const QString text = widget->property(group ? "title" : "text").toString();
        if (!widget->isVisible() || text.isEmpty() || widget->inherits("QLineEdit"))
            continue;
        const QFontMetrics metrics = widget->fontMetrics();
        // A text that is broken into lines needs height.
        const bool lines = widget->hasHeightForWidth();
        const int width = widget->inherits("QLabel") ? widget->sizeHint().width()
                                                     : metrics.horizontalAdvance(text);
        const int height = lines ? widget->heightForWidth(widget->width())
                                 : metrics.tightBoundingRect(text).height();
        if ((!lines && width > widget->width()) || height > widget->height() ||
            widget->visibleRegion().boundingRect() != widget->rect())
            cut.append(text);
    }
    return cut;
}

} // namespace

class test_look : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void picture_does_not_decode();
    void state_has_the_wrong_color();
    void font_lacks_a_character();
    void disabled_port_looks_enabled();
    void ring_vanishes_or_takes_a_color();
    void window_cuts_a_text_or_hides_the_focus();

private:
    void use_window(const QString &name, const std::function<void(QWidget &)> &use);

    simulator_t simulator;
};

/// Neither one of the resources nor one that is named elsewhere. Without Qt's SVG image plugin some
/// come out blank, and nothing says so.
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
    ui_combo_box_t colors;
    colors.add_color_items();
    QStringList icons;
    for (int item = 0; item < colors.count(); ++item)
        icons.append(QColor(colors.itemIcon(item).pixmap(16).toImage().pixel(8, 8)).name());
    QCOMPARE(icons.join(' '), QString("#4bd2ff #6175ff #f4626a #67de67"));
}

void test_look::state_has_the_wrong_color()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    QStringList grounds;
    const auto look_at = [&](QWidget *widget) {
        for (const bool hover : {false, true}) {
            widget->setAttribute(Qt::WA_UnderMouse, hover);
            QMouseEvent move(QEvent::MouseMove, {4, 4}, Qt::NoButton, Qt::NoButton, {});
            QCoreApplication::sendEvent(widget, &move);
            grounds.append(QColor(seen(driver.window, *widget).pixel(4, 4)).name());
        }
    };
    for (const char *const text : {"Rescan", "A"}) {
        look_at(driver.button(text));
        driver.button(text)->setDown(true);
        look_at(driver.button(text));
    }
    driver.click("LAN");
    auto *const octet = driver.window.findChild<QIPLineEdit *>()->findChild<QLineEdit *>();
    look_at(octet);
    octet->setFocus();
    look_at(octet);
    // What the style sheet gives no ground of its own, as in a file dialog.
    QListWidget list;
    grounds.append(QColor(seen(list, *list.viewport()).pixel(4, 4)).name());
    QCOMPARE(grounds.join(' '),
             QString("#474748 #585859 #3f3f40 #3f3f40 #222222 #444444 #303030 #303030 "
                     "#434346 #666666 #dddddd #dddddd #1e1e20"));
}

void test_look::font_lacks_a_character()
{
    const QFontMetrics metrics(QApplication::font());
    QCOMPARE(QFontInfo(QApplication::font()).family(), QApplication::font().family());
    for (const QChar &character : QStringLiteral("Az09é—测试端口网络"))
        QVERIFY2(metrics.inFont(character), qPrintable(QString(character)));
}

/// Lit or not, of every color.
void test_look::disabled_port_looks_enabled()
{
    for (const auto &[product, routes] : {std::pair("SN44", "0,13,7,20\n"), {"SN21", "0,2\n"}}) {
        simulator.script_reply("ROUTes?", routes);
        window_driver_t driver;
        QVERIFY(driver.connect_usb(product) && driver.click("A"));
        for (const auto *const port : driver.window.findChildren<QToolButton *>()) {
            const int level = port->isVisible() ? brightest(driver.window, *port) : 255;
            const bool looks_enabled = level == 255;
            QVERIFY2(!port->isVisible() || looks_enabled == port->isEnabled(),
                     qPrintable(port->text()));
            QVERIFY2(looks_enabled || (level > 80 && level <= 128), qPrintable(port->text()));
        }
    }
}

void test_look::ring_vanishes_or_takes_a_color()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN42"));
    QVERIFY(driver.click("Reset"));
    for (const char *const port : {"A", "5"}) {
        const QAbstractButton *const button = driver.button(port);
        QVERIFY(!is_ringed(driver.window, *button));
        while (QApplication::focusWidget() != button)
            QTest::keyClick(&driver.window, Qt::Key_Tab);
        QVERIFY(is_ringed(driver.window, *button));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(driver.lit_ports().contains(port));
        QVERIFY(is_ringed(driver.window, *button));
    }
    driver.window.resize(1100, 450);
    QTRY_VERIFY(is_ringed(driver.window, *driver.button("5")));
    // A mouse is in use: where the keyboard would act is not of interest.
    QVERIFY(driver.click("C"));
    QVERIFY(!is_ringed(driver.window, *driver.button("5")));
}

/// Opens the window with this name, uses it and closes it.
void test_look::use_window(const QString &name, const std::function<void(QWidget &)> &use)
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    if (driver.click(name)) {
        driver.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&driver.window));
        use(driver.window);
        return;
    }
    const auto open = [&] {
        if (!driver.choose(name.section(' ', 0, 0), name.section(' ', 1)))
            QMetaObject::invokeMethod(&driver.window, "product_btn_click_slot");
        QVERIFY(QTest::qWaitFor([] { return QApplication::activeModalWidget() == nullptr; }));
    };
    QVERIFY(use_dialog(open, use));
}

void test_look::window_cuts_a_text_or_hides_the_focus()
{
    // A caret that blinks would count as a change.
    QApplication::setCursorFlashTime(0);
    for (const char *const name : {"USB", "LAN", "Tool LAN", "Tool Scpi", "Tool Color",
                                   "Tool Upgrade", "product", "Help About"})
        use_window(name, [](QWidget &window) {
            QTRY_COMPARE(cut_texts(window).join(" | "), QString());
            QCOMPARE(unseen_stops(window).join(" | "), QString());
        });
}

CORVANE_GUI_TEST_MAIN(test_look)
#include "test_look.moc"
