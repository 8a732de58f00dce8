// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/record_marking.h"
#include "sim/lan/conversation.h"
#include "sim/lan/rpc_service.h"

#include <memory>

namespace sim::lan {

/// Remote procedure calls over a stream, one after the other.
class rpc_conversation_t : public conversation_t
{
public:
    /// A record that a client may send: what the instruments take, and room for those who do not
    /// care.
    static constexpr std::size_t most_record_bytes = 1 << 20;

    explicit rpc_conversation_t(std::unique_ptr<rpc_service_t> procedures);

    progress_t advance(std::string_view &input, std::string &output) override;

private:
    progress_t answer(std::string &output);

    std::unique_ptr<rpc_service_t> service;
    rpc::record_reader_t records{most_record_bytes};
    bool waiting = false; ///< the record's call has been executed and is not done yet
};

} // namespace sim::lan
