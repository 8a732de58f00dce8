// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/widget/ui_line_edit.h"

#include <QGroupBox>
#include <QtTest/QTest>

namespace {

/// What a dialog does with an instrument. Lists are separated by "|".
struct row_t
{
    /// The dialog's entry in the menu or, when it has none, the window's slot.
    QString entry;
    /// The instrument's replies: "query=reply".
    QString script;
    /// See `perform`; "write 3" or "read 3" makes the third next one fail.
    QString steps;
    /// The texts that the instrument receives, in order.
    QString sent;
    /// What is shown at last: "label=value".
    QString fields{};
    /// The ports that the panel paints green once the dialog is closed.
    QString green{};
    QString product = "44";
};

const QString color_queries = "GET:COLOR? A|GET:COLOR? B|GET:COLOR? C|GET:COLOR? D";
const QString lan_queries = "SHOW:LAN:DHCP?|SHOW:LAN:IP?|SHOW:LAN:SNMask?|"
                            "SHOW:LAN:GW?|SHOW:LAN:HOST:NAMe?|SHOW:LAN:MAC:ADDRess?";

/// All steps but the last one, which restarts the instrument.
QString provisioning(const QString &type, const QString &serial, const QString &code)
{
    return "SYSTem:DEVice:DEFAULT|SYSTem:DEVice:PRODUCTUG " + type + "|SYSTem:DEVice:SERIAL:NUM " +
           serial + "|SYSTem:DEVice:PRODUCTUG:ID " + code + '|';
}

// "B|14" is also what the panel itself gives port B when there is no colour to read.
const row_t rows[] = {
    // The colors that are reported are selected.
    {"Color", "GET:COLOR? A=RED\n|GET:COLOR? B=green\n|GET:COLOR? C=", "", color_queries,
     "Color VNA Port A:=Red|Color VNA Port B:=Cyan|Color VNA Port C:=Cyan|Color VNA Port D:=Green",
     "B|14"},
    // The one that is picked is on the panel.
    {"Color", "", "Color VNA Port B:=Green", color_queries + "|SET:COLOR B,Green", "", "B|14"},
    // The default of four ports.
    {"Color", "", "Color VNA Port A:=Red|Default",
     color_queries + "|SET:COLOR A,Red|SET:COLOR A,Cyan|SET:COLOR A,Cyan|SET:COLOR B,Blue|"
                     "SET:COLOR C,Red|SET:COLOR D,Green"},
    // The default of two ports.
    {"Color", "", "Default",
     "GET:COLOR? A|GET:COLOR? B|SET:COLOR C,Red|SET:COLOR D,Green|SET:COLOR A,Cyan|"
     "SET:COLOR B,Blue",
     "Color VNA Port C:=Red off|Color VNA Port D:=Green off", "", "24"},

    // A fixed address.
    {"LAN", "SHOW:LAN:DHCP?=0\n|SHOW:LAN:HOST:NAMe?=主机-ü\n", "Refresh", lan_queries,
     "IP Setting=Fixed IP|IP Address:=192.168.1.150|Subnet Mask:=255.255.255.0|"
     "Standard Gateway:=192.168.1.1|Hostname:=主机-ü|Mac Address:=00:1E:C0:44:00:01"},
    // Invalid addresses stay out.
    {"LAN", "SHOW:LAN:IP?=192.168.1.300\n|SHOW:LAN:GW?=none\n", "IP Address:=10.0.0.9|Refresh",
     lan_queries, "IP Address:=10.0.0.9|Subnet Mask:=255.255.255.0|Standard Gateway:=..."},
    // The refresh breaks off.
    {"LAN", "SHOW:LAN:DHCP?=0\n", "Refresh|IP Address:=10.0.0.9|read 3|Refresh",
     lan_queries + "|SHOW:LAN:DHCP?|SHOW:LAN:IP?|SHOW:LAN:SNMask?",
     "IP Setting=DHCP|IP Address:=10.0.0.9|Subnet Mask:=255.255.255.0|Hostname:=|Mac Address:="},
    // The last apply breaks off.
    {"LAN", "",
     "IP Address:=10.0.0.9|Subnet Mask:=255.0.0.0|Standard Gateway:=10.0.0.1|Hostname:=主机|Apply|"
     "IP Setting=Fixed IP|Apply|write 2|Apply",
     "SET:LAN:DHCP 1|SET:LAN:HOST:NAMe 主机|SET:LAN:DHCP 0|SET:LAN:IP 10.0.0.9|"
     "SET:LAN:SNMask 255.0.0.0|SET:LAN:GW 10.0.0.1|SET:LAN:HOST:NAMe 主机|SET:LAN:DHCP 0"},

    // The query gets no reply.
    {"Scpi", "", "Query|read 1|Query", "*IDN?|*IDN?", "Reply="},
    // Read and write fail.
    {"Scpi", "", "Write|Read|read 1|Read|write 1|Write", "*IDN?",
     "Reply=TMX,TMX5044,SN44001,1.0.0"},
    // Blanks, and beyond ASCII.
    {"Scpi", "  主  机 = 主 1 \n", "Command=  主  机 |Query", "  主  机 ",
     "Command=  主  机 |Reply= 主 1 "},
    // The panel follows.
    {"Scpi", "", "Command=ADD:ROUTe A3|Write|Command=SET:COLOR A,Green|Write",
     "ADD:ROUTe A3|SET:COLOR A,Green", "", "A|3"},

    // All steps, some of which fail.
    {"product_btn_click_slot", "",
     "write 1|Set|write 2|Set|write 5|Set|Serial Number:=S _1|Product Type:=44TMX|write 5|Set|"
     "Product Type:=TMX4424|write 5|Set|Product Type:=ABC24|write 5|Set|"
     "Product Type:=tmx5044|write 5|Set|Product Type:=T-MX_44;|Set",
     "SYSTem:DEVice:DEFAULT|" + provisioning("", "0123456789", "99") +
         provisioning("44TMX", "S1", "44") + provisioning("TMX4424", "S1", "24") +
         provisioning("ABC24", "S1", "99") + provisioning("tmx5044", "S1", "99") +
         provisioning("TMX_44", "S1", "44") + "REBOOT"},
};

} // namespace

