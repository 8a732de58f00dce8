// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/record_marking.h"
#include "rpc/xdr.h"
#include "visa_io/lan/stream.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace visa_io {

/// Calls the procedures of one program at one server, one at a time.
///
/// What the server sends is believed only as far as it is the whole reply to the call and no longer
/// than the call allows; anything else is error_io and closes the connection, as every failure of
/// the stream does.
class rpc_client_t
{
public:
    rpc_client_t(std::uint32_t program_number, std::uint32_t program_version,
                 const stop_signal_t &stop_signal, int connected_socket = -1);

    ViStatus connect(in_addr host, std::uint16_t port, deadline_t deadline)
    {
        return stream.connect(host, port, deadline);
    }

    /// Makes a call. Texts of the result stay valid until the next one; all of them together may
    /// have `most_text_bytes`.
    template <typename args_t, typename result_t>
    ViStatus call(std::uint32_t procedure, const args_t &args, result_t &result,
                  deadline_t deadline, std::size_t most_text_bytes = 0)
    {
        begin(procedure);
        rpc::xdr_writer_t(request).structure(args);
        std::string_view results;
        const ViStatus status = exchange(results, most_text_bytes, deadline);
        if (status != visa::success)
            return status;
        rpc::xdr_reader_t in(results);
        in.structure(result);
        return in.ok() && in.remaining().empty() ? visa::success : refuse();
    }

    bool is_open() const { return stream.is_open(); }
    void close() { stream.close(); }

    /// Ends the connection because of what the server said; error_io.
    ViStatus refuse();

private:
    void begin(std::uint32_t procedure);
    ViStatus exchange(std::string_view &results, std::size_t most_text_bytes, deadline_t deadline);
    ViStatus receive_record(deadline_t deadline);

    const std::uint32_t program;
    const std::uint32_t version;
    stream_t stream;
    rpc::record_reader_t reader{0};
    std::string request;
    std::uint32_t last_id = 0;
};

} // namespace visa_io
