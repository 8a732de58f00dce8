// SPDX-License-Identifier: MIT
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"

#include <QApplication>
#include <QtTest/QTest>

namespace {

const QColor blue("blue");
const QColor deepskyblue("deepskyblue");
const QColor greenyellow("greenyellow");
const QColor magenta("magenta");
const QColor white("white");

QStringList numbers(int first, int last)
{
    QStringList labels;
    for (int number = first; number <= last; ++number)
        labels.append(QString::number(number));
    return labels;
}

const struct
{
    QString name, vna_ports;
    int test_ports;
    QByteArray queried; ///< the ports whose colors it asks for
} products[] = {{"44", "ABCD", 24, "ABCD"},
                {"42", "ABCD", 12, "ABCD"},
                {"24", "AB", 24, "AB"},
                {"22", "AB", 12, "ABCD"},
                {"21", "AB", 6, "ABCD"}};
const QByteArrayList four_route_queries{"ROUTes?", "ROUTes?", "ROUTes?", "ROUTes?"};

} // namespace

class test_port_panel : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void ports_differ_from_the_product();
    void traffic_differs_from_the_product();
    void pick_disables_what_the_port_cannot_reach();
    void odd_reply_lights_the_wrong_ports();
    void click_ends_a_route_or_the_pick();
    void pick_is_lost_or_in_another_color();
    void routes_of_another_product_do_not_show();
    void tab_misses_the_order_of_the_ports();

private:
    simulator_t simulator;
};

void test_port_panel::ports_differ_from_the_product()
{
    for (const auto &row : products) {
        window_driver_t driver;
        QVERIFY(driver.connect_usb("SN" + row.name));
        QCOMPARE(driver.panel(), QString("ui_%1port_control_widget_t").arg(row.name));
        QVERIFY(driver.status_text().startsWith(QString("TMX50%1,Serial:SN%1").arg(row.name)));
        QCOMPARE(driver.window.findChild<ui_central_widget_t *>()->vna_port_count(),
                 row.vna_ports.size());
        QCOMPARE(driver.window.size(), QSize(1000, 400));
        for (const auto *const button : driver.window.findChildren<QAbstractButton *>()) {
            const QRect seen = button->visibleRegion().boundingRect();
            QVERIFY2(!button->isVisible() || seen == button->rect(), qPrintable(button->text()));
        }

        // Blocks of six run from left to right, 13 to 24 above 1 to 12; VNA ports above, Reset on
        // top.
        for (const QChar &letter : QStringLiteral("ABCD"))
            QCOMPARE(driver.button(letter) != nullptr, row.vna_ports.contains(letter));
        for (int number = 1; number <= 25; ++number)
            QCOMPARE(driver.button(QString::number(number)) != nullptr, number <= row.test_ports);
        const auto place = [&driver](const QString &text) {
            return driver.button(text)->mapTo(&driver.window, QPoint(0, 0));
        };
        const QStringList labels = numbers(1, row.test_ports);
        for (int index = 1; index < row.test_ports; ++index)
            QVERIFY(index == 12 || place(labels[index]).x() > place(labels[index - 1]).x());
        QVERIFY(row.test_ports < 24 || place("13").y() < place("1").y());
        QVERIFY(place("Reset").y() < place("A").y() &&
                place("A").y() < place(labels.value(12, "1")).y());
        for (const char *const port : {"A", "1"})
            QCOMPARE(driver.button(port)->size(), QSize(75, 30));
    }
}

