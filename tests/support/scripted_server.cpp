// SPDX-License-Identifier: MIT
#include "tests/support/scripted_server.h"

#include "rpc/port_mapper.h"

#include <QtGlobal>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace rpc::vxi11;

scripted_server_t::scripted_server_t(const char *host, script_t script_to_play,
                                     std::uint32_t most_write)
    : script(std::move(script_to_play)),
      most_write_bytes(most_write),
      listener(socket(AF_INET, SOCK_STREAM, 0))
{
    const int yes = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(rpc::port_mapper::port);
    inet_pton(AF_INET, host, &address.sin_addr);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, SOMAXCONN) != 0)
        qFatal("no port 111");
    acceptor = std::thread([this] { accept_all(); });
}

scripted_server_t::~scripted_server_t()
{
    shutdown(listener, SHUT_RDWR);
    acceptor.join();
    {
        const std::lock_guard<std::mutex> guard(mutex);
        for (const int socket : sockets)
            shutdown(socket, SHUT_RDWR);
    }
    for (std::thread &servant : servants)
        servant.join();
    for (const int socket : sockets)
        close(socket);
    close(listener);
}

std::vector<std::pair<std::uint32_t, std::string>> scripted_server_t::writes()
{
    const std::lock_guard<std::mutex> guard(mutex);
    return received;
}

void scripted_server_t::accept_all()
{
    for (int socket = accept(listener, nullptr, nullptr); socket >= 0;
         socket = accept(listener, nullptr, nullptr)) {
        const std::lock_guard<std::mutex> guard(mutex);
        sockets.push_back(socket);
        servants.emplace_back([this, socket] { serve(socket); });
    }
}

void scripted_server_t::serve(int socket)
{
    rpc::record_reader_t reader(SIZE_MAX);
    char buffer[4096];
    for (ssize_t count = recv(socket, buffer, sizeof buffer, 0); count > 0;
         count = recv(socket, buffer, sizeof buffer, 0)) {
        std::string_view bytes(buffer, static_cast<std::size_t>(count));
        while (!bytes.empty())
            if (reader.feed(bytes) == rpc::record_reader_t::state_t::complete)
                if (const auto call = rpc::read_call(reader.record());
                    !call || !answer(socket, *call)) {
                    shutdown(socket, SHUT_RDWR);
                    return;
                }
    }
}

bool scripted_server_t::answer(int socket, const rpc::call_t &call)
{
    bool plays = false;
    {
        const std::lock_guard<std::mutex> guard(mutex);
        plays = call.procedure == script.procedure && !played;
        played = played || plays;
    }
    if (plays)
        return play(socket, call.id);
    const std::string reply = reply_to(call);
    return send(socket, reply.data(), reply.size(), MSG_NOSIGNAL) >= 0;
}

bool scripted_server_t::play(int socket, std::uint32_t id)
{
    std::string id_bytes;
    rpc::xdr_writer_t(id_bytes).number(id);
    do {
        for (std::string piece : script.pieces) {
            const std::size_t place = piece.find("{id}");
            if (place != std::string::npos)
                piece.replace(place, id_bytes.size(), id_bytes);
            std::this_thread::sleep_for(script.pause);
            if (send(socket, piece.data(), piece.size(), MSG_NOSIGNAL) < 0)
                return false;
        }
    } while (script.repeats);
    return !script.closes;
}

std::string scripted_server_t::reply_to(const rpc::call_t &call)
{
    std::string record(rpc::record_header_room);
    rpc::xdr_writer_t out(record);
    rpc::write_reply(out, call.id, rpc::accept_status_t::success);
    rpc::xdr_reader_t in(call.arguments);
    write_args_t write;
    if (call.program == rpc::port_mapper::program) {
        out.structure(rpc::port_mapper::port_t{rpc::port_mapper::port});
        rpc::end_record(record, 0);
        return record;
    }
    switch (static_cast<procedure_t>(call.procedure)) {
    case procedure_t::create_link:
        out.structure(create_link_result_t{0, ++link_count, 0, most_write_bytes});
        break;
    case procedure_t::device_write: {
        in.structure(write);
        const std::lock_guard<std::mutex> guard(mutex);
        received.emplace_back(write.flags, write.data);
        out.structure(error_number_result_t{0, static_cast<std::uint32_t>(write.data.size())});
        break;
    }
    case procedure_t::device_read:
        out.structure(read_result_t{0, reason_end, "fine"});
        break;
    case procedure_t::destroy_link:
        ++destroyed_count;
        [[fallthrough]];
    default:
        out.structure(error_result_t{0});
        break;
    }
    rpc::end_record(record, 0);
    return record;
}
