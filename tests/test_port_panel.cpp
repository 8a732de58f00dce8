// SPDX-License-Identifier: MIT
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"

#include <QApplication>
#include <QSet>
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

QByteArrayList color_queries(const QByteArray &letters)
{
    QByteArrayList texts;
    for (const char letter : letters)
        texts.append(QByteArrayLiteral("GET:COLOR? ") + letter);
    return texts;
}

QByteArrayList route_queries(int count)
{
    QByteArrayList texts;
    for (int query = 0; query < count; ++query)
        texts.append(QByteArrayLiteral("ROUTes?"));
    return texts;
}

/// Compares ports without their order.
QSet<QString> set_of(const QStringList &ports)
{
    return {ports.begin(), ports.end()};
}

} // namespace

class test_port_panel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void panel_differs_from_its_product_data();
    void panel_differs_from_its_product();
    void pick_disables_what_the_port_cannot_reach_data();
    void pick_disables_what_the_port_cannot_reach();
    void odd_replies_light_nothing_data();
    void odd_replies_light_nothing();
    void odd_colors_keep_the_color_data();
    void odd_colors_keep_the_color();
    void lit_test_port_click_removes_its_route();
    void taken_test_port_keeps_the_pick();
    void refused_route_does_not_light_up();
    void pick_survives_reset();
    void routes_of_another_product_do_not_show();
    void keyboard_routes_a_port();

private:
    simulator_t simulator;
};

void test_port_panel::init()
{
    simulator.reset();
}

void test_port_panel::panel_differs_from_its_product_data()
{
    QTest::addColumn<QString>("vna_ports");
    QTest::addColumn<int>("test_ports");
    QTest::addColumn<QByteArray>("colors");
    QTest::addColumn<int>("queries");
    const auto row = [](const char *product, const char *vna_ports, int test_ports,
                        const char *colors, int queries) {
        QTest::newRow(product) << vna_ports << test_ports << QByteArray(colors) << queries;
    };
    row("44", "ABCD", 24, "ABCD", 4);
    row("42", "ABCD", 12, "ABCD", 4);
    row("24", "AB", 24, "AB", 2);
    row("22", "AB", 12, "ABCD", 4);
    row("21", "AB", 6, "ABCD", 4);
}

void test_port_panel::panel_differs_from_its_product()
{
    const QString product = QTest::currentDataTag();
    QFETCH(QString, vna_ports);
    QFETCH(int, test_ports);
    QFETCH(QByteArray, colors);
    QFETCH(int, queries);
    const QByteArrayList refresh = color_queries(colors) + route_queries(queries);
    window_driver_t driver;

    // Rescan connects the first instrument, of product 44; what was chosen comes last.
    QVERIFY(driver.connect_usb("SN" + product));
    const QByteArrayList connect =
        QByteArrayList{"SHOW:MNAMe?", "SHOW:SERial?", "SHOW:SVERsion?", "SHOW:PRODect:ID?"} +
        refresh;
    const QByteArrayList texts = simulator.take_texts();
    QCOMPARE(texts.mid(texts.size() - connect.size()), connect);
    QCOMPARE(driver.panel(), QString("ui_%1port_control_widget_t").arg(product));
    QVERIFY(driver.status_text().startsWith(QString("TMX50%1,Serial:SN%1").arg(product)));

    // Blocks of six run from left to right, 13 to 24 above 1 to 12.
    for (const QChar &letter : QStringLiteral("ABCD"))
        QCOMPARE(driver.button(letter) != nullptr, vna_ports.contains(letter));
    for (int number = 1; number <= 25; ++number)
        QCOMPARE(driver.button(QString::number(number)) != nullptr, number <= test_ports);
    const auto place = [&driver](int number) {
        return driver.button(QString::number(number))->mapTo(&driver.window, QPoint(0, 0));
    };
    for (int number = 2; number <= test_ports; ++number)
        QVERIFY(number == 13 || place(number).x() > place(number - 1).x());
    QVERIFY(test_ports < 24 || place(13).y() < place(1).y());

    QVERIFY(driver.click("Reset"));
    QByteArrayList unroutes;
    for (const QChar &letter : vna_ports)
        unroutes.append(QByteArray("ADD:ROUTe ") + letter.toLatin1() + '0');
    QCOMPARE(simulator.take_texts(), unroutes + refresh);
    QCOMPARE(driver.lit_ports(), QStringList());

    QVERIFY(driver.click("A") && driver.click("3"));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe A3"} + route_queries(queries));
    QCOMPARE(driver.painted({deepskyblue}), QStringList({"A", "3"}));
    QVERIFY(driver.click("B") && driver.click("4"));
    QCOMPARE(driver.painted({blue}), QStringList({"B", "4"}));
    QCOMPARE(driver.disabled_ports(), QStringList());
    simulator.take_texts();
    QVERIFY(driver.click("A"));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe A0"} + route_queries(queries));
    QCOMPARE(driver.lit_ports(), QStringList({"B", "4"}));
}

