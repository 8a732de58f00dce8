// SPDX-License-Identifier: MIT
#pragma once

#include "sim/lan/conversation.h"
#include "sim/lan/poller.h"
#include "sim/lan/socket.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace sim::lan {

class connection_t;

/// What is to be done with connections when no descriptor asks for it.
struct agenda_t
{
    std::unordered_set<connection_t *> waiting; ///< to be resumed at wakes_at()
    std::vector<connection_t *> over;           ///< to be destroyed
};

/// Carries the bytes of a conversation over a TCP connection, in order. As long as a peer does not
/// read, or an answer is not ready, nothing more is taken from it: it costs no more memory than its
/// longest message.
class connection_t : public event_handler_t
{
public:
    /// Throws lan_error_t.
    connection_t(socket_t peer, std::unique_ptr<conversation_t> talk, poller_t &events,
                 agenda_t &to_do);

    void ready(std::uint32_t events) override;

    /// Goes on with what it was waiting for.
    void resume() { proceed({}); }

    /// Until when it waits.
    bus_time_t wakes_at() const { return wake_time; }

private:
    bool receive(std::string_view &received);
    void proceed(std::string_view received);
    void send();
    void watch(bool waiting);
    void note(bool waiting);

    socket_t socket;
    std::unique_ptr<conversation_t> conversation;
    poller_t &poller;
    agenda_t &agenda;
    std::string input;    ///< received and not used yet
    std::string output;   ///< not sent yet
    std::size_t sent = 0; ///< of the output
    bus_time_t wake_time = never;
    std::uint32_t watched;
    bool input_ended = false;
    bool finished = false; ///< closes once the output is sent
    bool over = false;
    bool noted_over = false;
};

} // namespace sim::lan
