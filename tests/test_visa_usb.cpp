// SPDX-License-Identifier: MIT
// Our VISA library among the USB instruments of tests/support/usb_instruments.umockdev: two that
// have a name, one without a serial number, and a modem's node. What the kernel's driver does with
// messages is for scripts/test-usb-kernel.

#include "visa/entry_points.h"
#include "visa/visa_types.h"

#include <QFile>
#include <QtTest>

using namespace visa;

class test_visa_usb : public QObject
{
    Q_OBJECT

private slots:
    void init() { QCOMPARE(viOpenDefaultRM(&manager), success); }
    void cleanup() { QCOMPARE(viClose(manager), success); }

    void search_misses_or_invents_an_instrument_data();
    void search_misses_or_invents_an_instrument();
    void another_instrument_is_opened_data();
    void another_instrument_is_opened();

private:
    ViSession manager = null_object;
};

void test_visa_usb::search_misses_or_invents_an_instrument_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QStringList>("names");
    const QString plain = "USB0::0xA17E::0x2000::SN44010::INSTR";
    const QString second_interface = "USB0::0x0ABC::0x00FF::7::10::INSTR";
    QTest::newRow("all") << QByteArray("USB?*INSTR") << QStringList{second_interface, plain};
    QTest::newRow("of one maker") << QByteArray("USB?*{VI_ATTR_MANF_ID == 0xA17E}")
                                  << QStringList{plain};
    QTest::newRow("of one model") << QByteArray("?*{VI_ATTR_MODEL_NAME == \"TMX5044\"}")
                                  << QStringList{plain};
    QTest::newRow("none") << QByteArray("USB?*::SN1::INSTR") << QStringList();
}

void test_visa_usb::search_misses_or_invents_an_instrument()
{
    QFETCH(QByteArray, expression);
    QFETCH(QStringList, names);
    ViFindList list = null_object;
    ViUInt32 count = 99;
    char name[find_buffer_bytes] = "";
    QStringList found;
    ViStatus status = viFindRsrc(manager, expression.constData(), &list, &count, name);
    QCOMPARE(count, static_cast<ViUInt32>(names.size()));
    for (; status == success; status = viFindNext(list, name))
        found.append(name);
    QCOMPARE(status, error_resource_not_found);
    QCOMPARE(found, names);
}

void test_visa_usb::another_instrument_is_opened_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<ViStatus>("status");
    QTest::newRow("in another spelling") << QByteArray("usb::41342::8192::sn44010") << success;
    QTest::newRow("other serial number")
        << QByteArray("USB0::0xA17E::0x2000::SN44011::INSTR") << error_resource_not_found;
    QTest::newRow("other interface")
        << QByteArray("USB0::0xABC::0xFF::7::INSTR") << error_resource_not_found;
}

void test_visa_usb::another_instrument_is_opened()
{
    QFETCH(QByteArray, name);
    QFETCH(ViStatus, status);
    ViSession session = 1;
    QCOMPARE(viOpen(manager, name.constData(), 0, 0, &session), status);
    if (status != success)
        return;
    char model[find_buffer_bytes] = "";
    QCOMPARE(viGetAttribute(session, attribute_model_name, model), success);
    QCOMPARE(model, "TMX5044");
    QCOMPARE(viClose(session), success);
}

QTEST_GUILESS_MAIN(test_visa_usb)
#include "test_visa_usb.moc"
