// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <tuple>

/// The port mapper, which tells the port of a program (RFC 1833).
namespace rpc::port_mapper {

constexpr std::uint16_t port = 111;
constexpr std::uint32_t program = 100'000;
constexpr std::uint32_t oldest_version = 2;
constexpr std::uint32_t get_procedure = 3; ///< GETPORT in version 2, GETADDR in the others

/// What GETPORT asks for; `port` is not heeded.
struct mapping_t
{
    std::uint32_t program = 0;
    std::uint32_t version = 0;
    std::uint32_t protocol = 0; ///< as IPPROTO_TCP
    std::uint32_t port = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.program, self.version, self.protocol, self.port);
    }
};

/// What GETPORT answers.
struct port_t
{
    std::uint32_t port = 0; ///< 0: the program is not there

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.port);
    }
};

} // namespace rpc::port_mapper
