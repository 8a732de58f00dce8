// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/message.h"
#include "rpc/record_marking.h"
#include "rpc/vxi11.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// What goes to the client in answer to one call, in pieces.
struct script_t
{
    std::uint32_t procedure = 0;
    std::vector<std::string> pieces;    ///< "{id}" stands for the call's identification
    std::chrono::milliseconds pause{0}; ///< before each piece
    bool closes = false;                ///< the connection, behind the last piece
    bool repeats = false;               ///< the pieces, until the client goes
};

/// An instrument on LAN that answers its first call of one procedure by a script, and everything
/// else as it should: port mapper and core channel at port 111 of an address. A read brings "fine".
class scripted_server_t
{
public:
    scripted_server_t(const char *host, script_t script_to_play, std::uint32_t most_write = 1024);
    ~scripted_server_t();

    /// Flags and data of each write.
    std::vector<std::pair<std::uint32_t, std::string>> writes();

    /// How many links were made.
    unsigned links() const { return link_count; }
    /// How many of them were given back.
    unsigned destroyed_links() const { return destroyed_count; }

private:
    void accept_all();
    void serve(int socket);
    bool answer(int socket, const rpc::call_t &call);
    bool play(int socket, std::uint32_t id);
    std::string reply_to(const rpc::call_t &call);

    script_t script;
    const std::uint32_t most_write_bytes;
    int listener;
    std::mutex mutex; ///< of the following three
    std::vector<std::pair<std::uint32_t, std::string>> received;
    std::vector<int> sockets;
    bool played = false;
    std::atomic<unsigned> link_count{0};
    std::atomic<unsigned> destroyed_count{0};
    std::vector<std::thread> servants;
    std::thread acceptor;
};
