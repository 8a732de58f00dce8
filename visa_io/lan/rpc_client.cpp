// SPDX-License-Identifier: MIT
#include "visa_io/lan/rpc_client.h"

#include "rpc/message.h"

namespace visa_io {

namespace {

/// What a reply has beside its texts: header, the longest verifier, numbers and padding.
constexpr std::size_t most_overhead_bytes = 600;

} // namespace

rpc_client_t::rpc_client_t(std::uint32_t program_number, std::uint32_t program_version,
                           const stop_signal_t &stop_signal, int connected_socket)
    : program(program_number), version(program_version), stream(stop_signal, connected_socket)
{
}

ViStatus rpc_client_t::refuse()
{
    close();
    return visa::error_io;
}

void rpc_client_t::begin(std::uint32_t procedure)
{
    request = rpc::record_header_room;
    rpc::xdr_writer_t out(request);
    rpc::write_call(out, {++last_id, rpc::served_rpc_version, program, version, procedure, {}});
}

ViStatus rpc_client_t::exchange(std::string_view &results, std::size_t most_text_bytes,
                                deadline_t deadline)
{
    if (!is_open())
        return visa::error_connection_lost;
    rpc::end_record(request, 0);
    reader = rpc::record_reader_t(most_text_bytes + most_overhead_bytes);
    ViStatus status = stream.send(request, deadline);
    if (status == visa::success)
        status = receive_record(deadline);
    if (status != visa::success)
        return status;
    const auto reply = rpc::read_reply(reader.record());
    if (!reply || reply->id != last_id)
        return refuse();
    if (reply->status != static_cast<std::uint32_t>(rpc::accept_status_t::success))
        return visa::error_operation_not_supported;
    results = reply->results;
    return visa::success;
}

ViStatus rpc_client_t::receive_record(deadline_t deadline)
{
    using state_t = rpc::record_reader_t::state_t;
    for (;;) {
        std::string_view bytes;
        const ViStatus status = stream.receive(bytes, deadline);
        if (status != visa::success)
            return status;
        const state_t state = reader.feed(bytes);
        if (state == state_t::incomplete)
            continue;
        // Nothing may follow: the server has been asked only once.
        return state == state_t::complete && bytes.empty() ? visa::success : refuse();
    }
}

} // namespace visa_io
