// SPDX-License-Identifier: MIT
#include "visa_io/lan/lan_link.h"

#include "rpc/port_mapper.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <utility>

namespace visa_io {

using namespace rpc::vxi11;

namespace {

/// How long an instrument may take to say that the time is over, and the network to carry it.
constexpr std::chrono::milliseconds patience(300);

/// How long the end of a link may take.
constexpr std::chrono::milliseconds farewell(200);

/// What one request carries at most, whatever the instrument allows.
constexpr std::size_t most_piece_bytes = 1 << 20;

struct error_row_t
{
    error_code_t error;
    ViStatus status;
};

constexpr error_row_t error_rows[] = {
    {error_code_t::none, visa::success},
    {error_code_t::device_not_accessible, visa::error_connection_lost},
    {error_code_t::invalid_link, visa::error_connection_lost},
    {error_code_t::operation_not_supported, visa::error_operation_not_supported},
    {error_code_t::out_of_resources, visa::error_allocation},
    {error_code_t::locked_by_another_link, visa::error_resource_locked},
    {error_code_t::io_timeout, visa::error_timeout},
};

ViStatus status_of(std::uint32_t error)
{
    const auto *const row =
        std::find_if(std::begin(error_rows), std::end(error_rows), [error](const error_row_t &r) {
            return static_cast<std::uint32_t>(r.error) == error;
        });
    return row == std::end(error_rows) ? visa::error_io : row->status;
}

deadline_t latest_after(deadline_t deadline)
{
    return std::max(io_clock_t::now(), deadline) + patience;
}

/// The end of a share of the rest of the time.
deadline_t share(deadline_t deadline, std::size_t sharers)
{
    const deadline_t now = io_clock_t::now();
    return now + (deadline - now) / static_cast<int>(sharers);
}

/// The rest of the time, for the instrument, which counts it as a signed number.
std::uint32_t milliseconds_left(deadline_t deadline)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - io_clock_t::now());
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<std::int32_t>::max()));
}

std::size_t piece_bytes(std::uint32_t most_write)
{
    return std::clamp<std::size_t>(most_write, 1, most_piece_bytes);
}

} // namespace

lan_link_t::lan_link_t(std::vector<in_addr> host_addresses, std::string device_name)
    : addresses(std::move(host_addresses)),
      device(std::move(device_name)),
      client(core_program, served_version, stop)
{
}

lan_link_t::lan_link_t(int connected_socket, std::uint32_t link_number, std::uint32_t most_write)
    : client(core_program, served_version, stop, connected_socket),
      state(state_t::linked),
      link(link_number),
      most_write_bytes(piece_bytes(most_write))
{
}

lan_link_t::~lan_link_t()
{
    give_up_link();
}

void lan_link_t::give_up_link()
{
    error_result_t result;
    if (state == state_t::linked && client.is_open())
        client.call(static_cast<std::uint32_t>(procedure_t::destroy_link), link_args_t{link},
                    result, io_clock_t::now() + farewell);
    client.close();
    state = state_t::unlinked;
}

ViStatus lan_link_t::refuse()
{
    state = state_t::unlinked;
    return client.refuse();
}

template <typename args_t, typename result_t>
ViStatus lan_link_t::call(procedure_t procedure, const args_t &args, result_t &result,
                          deadline_t latest, std::size_t most_text_bytes)
{
    ViStatus status =
        client.call(static_cast<std::uint32_t>(procedure), args, result, latest, most_text_bytes);
    if (status == visa::success)
        status = status_of(result.error);
    if (status == visa::error_timeout || !client.is_open())
        give_up_link();
    if (status == visa::error_connection_lost) {
        client.close();
        state = state_t::lost;
    }
    return status;
}

ViStatus lan_link_t::core_port(in_addr host, deadline_t deadline, std::uint16_t &port) const
{
    using namespace rpc::port_mapper;
    rpc_client_t mapper(program, oldest_version, stop);
    port_t answer;
    ViStatus status = mapper.connect(host, rpc::port_mapper::port, deadline);
    if (status == visa::success)
        status = mapper.call(get_procedure, mapping_t{core_program, served_version, IPPROTO_TCP},
                             answer, deadline);
    if (status != visa::success)
        return status;
    port = static_cast<std::uint16_t>(answer.port);
    return port != 0 && port == answer.port ? status : visa::error_connection_lost;
}

ViStatus lan_link_t::open_at(in_addr host, deadline_t deadline)
{
    std::uint16_t port = 0;
    ViStatus status = core_port(host, deadline, port);
    if (status == visa::success)
        status = client.connect(host, port, deadline);
    if (status != visa::success)
        return status;
    create_link_result_t made;
    status =
        call(procedure_t::create_link, create_link_args_t{0, false, 0, device}, made, deadline);
    if (status != visa::success) {
        client.close();
        return status;
    }
    link = made.link;
    most_write_bytes = piece_bytes(made.most_write_bytes);
    state = state_t::linked;
    return status;
}

