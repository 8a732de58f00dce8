// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/message.h"
#include "sim/bus/bus_types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim::lan {

/// A program and the versions of it that are served.
struct rpc_program_t
{
    std::uint32_t number;
    std::uint32_t lowest_version;
    std::uint32_t highest_version;
};

/// What a call has come to.
struct execution_t
{
    rpc::accept_status_t status = rpc::accept_status_t::success;

    /// Not done yet: to be called again then, or when something has changed.
    std::optional<bus_time_t> waits_until;
};

/// Remote procedures, whatever carries the calls.
class rpc_service_t
{
public:
    virtual ~rpc_service_t() = default;

    virtual const std::vector<rpc_program_t> &programs() const = 0;

    /// Executes a call of one of the programs and writes its results; what is written is dropped
    /// unless the call succeeds. `again` says that the call has waited.
    virtual execution_t execute(const rpc::call_t &call, bool again,
                                rpc::xdr_writer_t &results) = 0;

    /// False once there is nothing left to serve.
    virtual bool is_alive() const { return true; }
};

enum class answer_t : std::uint8_t {
    given,
    awaited, ///< see `until`
    refused  ///< the message is no call
};

/// Appends the answer to a message, headers included, to `reply`.
answer_t answer_call(rpc_service_t &service, std::string_view message, bool again,
                     std::string &reply, bus_time_t &until);

} // namespace sim::lan
