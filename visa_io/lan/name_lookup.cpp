// SPDX-License-Identifier: MIT
#include "visa_io/lan/name_lookup.h"

#include "visa_io/late_result.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>

#include <memory>

namespace visa_io {

namespace {

std::vector<in_addr> ask_system(const std::string &host)
{
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);
    std::vector<in_addr> addresses;
    for (const addrinfo *entry = found; entry != nullptr; entry = entry->ai_next)
        addresses.push_back(reinterpret_cast<const sockaddr_in *>(entry->ai_addr)->sin_addr);
    return addresses;
}

} // namespace

std::vector<in_addr> look_up(const std::string &host, deadline_t deadline)
{
    in_addr address{};
    if (inet_pton(AF_INET, host.c_str(), &address) == 1)
        return {address};
    return result_by<std::vector<in_addr>>(deadline, [host] { return ask_system(host); })
        .value_or(std::vector<in_addr>());
}

} // namespace visa_io