void test_port_panel::pick_disables_what_the_port_cannot_reach_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("picked");
    QTest::addColumn<QStringList>("disabled");
    const QStringList left = numbers(1, 6) + numbers(13, 18);
    const QStringList right = numbers(7, 12) + numbers(19, 24);
    QTest::newRow("44 A") << "44"
                          << "A" << QStringList{"B", "C", "D"} + right;
    QTest::newRow("44 D") << "44"
                          << "D" << QStringList{"A", "B", "C"} + left;
    QTest::newRow("42 B") << "42"
                          << "B" << QStringList{"A", "C", "D"} + numbers(7, 12);
    QTest::newRow("42 C") << "42"
                          << "C" << QStringList{"A", "B", "D"} + numbers(1, 6);
    QTest::newRow("24 A") << "24"
                          << "A" << QStringList{"B"};
    QTest::newRow("22 B") << "22"
                          << "B" << QStringList{"A"};
    QTest::newRow("21 A") << "21"
                          << "A" << QStringList{"B"};
}

void test_port_panel::pick_disables_what_the_port_cannot_reach()
{
    QFETCH(QString, product);
    QFETCH(QString, picked);
    QFETCH(QStringList, disabled);
    window_driver_t driver;
    QVERIFY(driver.connect_usb(QStringLiteral("SN%1").arg(product)));
    QVERIFY(driver.click("Reset"));
    QCOMPARE(driver.disabled_ports(), QStringList());
    simulator.take_texts();

    QVERIFY(driver.click(picked));
    QCOMPARE(set_of(driver.disabled_ports()), set_of(disabled));
    QCOMPARE(driver.painted({white}).contains(picked), false);
    QCOMPARE(simulator.take_texts(), QByteArrayList());

    // A second click on the picked port changes nothing.
    QVERIFY(driver.click(picked));
    QCOMPARE(set_of(driver.disabled_ports()), set_of(disabled));
}

void test_port_panel::odd_replies_light_nothing_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QStringList>("lit");
    const auto row = [](const char *name, const QByteArray &reply, const QStringList &lit) {
        QTest::newRow(name) << reply << lit;
    };
    row("a port that no panel has", "25,0,0,0\n", {});
    row("no label at all", "\n", {});
    row("one field", "3\n", {"A", "3"});
    row("more fields than ports", "0,2,0,0,5,6\n", {"B", "2"});
    row("blank before the label", " 3,0,0,0\n", {});
    row("no terminator: the last digit is cut", "0,0,0,12", {"D", "1"});
    row("embedded NUL", QByteArray("2,0\0,4,0\n", 9), {"A", "2"});
    row("not UTF-8", "\xff\xfe,0,0,0\n", {});
    row("300 bytes and more", QByteArray(5000, '7') + '\n', {});
    row("one port twice", "4,4,0,0\n", {"A", "B", "4"});
}

void test_port_panel::odd_replies_light_nothing()
{
    QFETCH(QByteArray, reply);
    QFETCH(QStringList, lit);
    window_driver_t driver;
    simulator.script_reply("ROUTes?", reply);
    QVERIFY(driver.connect_usb("SN44"));
    QCOMPARE(driver.lit_ports(), lit);
}

