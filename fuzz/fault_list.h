// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/sim_control.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

/// A fault of the sweep: what goes wrong, and at which call of which entry point.
struct sweep_fault_t
{
    const char *kind;
    corvane_sim_fault_kind_t what;
    std::int64_t value;
    QByteArray bytes;
    corvane_sim_entry_t entry;
    std::uint32_t nth;

    /// As the simulator takes it; valid as long as this is.
    corvane_sim_fault_t for_simulator() const;
    /// For people: "garbage at viRead 17".
    QString text() const;
};

/// Every fault for every call of a session, in a fixed order; `calls` tells how often a session
/// calls an entry point.
std::vector<sweep_fault_t>
list_faults(const std::function<std::uint64_t(corvane_sim_entry_t)> &calls);

/// The entry points that a session calls.
const std::vector<corvane_sim_entry_t> &swept_entries();
