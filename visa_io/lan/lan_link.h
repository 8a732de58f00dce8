// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/vxi11.h"
#include "visa_io/device_link.h"
#include "visa_io/lan/rpc_client.h"
#include "visa_io/lan/stop_signal.h"

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace visa_io {

/// A link to an instrument on LAN (VXI-11). One that timed out is given up; the next call makes a
/// fresh one, to which no late reply can come, or the connection is lost.
class lan_link_t final : public device_link_t
{
public:
    lan_link_t(std::vector<in_addr> host_addresses, std::string device_name);

    /// Over a connection to a core channel in place of open().
    lan_link_t(int connected_socket, std::uint32_t link_number, std::uint32_t most_write);

    ~lan_link_t() override;

    /// Makes the link: at the first address that answers in its share of the time, if only to say
    /// that another link has locked the instrument.
    ViStatus open(deadline_t deadline);

    /// The address that answered.
    in_addr address() const { return addresses.front(); }

    transfer_t write(std::string_view data, bool end, deadline_t deadline) override;
    transfer_t read(char *buffer, std::size_t size, int term_char, deadline_t deadline) override;
    ViStatus clear(deadline_t deadline) override;
    ViStatus read_status_byte(ViUInt8 &status, deadline_t deadline) override;
    ViStatus trigger(deadline_t deadline) override;
    void cancel() override { stop.give(); }

private:
    enum class state_t : std::uint8_t {
        unlinked, ///< to be linked by the next call
        linked,
        lost
    };

    template <typename args_t, typename result_t>
    ViStatus call(rpc::vxi11::procedure_t procedure, const args_t &args, result_t &result,
                  deadline_t latest, std::size_t most_text_bytes = 0);
    ViStatus open_at(in_addr host, deadline_t deadline);
    ViStatus core_port(in_addr host, deadline_t deadline, std::uint16_t &port) const;
    ViStatus ensure_link(deadline_t latest);
    ViStatus write_piece(transfer_t &done, std::string_view data, bool end, deadline_t deadline,
                         deadline_t latest);
    ViStatus read_piece(transfer_t &done, char *buffer, std::size_t size, int term_char,
                        deadline_t deadline, deadline_t latest, bool &term_char_seen);
    ViStatus generic_call(rpc::vxi11::procedure_t procedure, deadline_t deadline);
    ViStatus refuse();
    void give_up_link();

    std::vector<in_addr> addresses; ///< once one has answered, only that
    const std::string device;
    stop_signal_t stop;
    rpc_client_t client;
    state_t state = state_t::unlinked;
    std::uint32_t link = 0;
    std::size_t most_write_bytes = 0;
};

} // namespace visa_io