void test_port_panel::odd_colors_keep_the_color_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QColor>("shown");
    const auto row = [](const char *name, const char *product, const char *reply,
                        const QColor &shown) {
        QTest::newRow(name) << product << QByteArray(reply) << shown;
    };
    row("RED is shown as magenta", "44", "RED\n", magenta);
    row("GREEN is shown as greenyellow", "44", "GREEN\n", greenyellow);
    row("other case keeps the product's own", "44", "Red\n", greenyellow);
    row("extra characters", "22", "RED \n", greenyellow);
    row("empty, on the product with its own colours", "24", "\n", magenta);
}

void test_port_panel::odd_colors_keep_the_color()
{
    QFETCH(QString, product);
    QFETCH(QByteArray, reply);
    QFETCH(QColor, shown);
    window_driver_t driver;
    simulator.script_reply("GET:COLOR? B", reply);
    simulator.script_reply("ROUTes?", "0,5,0,0\n");
    QVERIFY(driver.connect_usb("SN" + product));
    QCOMPARE(driver.painted({shown}), QStringList({"B", "5"}));
}

void test_port_panel::lit_test_port_click_removes_its_route()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    const QStringList lit = driver.lit_ports();
    QVERIFY(lit.contains("14"));
    simulator.take_texts();

    QVERIFY(driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"ADD:ROUTe B0"} + route_queries(4));
    QVERIFY(!driver.lit_ports().contains("14"));
    QVERIFY(driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_port_panel::taken_test_port_keeps_the_pick()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    QVERIFY(driver.click("A"));
    const QStringList disabled = driver.disabled_ports();
    simulator.take_texts();

    QVERIFY(driver.click("14"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
    QCOMPARE(driver.disabled_ports(), disabled);
    QVERIFY(driver.click("13"));
    QCOMPARE(simulator.take_texts().first(), QByteArray("ADD:ROUTe A13"));
}

void test_port_panel::refused_route_does_not_light_up()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    QVERIFY(driver.click("Reset"));
    simulator.fail_call(CORVANE_SIM_WRITE);

    QVERIFY(driver.click("A") && driver.click("3"));
    QCOMPARE(driver.lit_ports(), QStringList());
    QCOMPARE(driver.disabled_ports(), QStringList());
}

void test_port_panel::pick_survives_reset()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    QVERIFY(driver.click("A"));
    QVERIFY(driver.click("Reset"));
    QCOMPARE(driver.lit_ports(), QStringList());
    QCOMPARE(driver.disabled_ports(), QStringList());
    simulator.take_texts();

    QVERIFY(driver.click("6"));
    QCOMPARE(simulator.take_texts().first(), QByteArray("ADD:ROUTe A6"));
    QCOMPARE(driver.painted({deepskyblue}), QStringList({"A", "6"}));
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

    QVERIFY(driver.click("B"));
    QVERIFY(driver.click("9"));
    QCOMPARE(driver.lit_ports(), QStringList({"B", "9"}));
    QVERIFY(driver.connect_usb("SN24"));
    QCOMPARE(driver.lit_ports(), QStringList());
}

void test_port_panel::keyboard_routes_a_port()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN42"));
    driver.button("A")->setFocus(Qt::TabFocusReason);
    QStringList order;
    for (int step = 0; step < 4 + 12 + 1; ++step) {
        order.append(qobject_cast<QAbstractButton *>(QApplication::focusWidget())->text());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order, QStringList({"A", "B", "C", "D"}) + numbers(1, 12) + QStringList("Reset"));

    QAbstractButton *const vna_port = driver.button("A");
    QCOMPARE(vna_port->accessibleName(), "VNA port A");
    QTest::keyClick(vna_port, Qt::Key_Space);
    QAbstractButton *const test_port = driver.button("5");
    QCOMPARE(test_port->accessibleName(), "Test port 5");
    QTest::keyClick(test_port, Qt::Key_Space);
    QCOMPARE(driver.lit_ports(), QStringList({"A", "5"}));
}

CORVANE_GUI_TEST_MAIN(test_port_panel)
#include "test_port_panel.moc"
