// SPDX-License-Identifier: MIT
#include "sim/lan/port_mapper.h"

#include "rpc/vxi11.h"

#include <netinet/in.h>
#include <utility>

namespace sim::lan {

namespace {

constexpr std::uint32_t null_procedure = 0;
constexpr std::uint32_t dump_procedure = 4;

execution_t success_if(bool arguments_are_sound)
{
    return {arguments_are_sound ? rpc::accept_status_t::success
                                : rpc::accept_status_t::garbage_arguments,
            {}};
}

} // namespace

port_mapper_t::port_mapper_t(std::string host_address, std::uint16_t core_port)
    : host(std::move(host_address)),
      mappings{{rpc::port_mapper::program, 2, IPPROTO_TCP, port},
               {rpc::port_mapper::program, 2, IPPROTO_UDP, port},
               {rpc::vxi11::core_program, rpc::vxi11::served_version, IPPROTO_TCP, core_port},
               {rpc::vxi11::abort_program, rpc::vxi11::served_version, IPPROTO_TCP, core_port}}
{
}

const std::vector<rpc_program_t> &port_mapper_t::programs() const
{
    static const std::vector<rpc_program_t> served{{rpc::port_mapper::program, 2, 4}};
    return served;
}

execution_t port_mapper_t::execute(const rpc::call_t &call, bool /*again*/,
                                   rpc::xdr_writer_t &results)
{
    rpc::xdr_reader_t arguments(call.arguments);
    if (call.procedure == null_procedure)
        return {};
    if (call.procedure == rpc::port_mapper::get_procedure)
        return success_if(call.version == 2 ? get_port(arguments, results)
                                            : get_address(arguments, results));
    if (call.procedure == dump_procedure && call.version == 2) {
        dump(results);
        return {};
    }
    return {rpc::accept_status_t::procedure_unavailable, {}};
}

void port_mapper_t::dump(rpc::xdr_writer_t &results) const
{
    for (const mapping_t &mapping : mappings) {
        results.boolean(true);
        results.structure(mapping);
    }
    results.boolean(false);
}

bool port_mapper_t::get_port(rpc::xdr_reader_t &arguments, rpc::xdr_writer_t &results) const
{
    mapping_t wanted;
    arguments.structure(wanted);
    results.number(port_for(wanted.program, wanted.version, wanted.protocol));
    return arguments.ok();
}

bool port_mapper_t::get_address(rpc::xdr_reader_t &arguments, rpc::xdr_writer_t &results) const
{
    std::uint32_t program = 0;
    std::uint32_t version = 0;
    std::string_view network;
    std::string_view address;
    std::string_view owner;
    arguments.number(program);
    arguments.number(version);
    for (std::string_view *const text : {&network, &address, &owner})
        arguments.opaque(*text);
    const std::uint32_t found =
        port_for(program, version, network == "udp" ? IPPROTO_UDP : IPPROTO_TCP);
    results.opaque(found == 0 ? ""
                              : host + "." + std::to_string(found >> 8) + "." +
                                    std::to_string(found & 0xFF));
    return arguments.ok();
}

std::uint32_t port_mapper_t::port_for(std::uint32_t program, std::uint32_t version,
                                      std::uint32_t protocol) const
{
    for (const mapping_t &mapping : mappings)
        if (mapping.program == program && mapping.version == version &&
            mapping.protocol == protocol)
            return mapping.port;
    return 0;
}

} // namespace sim::lan
