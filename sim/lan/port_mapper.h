// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/port_mapper.h"
#include "sim/lan/rpc_service.h"

#include <string>

namespace sim::lan {

/// Tells the clients of one instrument on which port it speaks (RFC 1833): all that versions 2, 3
/// and 4 need for finding it.
class port_mapper_t : public rpc_service_t
{
public:
    static constexpr std::uint16_t port = rpc::port_mapper::port;

    /// `core_port` serves the instrument's core channel and its abort channel.
    port_mapper_t(std::string host_address, std::uint16_t core_port);

    const std::vector<rpc_program_t> &programs() const override;
    execution_t execute(const rpc::call_t &call, bool again, rpc::xdr_writer_t &results) override;

private:
    using mapping_t = rpc::port_mapper::mapping_t;

    void dump(rpc::xdr_writer_t &results) const;
    bool get_port(rpc::xdr_reader_t &arguments, rpc::xdr_writer_t &results) const;
    bool get_address(rpc::xdr_reader_t &arguments, rpc::xdr_writer_t &results) const;
    std::uint32_t port_for(std::uint32_t program, std::uint32_t version,
                           std::uint32_t protocol) const;

    std::string host;
    std::vector<mapping_t> mappings;
};

} // namespace sim::lan
