// SPDX-License-Identifier: MIT
#include "drv/drv_device.h"
#include "drv/visa_library.h"
#include "tests/support/window_driver.h"

#include <QtTest/QTest>

/// Runs with no VISA library on the loader's path, and with one whose resource manager does not
/// open: to the user these are the same.
class test_without_visa : public QObject
{
    Q_OBJECT

private slots:
    void link_says_that_it_is_not_ready();
    void window_offers_what_needs_visa();
};

void test_without_visa::link_says_that_it_is_not_ready()
{
    QCOMPARE(drv_device_t::instance()->visa_is_ready(), false);
    QCOMPARE(drv_device_t::instance()->visa_init(), visa_result::not_available);
    QVERIFY(!drv_device_t::instance()->link_write("*RST", 4));
    std::vector<std::string> list;
    int count = -1;
    QCOMPARE(drv_device_t::instance()->usb_scan(list, count), visa_result::nothing_found);
    QCOMPARE(count, 0);
}

void test_without_visa::window_offers_what_needs_visa()
{
    window_driver_t driver;
    QCOMPARE(driver.entries("Tool"), QStringList({"LAN", "Scpi", "Color"}));
    driver.connect_lan("127.0.0.1");
    QCOMPARE(driver.take_boxes(), QStringList{"Information: Ip address no find! [OK, Close]"});
    QCOMPARE(driver.link_text(), "(/)");
    QVERIFY(driver.click("USB") && driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList{"Information: Target device no find! [OK, Close]"});
}

CORVANE_GUI_TEST_MAIN(test_without_visa)
#include "test_without_visa.moc"
