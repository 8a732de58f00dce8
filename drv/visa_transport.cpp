// SPDX-License-Identifier: MIT
#include "drv/visa_transport.h"

#include "drv/drv_device.h"
#include "drv/reply_text.h"
#include "drv/usb_identity.h"

#include <QByteArray>

#include <array>

namespace {

using reply_buffer_t = std::array<char, visa_transport_t::reply_buffer_bytes>;

std::string text_of(const reply_buffer_t &buffer)
{
    return {buffer.data(), qstrnlen(buffer.data(), static_cast<uint>(buffer.size()))};
}

} // namespace

visa_transport_t &visa_transport_t::instance()
{
    static visa_transport_t transport;
    return transport;
}

std::vector<found_instrument_t> visa_transport_t::find()
{
    std::vector<std::string> resources;
    int count = 0;
    drv_device_t::instance()->usb_scan(resources, count);
    std::vector<found_instrument_t> instruments;
    for (int position = 1; position <= count; ++position) {
        const std::string &name = resources.at(static_cast<std::size_t>(position) - 1);
        if (name.find(usb_identity::resource_part) != std::string::npos)
            instruments.push_back({name, position});
    }
    return instruments;
}

bool visa_transport_t::open(const std::string &name)
{
    return drv_device_t::instance()->usb_connect_resource(name);
}

bool visa_transport_t::write(const std::string &text)
{
    return drv_device_t::instance()->link_write(text.data(), text.size());
}

bool visa_transport_t::read(std::string &out)
{
    reply_buffer_t buffer{};
    return drv_device_t::instance()->link_read(buffer.data(), buffer.size()) != 0 &&
           take_reply(text_of(buffer), out);
}

bool visa_transport_t::query(const std::string &text, std::string &out)
{
    reply_buffer_t buffer{};
    return drv_device_t::instance()->link_query(text, buffer.data(), buffer.size()) &&
           take_reply(text_of(buffer), out);
}
