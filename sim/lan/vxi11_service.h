// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/vxi11.h"
#include "sim/bus/bus.h"
#include "sim/lan/link_table.h"
#include "sim/lan/rpc_service.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace sim::lan {

/// The core channel of one client to one instrument, and what it says on an abort channel (VXI-11,
/// appendix B). The client's links end with it.
class vxi11_service_t : public rpc_service_t
{
public:
    /// What a client is told to write at once; more is taken as well.
    static constexpr std::uint32_t most_write_bytes = 65'536;

    static constexpr std::size_t most_message_bytes = 1 << 20;
    static constexpr std::size_t most_links = 16;

    /// `core_port` is the port on which the abort channel is served, too.
    vxi11_service_t(bus_t &bus, place_t place, std::uint16_t core_port, link_table_t &links);
    ~vxi11_service_t() override;

    const std::vector<rpc_program_t> &programs() const override;
    execution_t execute(const rpc::call_t &call, bool again, rpc::xdr_writer_t &results) override;

    /// True for the name of the one device at each address, "inst0" in any letter case.
    static bool is_served(std::string_view device_name);

    /// False once the instrument has left, in a reboot.
    bool is_alive() const override;

    /// Lets a call on this link end with an error, if one waits.
    void abort(std::uint32_t link);

    rpc::vxi11::create_link_result_t create_link(const rpc::vxi11::create_link_args_t &args);
    rpc::vxi11::error_number_result_t write(const rpc::vxi11::write_args_t &args);
    rpc::vxi11::read_result_t read(const rpc::vxi11::read_args_t &args);
    rpc::vxi11::error_number_result_t read_status(const rpc::vxi11::generic_args_t &args);
    rpc::vxi11::error_result_t trigger(const rpc::vxi11::generic_args_t &args);
    rpc::vxi11::error_result_t clear(const rpc::vxi11::generic_args_t &args);
    rpc::vxi11::error_result_t lock(const rpc::vxi11::lock_args_t &args);
    rpc::vxi11::error_result_t unlock(const rpc::vxi11::link_args_t &args);
    rpc::vxi11::error_result_t destroy_link(const rpc::vxi11::link_args_t &args);
    rpc::vxi11::error_result_t abort_link(const rpc::vxi11::link_args_t &args);

private:
    struct client_link_t
    {
        std::shared_ptr<bus_session_t> session;
        bool has_lock = false;
        std::size_t unfinished_bytes = 0; ///< of a message whose end has not come
    };

    /// The call that is being executed, perhaps for the second time.
    struct attempt_t
    {
        bus_time_t began;
        std::uint32_t link = 0;
        std::optional<bus_time_t> io_deadline; ///< once the lock is no obstacle any more
        bool aborted = false;
        std::optional<bus_time_t> waits_until;
    };

    using operation_t = std::function<bus_outcome_t(client_link_t &)>;

    client_link_t *find(std::uint32_t link);
    void drop(std::uint32_t link);
    rpc::vxi11::error_code_t operate(std::uint32_t link, std::uint32_t flags,
                                     std::uint32_t lock_timeout, const operation_t &operation);
    rpc::vxi11::error_code_t wait(bus_time_t wake_time, bus_time_t deadline,
                                  rpc::vxi11::error_code_t too_late);
    rpc::vxi11::error_code_t await_reply(bus_session_t &session, std::uint32_t io_timeout);
    rpc::vxi11::error_code_t hand_out(bus_session_t &session, const rpc::vxi11::read_args_t &args,
                                      rpc::vxi11::read_result_t &result);

    bus_t &bus;
    const place_t place;
    const std::uint16_t port;
    link_table_t &table;
    std::unordered_map<std::uint32_t, client_link_t> links;
    attempt_t attempt;
    std::string read_buffer;
};

} // namespace sim::lan