void test_port_panel::traffic_differs_from_the_product()
{
    for (const auto &row : products) {
        QByteArrayList queries;
        for (const char letter : row.queried)
            queries.append(QByteArrayLiteral("GET:COLOR? ") + letter);
        const QByteArrayList route_queries = four_route_queries.mid(0, row.queried.size());
        queries += route_queries;
        window_driver_t driver;
        // Rescan connects the first instrument, of product 44; what was chosen comes last.
        QVERIFY(driver.connect_usb("SN" + row.name));
        const QByteArrayList texts = simulator.take_texts();
        QCOMPARE(
            texts.mid(texts.size() - 4 - queries.size()),
            (QByteArrayList{"SHOW:MNAMe?", "SHOW:SERial?", "SHOW:SVERsion?", "SHOW:PRODect:ID?"} +
             queries));

        QVERIFY(driver.click("Reset") && !driver.button("Reset")->hasFocus());
        QByteArrayList unroutes;
        for (const QChar &letter : row.vna_ports)
            unroutes.append(QByteArray("ADD:ROUTe ") + letter.toLatin1() + '0');
        QCOMPARE(simulator.take_texts(), unroutes + queries);
        QCOMPARE(driver.lit_ports(), QStringList());
        QVERIFY(driver.click("A") && driver.click("3"));
        QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe A3"} + route_queries);
        QCOMPARE(driver.painted({deepskyblue}), QStringList({"A", "3"}));
        QVERIFY(driver.click("B") && driver.click("4"));
        QCOMPARE(driver.painted({blue}), QStringList({"B", "4"}));
        QCOMPARE(driver.disabled_ports(), QStringList());
        simulator.take_texts();
        QVERIFY(driver.click("A"));
        QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe A0"} + route_queries);
        QCOMPARE(driver.lit_ports(), QStringList({"B", "4"}));
    }
}

void test_port_panel::pick_disables_what_the_port_cannot_reach()
{
    const QStringList left = numbers(13, 18) + numbers(1, 6);
    const QStringList right = numbers(19, 24) + numbers(7, 12);
    const struct
    {
        const char *product;
        QString picked;
        QStringList disabled;
    } rows[] = {
        {"SN44", "A", QStringList{"B", "C", "D"} + right},
        {"SN44", "D", QStringList{"A", "B", "C"} + left},
        {"SN42", "B", QStringList{"A", "C", "D"} + numbers(7, 12)},
        {"SN42", "C", QStringList{"A", "B", "D"} + numbers(1, 6)},
        {"SN24", "A", {"B"}},
        {"SN22", "B", {"A"}},
        {"SN21", "A", {"B"}},
    };
    for (const auto &row : rows) {
        window_driver_t driver;
        QVERIFY(driver.connect_usb(row.product) && driver.click("Reset"));
        QCOMPARE(driver.disabled_ports(), QStringList());
        simulator.take_texts();
        // A second click on the picked port changes nothing.
        for (int click = 0; click < 2; ++click) {
            QVERIFY(driver.click(row.picked));
            QCOMPARE(driver.disabled_ports(), row.disabled);
            QCOMPARE(driver.painted({white}).contains(row.picked), false);
            QCOMPARE(simulator.take_texts(), QByteArrayList());
        }
    }
}

void test_port_panel::odd_reply_lights_the_wrong_ports()
{
    const QVector<QColor> any{blue, deepskyblue, greenyellow, magenta};
    const QByteArray b5 = "0,5,0,0\n";
    const struct
    {
        const char *product;
        QByteArray routes;
        QByteArray color_of_b;
        QVector<QColor> colors;
        QStringList lit;
    } rows[] = {
        {"SN44", "25,0,0,0\n", "BLUE\n", any, {}},
        {"SN44", "3\n", "BLUE\n", any, {"A", "3"}},
        {"SN44", "0,2,0,0,5,6\n", "BLUE\n", any, {"B", "2"}},
        {"SN44", " 3,0,0,0\n", "BLUE\n", any, {}},
        {"SN44", "4,4,0,0\n", "BLUE\n", {blue}, {"B", "4"}},
        {"SN44", b5, "RED\n", {magenta}, {"B", "5"}},
        {"SN44", b5, "GREEN\n", {greenyellow}, {"B", "5"}},
        // What is no colour leaves the product's own.
        {"SN44", b5, "Red\n", {greenyellow}, {"B", "5"}},
        {"SN22", b5, "RED \n", {greenyellow}, {"B", "5"}},
        {"SN24", b5, "\n", {magenta}, {"B", "5"}},
    };
    for (const auto &row : rows) {
        simulator.reset();
        simulator.script_reply("ROUTes?", row.routes);
        simulator.script_reply("GET:COLOR? B", row.color_of_b);
        window_driver_t driver;
        QVERIFY(driver.connect_usb(row.product));
        QVERIFY2(driver.painted(row.colors) == row.lit, row.routes + row.color_of_b);
    }
}

