// SPDX-License-Identifier: MIT
// Sends arbitrary messages, one a line, to a simulated instrument. It answers in lines or not at
// all, never throws, and can be asked at any time what it remembers.

#include "sim/instrument/sim_instrument.h"
#include "sim/instrument/state_report.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void send(sim::sim_instrument_t &instrument, std::string_view message)
{
    const auto outcome = instrument.receive(message);
    if (outcome.reply)
        require(outcome.reply->size() > 1 &&
                outcome.reply->find('\n') == outcome.reply->size() - 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    sim::instrument_config_t config;
    config.serial = "F44";
    sim::sim_instrument_t instrument(config);
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        send(instrument, rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    send(instrument, "*RST;*CLS");
    const auto errors = instrument.receive("SYST:ERR?").reply;
    require(errors == "0,\"No error\"\n");
    require(!sim::state_report(instrument.inspect()).empty());
    return 0;
}
