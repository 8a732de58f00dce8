// SPDX-License-Identifier: MIT
// Sends arbitrary streams to the simulated instruments' services on LAN, in pieces. Whatever comes,
// a conversation takes all of it, waits or ends; what it sends is whole replies, no more of them
// than were calls; and the next client finds a sound instrument.

#include "rpc/message.h"
#include "rpc/record_marking.h"
#include "sim/bus/bus.h"
#include "sim/lan/port_mapper.h"
#include "sim/lan/raw_conversation.h"
#include "sim/lan/rpc_conversation.h"
#include "sim/lan/vxi11_service.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace {

using namespace sim;
using namespace sim::lan;
using state_t = progress_t::state_t;

constexpr std::uint16_t core_port = 1025;
constexpr std::size_t kinds = 4;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

struct network_t
{
    network_t()
    {
        static const fleet_t fleet = default_fleet();
        bus.load(fleet);
    }

    bus_t bus;
    link_table_t links;
};

std::unique_ptr<conversation_t> conversation_of(std::size_t kind, network_t &network)
{
    if (kind == 0)
        return std::make_unique<rpc_conversation_t>(
            std::make_unique<vxi11_service_t>(network.bus, 0, core_port, network.links));
    if (kind == 1)
        return std::make_unique<rpc_conversation_t>(
            std::make_unique<port_mapper_t>("127.0.0.1", core_port));
    return std::make_unique<raw_conversation_t>(network.bus, 0, network.links);
}

/// Returns what was sent.
std::string talk(conversation_t &conversation, std::string_view stream, std::size_t piece)
{
    std::string output;
    progress_t progress;
    while (!stream.empty() && progress.state == state_t::hungry) {
        std::string_view input = stream.substr(0, piece);
        stream.remove_prefix(input.size());
        do {
            const std::size_t before = input.size() + output.size();
            progress = conversation.advance(input, output);
            require(progress.state != state_t::going_on || before != input.size() ||
                    !output.empty());
        } while (progress.state == state_t::going_on);
        require(progress.state != state_t::hungry || input.empty());
    }
    return output;
}

void require_whole_replies(std::string_view output, std::size_t most)
{
    rpc::record_reader_t records(SIZE_MAX);
    std::size_t count = 0;
    while (!output.empty()) {
        require(records.feed(output) == rpc::record_reader_t::state_t::complete);
        require(++count <= most);
        const std::string_view record = records.record();
        constexpr std::size_t denied_bytes = 24;
        require(rpc::read_reply(record) || record.size() == denied_bytes);
    }
}

void require_sound_instrument(network_t &network)
{
    const auto session = network.bus.open(0);
    if (!session)
        return; // it reboots
    raw_conversation_t conversation(network.bus, 0, network.links);
    const std::string reply = talk(conversation, "*CLS\n*ESE 0\n*SRE 0\n*STB?\n", 100);
    require(reply == "0\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::string_view stream(reinterpret_cast<const char *>(data), size);
    if (stream.empty())
        return 0;
    const std::size_t kind = *data % kinds;
    const std::size_t piece = *data / kinds + 1;
    stream.remove_prefix(1);
    network_t network;
    if (kind == kinds - 1) {
        port_mapper_t mapper("127.0.0.1", core_port);
        std::string reply;
        bus_time_t until = never;
        require(answer_call(mapper, stream, false, reply, until) != answer_t::awaited);
    } else {
        const auto conversation = conversation_of(kind, network);
        const std::string output = talk(*conversation, stream, piece);
        if (kind != 2)
            require_whole_replies(output, stream.size() / 28);
    }
    require_sound_instrument(network);
    return 0;
}
