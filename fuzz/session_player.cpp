// SPDX-License-Identifier: MIT
#include "fuzz/session_player.h"

#include "tests/support/dialog_driver.h"
#include "ui/widget/ui_combo_box.h"

#include <QApplication>

namespace {

const QByteArray first_resource = "USB0::0xA17E::0x2000::F44::INSTR";
const QByteArray boot_image = "a boot image of one block";
const QByteArray manufacturer = "TMX";

/// One of each product on USB, the first also on LAN, and one of another maker.
QByteArray fleet()
{
    return QByteArray(R"({"default_timeout_ms": %1, "reboot_ms": 0, "instruments": [
        {"product": 44, "serial": "F44", "upgrade_id": [44, 0, 0, 1],
         "resources": ["%2", "TCPIP0::127.0.0.1::INSTR"]},
        {"product": 42, "serial": "F42", "resources": ["USB0::0xA17E::0x2000::F42::INSTR"]},
        {"identity": "MAKER,FG,1,2", "resources": ["USB0::0x0A11::0x0588::FG::INSTR"]},
        {"product": 24, "serial": "F24", "resources": ["USB0::0xA17E::0x2000::F24::INSTR"]},
        {"product": 22, "serial": "F22", "resources": ["USB0::0xA17E::0x2000::F22::INSTR"]},
        {"product": 21, "serial": "F21", "resources": ["USB0::0xA17E::0x2000::F21::INSTR"]}]})")
        .replace("%1", QByteArray::number(session_player_t::timeout_ms))
        .replace("%2", first_resource);
}

} // namespace

session_player_t::session_player_t()
    : package(folder.write(QStringLiteral("固件.ADS"),
                           make_package(44, {{6, manufacturer}, {3, boot_image}})))
{
    simulator.stop_log();
    switch_on();
}

void session_player_t::switch_on()
{
    simulator.load_fleet(fleet());
}

void session_player_t::play()
{
    user.driver().click(QStringLiteral("Rescan"));
    use_panels();
    user.connect_lan();
    user.use_panel();
    user.connect_usb();
    user.use_dialog(QStringLiteral("Color"), {"Color VNA Port B:=Green", "Default"});
    user.use_dialog(QStringLiteral("LAN"), {"Refresh", "IP Setting=Fixed IP", "Apply"});
    user.use_dialog(QStringLiteral("Scpi"), {"Write", "Read", "Query", "Read"});
    use_about_box();
    user.upgrade(package);
    use_product_dialog();
}

void session_player_t::use_panels()
{
    auto *const list = user.driver().window.findChild<ui_combo_box_t *>();
    for (int index = 0; index < list->count(); ++index) {
        choose_item(*list, index);
        user.use_panel();
    }
}

void session_player_t::use_about_box()
{
    user.driver().choose(QStringLiteral("Help"), QStringLiteral("About"));
    QWidget *const box = QApplication::activeModalWidget();
    if (box == nullptr)
        return;
    box->close();
    // The program keeps its boxes until its end, which is thousands of sessions away.
    box->deleteLater();
}

void session_player_t::use_product_dialog()
{
    with_dialog(
        [this] { QMetaObject::invokeMethod(&user.driver().window, "product_btn_click_slot"); },
        [](const QDialog &dialog) {
            for (const char *const step : {"Product Type:=TMX5044", "Serial Number:=F44", "Set"})
                perform(dialog, QString::fromLatin1(step));
        });
}

bool session_player_t::reconnects()
{
    user.connect_usb();
    return user.routes() && user.driver().link_text() == QLatin1String("(USB)") &&
           user.driver().status_text() == QLatin1String("TMX5044,Serial:F44,Version:1.0.0");
}

bool session_player_t::upgraded()
{
    return simulator.images(first_resource) == QList<QPair<int, QByteArray>>{{3, boot_image}} &&
           simulator.parameters(first_resource)
               .contains(QPair<QByteArray, QByteArray>{"MANUFTRUG", manufacturer});
}
