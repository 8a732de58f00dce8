// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim::serial {

/// Finds the messages in what arrives on a serial line.
///
/// A program that ends its commands in nothing relies on USB, which keeps each write in a packet of
/// its own. A pseudo-terminal joins writes that come in quick succession. So a message ends at a
/// line feed, where a command as the manual spells it follows directly, or where the line falls
/// quiet. A firmware block ends after its 2048 bytes only, or where the line falls quiet.
class message_splitter_t
{
public:
    void add(std::string_view bytes) { pending.append(bytes); }

    /// Takes the next complete message, with its line feed if it has one; nothing while there is
    /// none. `quiet` says that nothing has come for a while.
    std::optional<std::string> take(bool quiet);

    /// True when nothing waits for its end.
    bool empty() const { return pending.empty(); }

private:
    std::string pending;
};

} // namespace sim::serial
