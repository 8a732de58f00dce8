// SPDX-License-Identifier: MIT
#include "tests/support/usbtmc_device.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <linux/usb/tmc.h>
#include <optional>
#include <string_view>
#include <sys/ioctl.h>
#include <thread>

namespace {

using sim::bus_result_t;

constexpr const char *opening_key = "times-plugged";

long error_of(const sim::bus_outcome_t &outcome)
{
    if (outcome.result == bus_result_t::fault)
        return static_cast<long>(-outcome.fault_status);
    return outcome.result == bus_result_t::timed_out ? -ETIMEDOUT : -ENODEV;
}

long verdict_of(const sim::bus_outcome_t &outcome)
{
    return outcome.ok() ? 0 : error_of(outcome);
}

// What the caller's pointer points at.
UMockdevIoctlData *target(UMockdevIoctlClient &client, std::size_t size)
{
    return umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(&client), 0, size, nullptr);
}

unsigned read_number(UMockdevIoctlClient &client, std::size_t size)
{
    unsigned value = 0;
    UMockdevIoctlData *data = target(client, size);
    std::memcpy(&value, data->data, size);
    g_object_unref(data);
    return value;
}

long store_byte(UMockdevIoctlClient &client, unsigned char value)
{
    UMockdevIoctlData *data = target(client, 1);
    umockdev_ioctl_data_update(data, 0, &value, 1);
    g_object_unref(data);
    return 0;
}

} // namespace

template <usbtmc_device_t::answer_t (usbtmc_device_t::*handle)(UMockdevIoctlClient &,
                                                               sim::bus_session_t &)>
gboolean usbtmc_device_t::answer(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer device)
{
    auto &self = *static_cast<usbtmc_device_t *>(device);
    std::this_thread::sleep_for(std::chrono::milliseconds(self.stalls_for_ms));
    answer_t result = -ENODEV;
    if (const session_t its = self.session_of(*client)) {
        result = (self.*handle)(*client, *its);
        self.leave_if_lost(its);
    }
    umockdev_ioctl_client_complete(client, result < 0 ? -1 : result,
                                   result < 0 ? static_cast<int>(-result) : 0);
    return TRUE;
}

void usbtmc_device_t::note_opening(UMockdevIoctlBase * /*handler*/, UMockdevIoctlClient *client,
                                   gpointer device)
{
    const auto &self = *static_cast<usbtmc_device_t *>(device);
    g_object_set_data(G_OBJECT(client), opening_key, GUINT_TO_POINTER(self.times_plugged.load()));
}

// None for who opened the node before it went away.
usbtmc_device_t::session_t usbtmc_device_t::session_of(UMockdevIoctlClient &client)
{
    const std::lock_guard<std::mutex> guard(plugging);
    const unsigned opened = GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(&client), opening_key));
    return is_plugged && opened == times_plugged ? session : nullptr;
}

void usbtmc_device_t::leave_if_lost(const session_t &its)
{
    const std::lock_guard<std::mutex> guard(plugging);
    if (its == session && !its->is_connected())
        take_node_away();
}

usbtmc_device_t::usbtmc_device_t(UMockdevTestbed &testbed_, sim::bus_t &bus_, sim::place_t place_,
                                 const identity_t &identity_)
    : identity(identity_),
      testbed(testbed_),
      bus(bus_),
      place(place_),
      handler(umockdev_ioctl_base_new())
{
    g_signal_connect(handler, "client-connected", G_CALLBACK(note_opening), this);
    g_signal_connect(handler, "handle-read", G_CALLBACK(answer<&usbtmc_device_t::read>), this);
    g_signal_connect(handler, "handle-write", G_CALLBACK(answer<&usbtmc_device_t::write>), this);
    g_signal_connect(handler, "handle-ioctl", G_CALLBACK(answer<&usbtmc_device_t::control>), this);
    plug();
}

usbtmc_device_t::~usbtmc_device_t()
{
    unplug();
    g_object_unref(handler);
}

std::string usbtmc_device_t::node_file() const
{
    gchar *root = umockdev_testbed_get_root_dir(&testbed);
    std::string file = std::string(root) + "/dev/" + identity.node;
    g_free(root);
    return file;
}

void usbtmc_device_t::plug()
{
    const std::lock_guard<std::mutex> guard(plugging);
    if (is_plugged)
        return;
    bus.access()->plug(place);
    session = bus.open(place);
    ++times_plugged;
    is_halted = false;
    add_to_testbed();
    is_plugged = true;
}

void usbtmc_device_t::add_to_testbed()
{
    gchar *device = umockdev_testbed_add_device(
        &testbed, "usb", ("1-" + identity.node).c_str(), nullptr, "idVendor",
        identity.vendor.c_str(), "idProduct", identity.product.c_str(), "manufacturer", "Norvale",
        "product", "TMX", nullptr, "DEVTYPE", "usb_device", nullptr);
    if (!identity.serial.empty())
        umockdev_testbed_set_attribute(&testbed, device, "serial",
                                       (identity.serial + "\n").c_str());
    gchar *interface = umockdev_testbed_add_device(
        &testbed, "usb", ("1-" + identity.node + ":1").c_str(), device, "bInterfaceNumber",
        identity.interface.c_str(), nullptr, "DEVTYPE", "usb_interface", nullptr);
    const std::string node = "/dev/" + identity.node;
    gchar *entry = umockdev_testbed_add_device(
        &testbed, "usbmisc", ("usbmisc/" + identity.node).c_str(), interface, "dev", "180:176",
        nullptr, "DEVNAME", node.c_str(), nullptr);
    std::filesystem::create_directories(std::filesystem::path(node_file()).parent_path());
    std::ofstream(node_file()).flush();
    umockdev_testbed_attach_ioctl(&testbed, node.c_str(), handler, nullptr);
    for (gchar *folder : {device, interface, entry}) {
        folders.emplace_back(folder);
        g_free(folder);
    }
}