class test_device_dialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void window_is_wrong_or_return_does_something();
    void traffic_or_fields_are_wrong();

private:
    simulator_t simulator;
};

void test_device_dialogs::window_is_wrong_or_return_does_something()
{
    const struct
    {
        QString title;
        int width;
        const char *group, *tab_stops;
    } windows[] = {
        {"LAN", 400, "LAN Settings",
         "IP Setting|IP Address:|Subnet Mask:|Standard Gateway:|Hostname:|Refresh|Apply"},
        {"COLOR", 350, "Port-LED Settings",
         "Color VNA Port A:|Color VNA Port B:|Color VNA Port C:|Color VNA Port D:|Default"},
        {"PRODUCT", 350, "Product Setting", "Product Type:|Serial Number:|Set"},
        {"SCPI", 450, "Scpi Test ", "Command|Reply|Write|Query|Read"},
        {"UPGRADE", 450, "Firmware Upgrade ", "Package|Browse|Begin"},
    };
    for (const auto &row : windows) {
        window_driver_t driver;
        const auto open = [&driver, slot = row.title.toLower() + "_btn_click_slot"] {
            QMetaObject::invokeMethod(&driver.window, qPrintable(slot));
        };
        open();
        QCOMPARE(driver.take_boxes(),
                 QStringList("Information: Device not connected! [OK, Close]"));
        QVERIFY(driver.connect_usb("SN44"));
        QVERIFY(use_dialog(open, [&](const QDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), row.title);
            QCOMPARE(dialog.findChild<QGroupBox *>()->title(), QString(row.group));
            QCOMPARE(dialog.width(), row.width);
            for (const auto *const widget : dialog.findChildren<QWidget *>())
                if (QByteArray(widget->metaObject()->className()).startsWith("ui_"))
                    QCOMPARE(widget->height(), 28);
            for (const auto *const edit : dialog.findChildren<QLineEdit *>())
                if (QStringList({"Command", "Reply", "Package"}).contains(edit->accessibleName()))
                    QCOMPARE(edit->isReadOnly(), edit->accessibleName() != "Command");
            QVERIFY(dialog.minimumSizeHint().width() <= row.width);
            QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
            simulator.take_texts();
            const quint64 reads = simulator.calls(CORVANE_SIM_READ);
            QCOMPARE(press_return_everywhere(dialog).join('|'), QString(row.tab_stops));
            // In the console it queries from both fields and "Query", and presses "Write" and
            // "Read".
            QCOMPARE(simulator.take_texts().size(), row.title == "SCPI" ? 4 : 0);
            QCOMPARE(simulator.calls(CORVANE_SIM_READ) - reads, row.title == "SCPI" ? 4U : 0U);
        }));
    }
}

void test_device_dialogs::traffic_or_fields_are_wrong()
{
    for (const row_t &row : rows) {
        simulator.reset();
        for (const QString &line : row.script.split('|', Qt::SkipEmptyParts))
            simulator.script_reply(line.section('=', 0, 0).toUtf8(), line.section('=', 1).toUtf8());
        window_driver_t driver;
        QVERIFY(driver.connect_usb("SN" + row.product));
        simulator.take_texts();
        const auto open = [&] {
            if (!driver.choose("Tool", row.entry))
                QMetaObject::invokeMethod(&driver.window, qPrintable(row.entry));
        };
        QVERIFY(use_dialog(open, [&](const QDialog &dialog) {
            for (const QString &step : row.steps.split('|', Qt::SkipEmptyParts)) {
                const uint nth = step.section(' ', 1).toUInt();
                if (nth > 0)
                    simulator.fail_call(
                        step.startsWith("read") ? CORVANE_SIM_READ : CORVANE_SIM_WRITE, nth);
                else
                    QVERIFY2(perform(dialog, step), qPrintable(step));
            }
            QCOMPARE(QString(simulator.take_texts().join('|')), row.sent);
            for (const QString &line : row.fields.split('|', Qt::SkipEmptyParts))
                QCOMPARE(shown(dialog, line.section('=', 0, 0)), line.section('=', 1));
            for (const auto *const edit : dialog.findChildren<ui_line_edit_t *>())
                QVERIFY(!edit->isReadOnly() || edit->cursorPosition() == 0);
        }));
        QCOMPARE(driver.take_boxes(), QStringList());
        QCOMPARE(driver.painted({QColor("greenyellow")}).join('|'), row.green);
    }
}

CORVANE_GUI_TEST_MAIN(test_device_dialogs)
#include "test_device_dialogs.moc"
