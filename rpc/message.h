// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/xdr.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace rpc {

/// A remote procedure call (RFC 5531).
struct call_t
{
    std::uint32_t id = 0;
    std::uint32_t rpc_version = 2;
    std::uint32_t program = 0;
    std::uint32_t version = 0;
    std::uint32_t procedure = 0;
    std::string_view arguments; ///< behind the credentials and the verifier, which are skipped
};

constexpr std::uint32_t served_rpc_version = 2;

/// How an accepted call went.
enum class accept_status_t : std::uint32_t {
    success = 0,
    program_unavailable = 1,
    program_mismatch = 2,
    procedure_unavailable = 3,
    garbage_arguments = 4
};

/// Reads a call; nothing when the message is none. Of a call in another RPC version only the
/// identification and that version are read.
std::optional<call_t> read_call(std::string_view message);

/// Writes a call without credentials; its arguments are to be written behind it.
void write_call(xdr_writer_t &out, const call_t &call);

/// Begins the reply to an accepted call; the results are to be written behind it.
void write_reply(xdr_writer_t &out, std::uint32_t id, accept_status_t status);

/// The whole reply to a call of a version that is not served.
void write_program_mismatch(xdr_writer_t &out, std::uint32_t id, std::uint32_t lowest,
                            std::uint32_t highest);

/// The whole reply to a call in another RPC version.
void write_rpc_mismatch(xdr_writer_t &out, std::uint32_t id);

/// A reply to a call that was accepted.
struct reply_t
{
    std::uint32_t id = 0;
    std::uint32_t status = 0; ///< as accept_status_t
    std::string_view results; ///< behind the status
};

/// Reads a reply; nothing when the message is none, or says that the call was denied.
std::optional<reply_t> read_reply(std::string_view message);

} // namespace rpc