void test_port_panel::click_ends_a_route_or_the_pick()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    // A port that is taken keeps the pick.
    QVERIFY(driver.click("A"));
    const QStringList disabled = driver.disabled_ports();
    simulator.take_texts();
    QVERIFY(driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
    QCOMPARE(driver.disabled_ports(), disabled);
    QVERIFY(driver.click("13"));
    QCOMPARE(simulator.take_texts().first(), QByteArray("ADD:ROUTe A13"));
    // Without a pick it loses its route.
    QVERIFY(driver.lit_ports().contains("14") && driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe B0"} + four_route_queries);
    QVERIFY(!driver.lit_ports().contains("14") && driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
    // A route that is refused does not light up, and ends the pick.
    QVERIFY(driver.click("Reset") && driver.click("A"));
    simulator.fail_call(CORVANE_SIM_WRITE);
    QVERIFY(driver.click("3"));
    QCOMPARE(driver.lit_ports() + driver.disabled_ports(), QStringList());
    simulator.take_texts();
    QVERIFY(driver.click("3"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

/// Over a refresh that learns nothing, too, and over a new connection.
void test_port_panel::pick_is_lost_or_in_another_color()
{
    simulator.script_reply("GET:COLOR? A", "GREEN\n");
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44") && driver.click("A"));
    QCOMPARE(driver.painted({greenyellow}), QStringList("A"));
    simulator.fail_call(CORVANE_SIM_READ);
    QVERIFY(driver.click("Reset"));
    QCOMPARE(driver.lit_ports() + driver.disabled_ports(), QStringList());
    simulator.take_texts();
    QVERIFY(driver.click("6"));
    QCOMPARE(simulator.take_texts().first(), QByteArray("ADD:ROUTe A6"));
    QCOMPARE(driver.painted({greenyellow}), QStringList({"A", "6"}));
    simulator.fail_call(CORVANE_SIM_READ);
    QVERIFY(driver.click("B") && driver.click("14"));
    QCOMPARE(driver.lit_ports(), QStringList({"B", "14"}));

    QVERIFY(driver.click("C"));
    const QStringList disabled = driver.disabled_ports();
    QVERIFY(driver.connect_usb("SN44"));
    QCOMPARE(driver.disabled_ports(), disabled);
    QVERIFY(driver.click("19"));
    QVERIFY(simulator.take_texts().contains("ADD:ROUTe C19"));
}

void test_port_panel::routes_of_another_product_do_not_show()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    QVERIFY(driver.lit_ports().contains("9"));

    // Product 22 asks for "C" too, which the link still holds from product 44.
    QVERIFY(driver.connect_usb("SN22"));
    QCOMPARE(driver.lit_ports(), QStringList());
    simulator.take_texts();
    QVERIFY(driver.click("9"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_port_panel::tab_misses_the_order_of_the_ports()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    driver.button("A")->setFocus(Qt::TabFocusReason);
    QStringList order;
    for (int step = 0; step < 4 + 24 + 1; ++step) {
        auto *const button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
        order.append(button->text());
        QVERIFY(button->accessibleName().isEmpty() ||
                button->accessibleName().endsWith("port " + button->text()));
        QTest::keyClick(button, Qt::Key_Tab);
    }
    QCOMPARE(order, QStringList({"A", "B", "C", "D"}) + numbers(1, 24) + QStringList("Reset"));
}

CORVANE_GUI_TEST_MAIN(test_port_panel)
#include "test_port_panel.moc"
