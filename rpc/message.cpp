// SPDX-License-Identifier: MIT
#include "rpc/message.h"

namespace rpc {

namespace {

constexpr std::uint32_t call_type = 0;
constexpr std::uint32_t reply_type = 1;
constexpr std::uint32_t accepted = 0;
constexpr std::uint32_t denied = 1;
constexpr std::uint32_t rpc_mismatch = 0;
constexpr std::uint32_t no_authentication = 0;
constexpr std::size_t most_credential_bytes = 400;

void skip_credentials(xdr_reader_t &in)
{
    std::uint32_t flavor = 0;
    std::string_view body;
    in.number(flavor);
    in.opaque(body, most_credential_bytes);
}

void write_no_credentials(xdr_writer_t &out)
{
    out.number(no_authentication);
    out.opaque({});
}

} // namespace

std::optional<call_t> read_call(std::string_view message)
{
    xdr_reader_t in(message);
    call_t call;
    std::uint32_t type = 0;
    in.number(call.id);
    in.number(type);
    in.number(call.rpc_version);
    if (!in.ok() || type != call_type)
        return std::nullopt;
    if (call.rpc_version != served_rpc_version)
        return call;
    in.number(call.program);
    in.number(call.version);
    in.number(call.procedure);
    skip_credentials(in);
    skip_credentials(in);
    call.arguments = in.remaining();
    return in.ok() ? std::optional(call) : std::nullopt;
}

void write_call(xdr_writer_t &out, const call_t &call)
{
    for (const std::uint32_t item :
         {call.id, call_type, call.rpc_version, call.program, call.version, call.procedure})
        out.number(item);
    write_no_credentials(out);
    write_no_credentials(out);
}

void write_reply(xdr_writer_t &out, std::uint32_t id, accept_status_t status)
{
    for (const std::uint32_t item : {id, reply_type, accepted})
        out.number(item);
    write_no_credentials(out);
    out.number(static_cast<std::uint32_t>(status));
}

void write_program_mismatch(xdr_writer_t &out, std::uint32_t id, std::uint32_t lowest,
                            std::uint32_t highest)
{
    write_reply(out, id, accept_status_t::program_mismatch);
    out.number(lowest);
    out.number(highest);
}

void write_rpc_mismatch(xdr_writer_t &out, std::uint32_t id)
{
    for (const std::uint32_t item :
         {id, reply_type, denied, rpc_mismatch, served_rpc_version, served_rpc_version})
        out.number(item);
}

std::optional<reply_t> read_reply(std::string_view message)
{
    xdr_reader_t in(message);
    reply_t reply;
    std::uint32_t type = 0;
    std::uint32_t verdict = 0;
    in.number(reply.id);
    in.number(type);
    in.number(verdict);
    skip_credentials(in);
    in.number(reply.status);
    reply.results = in.remaining();
    if (!in.ok() || type != reply_type || verdict != accepted)
        return std::nullopt;
    return reply;
}

} // namespace rpc
