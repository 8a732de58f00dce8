// SPDX-License-Identifier: MIT
// Clients of the simulated instruments on LAN: bench_lan CLIENTS FIRST_ADDRESS INSTRUMENTS prints
// how many thousand queries a second they make together, each client at an instrument of its own as
// long as there are enough. bench_lan fleet FIRST_ADDRESS INSTRUMENTS prints a fleet for that.

#include "rpc/message.h"
#include "rpc/record_marking.h"
#include "rpc/vxi11.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace rpc::vxi11;

constexpr int queries = 10'000;
constexpr std::string_view question = "ROUTes?";
constexpr std::string_view expected = "0,0,0,0\n";

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::perror(what);
    std::exit(1);
}

struct mapping_args_t
{
    std::uint32_t program = core_program;
    std::uint32_t version = served_version;
    std::uint32_t protocol = IPPROTO_TCP;
    std::uint32_t port = 0;

    template <typename self_t>
    static auto items(self_t &self)
    {
        return std::tie(self.program, self.version, self.protocol, self.port);
    }
};

/// A connection for remote procedure calls, one at a time.
class caller_t
{
public:
    caller_t(in_addr_t host, std::uint32_t port, std::uint32_t its_program,
             std::uint32_t its_version)
        : program(its_program), version(its_version), peer(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(host);
        const int yes = 1;
        setsockopt(peer, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        require(connect(peer, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0,
                "connect");
    }

    template <typename args_t>
    void call(std::uint32_t procedure, const args_t &args) const
    {
        std::string record(rpc::record_header_room);
        rpc::xdr_writer_t out(record);
        rpc::write_call(out, {1, rpc::served_rpc_version, program, version, procedure, {}});
        out.structure(args);
        rpc::end_record(record, 0);
        require(send(peer, record.data(), record.size(), MSG_NOSIGNAL) ==
                    static_cast<ssize_t>(record.size()),
                "send");
    }

    template <typename result_t>
    result_t result()
    {
        using state_t = rpc::record_reader_t::state_t;
        char part[4096];
        state_t state = state_t::incomplete;
        while (state == state_t::incomplete) {
            const ssize_t count = recv(peer, part, sizeof part, 0);
            require(count > 0, "recv");
            std::string_view bytes(part, static_cast<std::size_t>(count));
            state = records.feed(bytes);
        }
        const auto reply = rpc::read_reply(records.record());
        require(reply && reply->status == 0, "a call fails");
        result_t results;
        rpc::xdr_reader_t(reply->results).structure(results);
        return results;
    }

    void end() const { close(peer); }

private:
    std::uint32_t program;
    std::uint32_t version;
    int peer;
    rpc::record_reader_t records{65'536};
};

constexpr std::uint32_t number_of(procedure_t procedure)
{
    return static_cast<std::uint32_t>(procedure);
}

caller_t open_link(in_addr_t host, std::uint32_t &link)
{
    caller_t mapper(host, 111, 100'000, 2);
    mapper.call(3, mapping_args_t{});
    const std::uint32_t port = mapper.result<link_args_t>().link;
    mapper.end();
    caller_t core(host, port, core_program, served_version);
    core.call(number_of(procedure_t::create_link), create_link_args_t{1, false, 0, "inst0"});
    link = core.result<create_link_result_t>().link;
    require(link != 0, "create_link");
    return core;
}

double query_rate(std::size_t clients, in_addr_t first, std::uint32_t instruments)
{
    std::vector<caller_t> callers;
    std::vector<std::uint32_t> links(clients);
    for (std::uint32_t client = 0; client < clients; ++client)
        callers.push_back(open_link(first + client % instruments, links[client]));
    const auto begin = std::chrono::steady_clock::now();
    const std::size_t rounds = queries / clients;
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t client = 0; client < clients; ++client)
            callers[client].call(number_of(procedure_t::device_write),
                                 write_args_t{links[client], 1000, 0, flag_end, question});
        for (caller_t &caller : callers)
            require(caller.result<error_number_result_t>().error == 0, "device_write");
        for (std::size_t client = 0; client < clients; ++client)
            callers[client].call(number_of(procedure_t::device_read),
                                 read_args_t{links[client], 1000, 1000, 0, 0, 0});
        for (caller_t &caller : callers)
            require(caller.result<read_result_t>().data == expected, "device_read");
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    return static_cast<double>(rounds * clients) / 1e3 / time.count();
}

void print_fleet(in_addr_t first, std::uint32_t instruments)
{
    std::printf("{\"instruments\": [");
    for (std::uint32_t number = 0; number < instruments; ++number) {
        const in_addr address{htonl(first + number)};
        std::printf("%s\n{\"product\": 44, \"serial\": \"SN%u\", \"resources\": "
                    "[\"TCPIP0::%s::INSTR\"]}",
                    number == 0 ? "" : ",", number, inet_ntoa(address));
    }
    std::printf("]}\n");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "bench_lan CLIENTS|fleet FIRST_ADDRESS INSTRUMENTS\n");
        return 2;
    }
    const in_addr_t first = ntohl(inet_addr(argv[2]));
    const auto instruments = static_cast<std::uint32_t>(std::strtoul(argv[3], nullptr, 10));
    if (std::string_view(argv[1]) == "fleet")
        print_fleet(first, instruments);
    else
        std::printf("%.3f\n", query_rate(std::strtoul(argv[1], nullptr, 10), first, instruments));
    return 0;
}
