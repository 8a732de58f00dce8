// SPDX-License-Identifier: MIT
#include "sim/lan/vxi11_procedures.h"

#include "sim/lan/vxi11_service.h"

#include <algorithm>
#include <iterator>

namespace sim::lan {

using namespace rpc::vxi11;

namespace {

using procedure_function_t = bool (*)(vxi11_service_t &service, rpc::xdr_reader_t &arguments,
                                      rpc::xdr_writer_t &results);

struct entry_t
{
    std::uint32_t program;
    std::uint32_t procedure;
    procedure_function_t run; ///< false: the arguments are not sound
};

/// Reads the arguments, executes the procedure and writes its results.
template <auto procedure, typename args_t>
bool run(vxi11_service_t &service, rpc::xdr_reader_t &arguments, rpc::xdr_writer_t &results)
{
    args_t args;
    arguments.structure(args);
    if (arguments.ok())
        results.structure((service.*procedure)(args));
    return arguments.ok();
}

/// An operation that the instruments do not have.
template <typename result_t>
bool refuse(vxi11_service_t & /*service*/, rpc::xdr_reader_t & /*arguments*/,
            rpc::xdr_writer_t &results)
{
    result_t result;
    result.error = static_cast<std::uint32_t>(error_code_t::operation_not_supported);
    results.structure(result);
    return true;
}

bool do_nothing(vxi11_service_t & /*service*/, rpc::xdr_reader_t & /*arguments*/,
                rpc::xdr_writer_t & /*results*/)
{
    return true;
}

constexpr entry_t core(procedure_t procedure, procedure_function_t function)
{
    return {core_program, static_cast<std::uint32_t>(procedure), function};
}

constexpr entry_t procedures[] = {
    core(procedure_t::null, do_nothing),
    core(procedure_t::create_link, run<&vxi11_service_t::create_link, create_link_args_t>),
    core(procedure_t::device_write, run<&vxi11_service_t::write, write_args_t>),
    core(procedure_t::device_read, run<&vxi11_service_t::read, read_args_t>),
    core(procedure_t::device_readstb, run<&vxi11_service_t::read_status, generic_args_t>),
    core(procedure_t::device_trigger, run<&vxi11_service_t::trigger, generic_args_t>),
    core(procedure_t::device_clear, run<&vxi11_service_t::clear, generic_args_t>),
    core(procedure_t::device_remote, refuse<error_result_t>),
    core(procedure_t::device_local, refuse<error_result_t>),
    core(procedure_t::device_lock, run<&vxi11_service_t::lock, lock_args_t>),
    core(procedure_t::device_unlock, run<&vxi11_service_t::unlock, link_args_t>),
    core(procedure_t::device_enable_srq, refuse<error_result_t>),
    core(procedure_t::device_docmd, refuse<docmd_result_t>),
    core(procedure_t::destroy_link, run<&vxi11_service_t::destroy_link, link_args_t>),
    core(procedure_t::create_intr_chan, refuse<error_result_t>),
    core(procedure_t::destroy_intr_chan, refuse<error_result_t>),
    {abort_program, static_cast<std::uint32_t>(procedure_t::null), do_nothing},
    {abort_program, device_abort, run<&vxi11_service_t::abort_link, link_args_t>},
};

} // namespace

rpc::accept_status_t run_procedure(vxi11_service_t &service, const rpc::call_t &call,
                                   rpc::xdr_writer_t &results)
{
    const auto *const found =
        std::find_if(std::begin(procedures), std::end(procedures), [&call](const entry_t &entry) {
            return entry.program == call.program && entry.procedure == call.procedure;
        });
    if (found == std::end(procedures))
        return rpc::accept_status_t::procedure_unavailable;
    rpc::xdr_reader_t arguments(call.arguments);
    return found->run(service, arguments, results) ? rpc::accept_status_t::success
                                                   : rpc::accept_status_t::garbage_arguments;
}

} // namespace sim::lan