void usbtmc_device_t::unplug()
{
    const std::lock_guard<std::mutex> guard(plugging);
    bus.access()->unplug(place);
    take_node_away();
}

void usbtmc_device_t::take_node_away()
{
    if (!is_plugged.exchange(false))
        return;
    umockdev_testbed_detach_ioctl(&testbed, ("/dev/" + identity.node).c_str(), nullptr);
    std::filesystem::remove(node_file());
    for (; !folders.empty(); folders.pop_back())
        umockdev_testbed_remove_device(&testbed, folders.back().c_str());
}

usbtmc_device_t::answer_t usbtmc_device_t::note_transfer(answer_t result)
{
    is_halted = result == -EIO || result == -ETIMEDOUT;
    return result;
}

usbtmc_device_t::answer_t usbtmc_device_t::clear(sim::bus_session_t &its)
{
    ++clears;
    const long verdict = verdict_of(its.clear());
    if (verdict == 0)
        is_halted = false;
    return verdict;
}

usbtmc_device_t::answer_t usbtmc_device_t::read(UMockdevIoctlClient &client,
                                                sim::bus_session_t &its)
{
    UMockdevIoctlData *buffer = umockdev_ioctl_client_get_arg(&client);
    std::vector<char> bytes(static_cast<std::size_t>(buffer->data_len));
    const auto deadline = sim::bus_clock_t::now() + std::chrono::milliseconds(timeout_ms);
    const auto stop = term_char < 0 ? std::nullopt : std::optional(static_cast<char>(term_char));
    if (is_halted)
        return -EPIPE;
    if (is_out_of_turn.exchange(false))
        return 0;
    if (drips_every_ms > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(drips_every_ms));
        attributes = 0;
        return 1;
    }
    is_reading = true;
    const sim::bus_read_t got = its.read(bytes.data(), bytes.size(), deadline, stop);
    is_reading = false;
    if (!got.ok())
        return note_transfer(error_of(got));
    attributes = static_cast<unsigned char>((got.end ? 1 : 0) | (got.term_char_seen ? 2 : 0));
    umockdev_ioctl_data_update(buffer, 0, reinterpret_cast<guint8 *>(bytes.data()),
                               static_cast<gint>(got.count));
    return static_cast<answer_t>(got.count);
}

usbtmc_device_t::answer_t usbtmc_device_t::write(UMockdevIoctlClient &client,
                                                 sim::bus_session_t &its)
{
    const UMockdevIoctlData *buffer = umockdev_ioctl_client_get_arg(&client);
    if (is_halted)
        return -EPIPE;
    ++writes;
    const std::string_view bytes(reinterpret_cast<const char *>(buffer->data),
                                 static_cast<std::size_t>(buffer->data_len));
    const sim::bus_outcome_t outcome = its.write(bytes, sends_end);
    return outcome.ok() ? buffer->data_len : note_transfer(error_of(outcome));
}

usbtmc_device_t::answer_t usbtmc_device_t::set_timeout(unsigned value)
{
    timeout_ms = value;
    return value < 100 ? -EINVAL : 0;
}

usbtmc_device_t::answer_t usbtmc_device_t::set_term_char(unsigned setting)
{
    const bool is_on = (setting >> 8U) != 0;
    if (is_on && refuses_term_char)
        return -EINVAL;
    term_char = is_on ? static_cast<int>(setting & 0xFFU) : -1;
    return 0;
}

// What concerns the driver alone.
usbtmc_device_t::answer_t usbtmc_device_t::set_up(UMockdevIoctlClient &client)
{
    const long verdict = verdict_of(bus.note_call(sim::operation_t::set_attribute, place));
    if (verdict != 0)
        return verdict;
    switch (umockdev_ioctl_client_get_request(&client)) {
    case USBTMC_IOCTL_SET_TIMEOUT:
        return set_timeout(read_number(client, sizeof timeout_ms));
    case USBTMC_IOCTL_EOM_ENABLE:
        sends_end = read_number(client, 1) != 0;
        return 0;
    case USBTMC_IOCTL_CONFIG_TERMCHAR:
        return set_term_char(read_number(client, sizeof(usbtmc_termchar)));
    case USBTMC_IOCTL_MSG_IN_ATTR:
        return store_byte(client, attributes);
    default:
        return -ENOTTY;
    }
}

usbtmc_device_t::answer_t usbtmc_device_t::control(UMockdevIoctlClient &client,
                                                   sim::bus_session_t &its)
{
    std::uint8_t status = 0;
    switch (umockdev_ioctl_client_get_request(&client)) {
    case USBTMC488_IOCTL_READ_STB:
        its.read_status_byte(status);
        return store_byte(client, status);
    case USBTMC_IOCTL_CLEAR:
        return clear(its);
    case USBTMC488_IOCTL_TRIGGER:
        ++triggers;
        return 0;
    default:
        return set_up(client);
    }
}
