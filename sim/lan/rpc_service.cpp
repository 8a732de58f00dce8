// SPDX-License-Identifier: MIT
#include "sim/lan/rpc_service.h"

#include <algorithm>

namespace sim::lan {

namespace {

using rpc::accept_status_t;

answer_t execute(rpc_service_t &service, const rpc::call_t &call, bool again, std::string &reply,
                 bus_time_t &until)
{
    const std::size_t begin = reply.size();
    rpc::xdr_writer_t out(reply);
    rpc::write_reply(out, call.id, accept_status_t::success);
    const execution_t execution = service.execute(call, again, out);
    if (!execution.waits_until && execution.status == accept_status_t::success)
        return answer_t::given;
    reply.resize(begin);
    if (execution.waits_until) {
        until = *execution.waits_until;
        return answer_t::awaited;
    }
    rpc::write_reply(out, call.id, execution.status);
    return answer_t::given;
}

} // namespace

answer_t answer_call(rpc_service_t &service, std::string_view message, bool again,
                     std::string &reply, bus_time_t &until)
{
    const auto call = rpc::read_call(message);
    if (!call)
        return answer_t::refused;
    rpc::xdr_writer_t out(reply);
    const auto &programs = service.programs();
    const auto program =
        std::find_if(programs.begin(), programs.end(), [&call](const rpc_program_t &candidate) {
            return candidate.number == call->program;
        });
    if (call->rpc_version != rpc::served_rpc_version)
        rpc::write_rpc_mismatch(out, call->id);
    else if (program == programs.end())
        rpc::write_reply(out, call->id, accept_status_t::program_unavailable);
    else if (call->version < program->lowest_version || call->version > program->highest_version)
        rpc::write_program_mismatch(out, call->id, program->lowest_version,
                                    program->highest_version);
    else
        return execute(service, *call, again, reply, until);
    return answer_t::given;
}

} // namespace sim::lan