ViStatus lan_link_t::open(deadline_t deadline)
{
    ViStatus status = visa::error_connection_lost;
    for (std::size_t index = 0; index < addresses.size(); ++index) {
        const in_addr host = addresses[index];
        status = open_at(host, share(deadline, addresses.size() - index));
        if (status == visa::success)
            addresses = {host};
        if (status == visa::success || status == visa::error_resource_locked)
            return status;
    }
    return status;
}

ViStatus lan_link_t::ensure_link(deadline_t latest)
{
    if (state != state_t::unlinked)
        return state == state_t::linked ? visa::success : visa::error_connection_lost;
    const ViStatus status = open(latest);
    if (status != visa::error_connection_lost && status != visa::error_timeout)
        return status;
    // Silent twice: it may come back without its routes, so that the user is to connect again.
    state = state_t::lost;
    return visa::error_connection_lost;
}

transfer_t lan_link_t::write(std::string_view data, bool end, deadline_t deadline)
{
    const deadline_t latest = latest_after(deadline);
    transfer_t done;
    done.status = ensure_link(latest);
    while (done.status == visa::success && done.count < data.size())
        done.status = write_piece(done, data, end, deadline, latest);
    return done;
}

ViStatus lan_link_t::write_piece(transfer_t &done, std::string_view data, bool end,
                                 deadline_t deadline, deadline_t latest)
{
    const std::string_view piece = data.substr(done.count, most_write_bytes);
    const bool is_last = done.count + piece.size() == data.size();
    const std::uint32_t flags = end && is_last ? flag_end : 0;
    error_number_result_t result;
    const ViStatus status =
        call(procedure_t::device_write,
             write_args_t{link, milliseconds_left(deadline), 0, flags, piece}, result, latest);
    if (status != visa::success)
        return status;
    // One that takes nothing would be asked for ever.
    if (result.number == 0 || result.number > piece.size())
        return refuse();
    done.count += result.number;
    return status;
}

transfer_t lan_link_t::read(char *buffer, std::size_t size, int term_char, deadline_t deadline)
{
    const deadline_t latest = latest_after(deadline);
    transfer_t done;
    bool term_char_seen = false;
    done.status = ensure_link(latest);
    while (done.status == visa::success && done.count < size && !done.end && !term_char_seen)
        done.status = read_piece(done, buffer, size, term_char, deadline, latest, term_char_seen);
    return done;
}

ViStatus lan_link_t::read_piece(transfer_t &done, char *buffer, std::size_t size, int term_char,
                                deadline_t deadline, deadline_t latest, bool &term_char_seen)
{
    const std::size_t most = std::min(size - done.count, most_piece_bytes);
    const bool ends_at_char = term_char >= 0;
    const read_args_t args{link,
                           static_cast<std::uint32_t>(most),
                           milliseconds_left(deadline),
                           0,
                           ends_at_char ? flag_term_char : 0,
                           ends_at_char ? static_cast<std::uint32_t>(term_char) : 0};
    read_result_t result;
    const ViStatus status = call(procedure_t::device_read, args, result, latest, most);
    if (status != visa::success)
        return status;
    done.end = (result.reason & reason_end) != 0;
    term_char_seen = ends_at_char && (result.reason & reason_term_char) != 0;
    // One that says nothing, and not why, would be asked for ever.
    if (result.data.size() > most || (result.data.empty() && !done.end))
        return refuse();
    std::memcpy(buffer + done.count, result.data.data(), result.data.size());
    done.count += result.data.size();
    return status;
}

ViStatus lan_link_t::generic_call(procedure_t procedure, deadline_t deadline)
{
    const deadline_t latest = latest_after(deadline);
    const ViStatus status = ensure_link(latest);
    error_result_t result;
    return status == visa::success
               ? call(procedure, generic_args_t{link, 0, 0, milliseconds_left(deadline)}, result,
                      latest)
               : status;
}

ViStatus lan_link_t::clear(deadline_t deadline)
{
    return generic_call(procedure_t::device_clear, deadline);
}

ViStatus lan_link_t::trigger(deadline_t deadline)
{
    return generic_call(procedure_t::device_trigger, deadline);
}

ViStatus lan_link_t::read_status_byte(ViUInt8 &byte, deadline_t deadline)
{
    const deadline_t latest = latest_after(deadline);
    error_number_result_t result;
    ViStatus status = ensure_link(latest);
    if (status == visa::success)
        status = call(procedure_t::device_readstb,
                      generic_args_t{link, 0, 0, milliseconds_left(deadline)}, result, latest);
    byte = static_cast<ViUInt8>(result.number);
    return status;
}

} // namespace visa_io
