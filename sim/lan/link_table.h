// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace sim::lan {

class vxi11_service_t;

/// The VXI-11 links of all clients, and the news that clients make for each other.
class link_table_t
{
public:
    static constexpr std::size_t most_links = 4096;

    /// A number for a new link, not in use; 0 when there are too many.
    std::uint32_t add(vxi11_service_t &owner);
    void remove(std::uint32_t link);

    /// Ends the call that the link's owner is waiting in; false when there is no such link.
    bool abort(std::uint32_t link);

    /// Says that a lock was given back or connections were lost: whoever waits should look again.
    void note_change() { changed = true; }

    bool has_change() const { return changed; }

    /// Tells once whether something has changed.
    bool take_change();

private:
    std::unordered_map<std::uint32_t, vxi11_service_t *> owners;
    std::uint32_t last = 0;
    bool changed = false;
};

} // namespace sim::lan
