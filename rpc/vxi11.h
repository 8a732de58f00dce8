// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <tuple>

/// The network instrument protocol (VXI-11, revision 1.0). Each structure lists its items in
/// their order on the wire. Times are in ms.
namespace rpc::vxi11 {

constexpr std::uint32_t core_program = 395'183;
constexpr std::uint32_t abort_program = 395'184;
constexpr std::uint32_t served_version = 1;

/// The procedures of the core channel.
enum class procedure_t : std::uint32_t {
    null = 0,
    create_link = 10,
    device_write = 11,
    device_read = 12,
    device_readstb = 13,
    device_trigger = 14,
    device_clear = 15,
    device_remote = 16,
    device_local = 17,
    device_lock = 18,
    device_unlock = 19,
    device_enable_srq = 20,
    device_docmd = 22,
    destroy_link = 23,
    create_intr_chan = 25,
    destroy_intr_chan = 26
};

/// The one procedure of the abort channel.
constexpr std::uint32_t device_abort = 1;

enum class error_code_t : std::uint32_t {
    none = 0,
    device_not_accessible = 3,
    invalid_link = 4,
    parameter = 5,
    operation_not_supported = 8,
    out_of_resources = 9,
    locked_by_another_link = 11,
    no_lock_held = 12,
    io_timeout = 15,
    io = 17,
    abort = 23
};

/// Operation flags.
constexpr std::uint32_t flag_wait_lock = 1;
constexpr std::uint32_t flag_end = 8;
constexpr std::uint32_t flag_term_char = 128;

/// Why a read ended; any number of them at once.
constexpr std::uint32_t reason_count = 1;
constexpr std::uint32_t reason_term_char = 2;
constexpr std::uint32_t reason_end = 4;

struct create_link_args_t
{
    std::uint32_t client = 0;
    bool lock_device = false;
    std::uint32_t lock_timeout = 0;
    std::string_view device;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.client, self.lock_device, self.lock_timeout, self.device);
    }
};

struct create_link_result_t
{
    std::uint32_t error = 0;
    std::uint32_t link = 0;
    std::uint32_t abort_port = 0;
    std::uint32_t most_write_bytes = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.error, self.link, self.abort_port, self.most_write_bytes);
    }
};

struct write_args_t
{
    std::uint32_t link = 0;
    std::uint32_t io_timeout = 0;
    std::uint32_t lock_timeout = 0;
    std::uint32_t flags = 0;
    std::string_view data;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.link, self.io_timeout, self.lock_timeout, self.flags, self.data);
    }
};

struct read_args_t
{
    std::uint32_t link = 0;
    std::uint32_t request_size = 0;
    std::uint32_t io_timeout = 0;
    std::uint32_t lock_timeout = 0;
    std::uint32_t flags = 0;
    std::uint32_t term_char = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.link, self.request_size, self.io_timeout, self.lock_timeout,
                        self.flags, self.term_char);
    }
};

struct read_result_t
{
    std::uint32_t error = 0;
    std::uint32_t reason = 0;
    std::string_view data;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.error, self.reason, self.data);
    }
};

/// Of device_readstb, device_trigger and device_clear.
struct generic_args_t
{
    std::uint32_t link = 0;
    std::uint32_t flags = 0;
    std::uint32_t lock_timeout = 0;
    std::uint32_t io_timeout = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.link, self.flags, self.lock_timeout, self.io_timeout);
    }
};

struct lock_args_t
{
    std::uint32_t link = 0;
    std::uint32_t flags = 0;
    std::uint32_t lock_timeout = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.link, self.flags, self.lock_timeout);
    }
};

/// Of device_unlock, destroy_link and device_abort.
struct link_args_t
{
    std::uint32_t link = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.link);
    }
};

/// An error, and the count or status byte that comes with it.
struct error_number_result_t
{
    std::uint32_t error = 0;
    std::uint32_t number = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.error, self.number);
    }
};

struct docmd_result_t
{
    std::uint32_t error = 0;
    std::string_view data;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.error, self.data);
    }
};

/// Of the procedures that only succeed or fail.
struct error_result_t
{
    std::uint32_t error = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.error);
    }
};

} // namespace rpc::vxi11
