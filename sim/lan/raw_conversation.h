// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"
#include "sim/lan/conversation.h"
#include "sim/lan/link_table.h"

#include <memory>

namespace sim::lan {

/// SCPI over a bare stream: a message is a line, and so is a reply. The next line is executed when
/// the reply to the one before has gone out.
class raw_conversation_t : public conversation_t
{
public:
    static constexpr std::size_t most_line_bytes = 1 << 20;

    raw_conversation_t(bus_t &bus, place_t place, link_table_t &news);

    progress_t advance(std::string_view &input, std::string &output) override;
    bool outlives_input() const override { return true; }

private:
    progress_t execute();
    void reply(std::string &output);

    std::shared_ptr<bus_session_t> session;
    link_table_t &table;
    std::string line;
    bool line_is_complete = false;
};

} // namespace sim::lan
