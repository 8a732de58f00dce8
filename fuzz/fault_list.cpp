// SPDX-License-Identifier: MIT
#include "fuzz/fault_list.h"

#include "tests/support/simulator.h"

#include <map>

namespace {

using entries_t = std::vector<corvane_sim_entry_t>;

const entries_t all_entries{CORVANE_SIM_FIND_RSRC, CORVANE_SIM_FIND_NEXT, CORVANE_SIM_OPEN,
                            CORVANE_SIM_CLOSE,     CORVANE_SIM_WRITE,     CORVANE_SIM_READ};
/// A search has no cable that could be pulled.
const entries_t with_cable{CORVANE_SIM_OPEN, CORVANE_SIM_CLOSE, CORVANE_SIM_WRITE,
                           CORVANE_SIM_READ};
const entries_t all_but_read(all_entries.begin(), all_entries.end() - 1);
const entries_t reads{CORVANE_SIM_READ};

constexpr std::int64_t oversized_bytes = 100'000;
const QByteArray no_text("\xff\xfe\x80,%n,\x01\x1b[2J,\xf0\x9f;\"'<b>\r\n");
const QByteArray no_number("-99999999999999999999,1e9,0x7f,+,99999999999999999999\n");

struct row_t
{
    const char *kind;
    corvane_sim_fault_kind_t what;
    std::int64_t value;
    QByteArray bytes;
    const entries_t &entries;
};

/// A read waits out its time-out; the other calls only say that they did.
const std::vector<row_t> rows{
    {"error", CORVANE_SIM_FAULT_STATUS, simulator_t::vi_error_io, {}, all_entries},
    {"time-out", CORVANE_SIM_FAULT_STATUS, simulator_t::vi_error_tmo, {}, all_but_read},
    {"time-out", CORVANE_SIM_FAULT_LOST, 0, {}, reads},
    {"empty", CORVANE_SIM_FAULT_TRUNCATED, 0, {}, reads},
    {"empty", CORVANE_SIM_FAULT_REPLACED, 0, "\n", reads},
    {"oversized", CORVANE_SIM_FAULT_OVERSIZED, oversized_bytes, {}, reads},
    {"garbage", CORVANE_SIM_FAULT_REPLACED, 0, no_text, reads},
    {"garbage", CORVANE_SIM_FAULT_REPLACED, 0, no_number, reads},
    {"unplug", CORVANE_SIM_FAULT_UNPLUG, 0, {}, with_cable},
};

const char *name_of(corvane_sim_entry_t entry)
{
    static const std::map<corvane_sim_entry_t, const char *> names{
        {CORVANE_SIM_FIND_RSRC, "viFindRsrc"}, {CORVANE_SIM_FIND_NEXT, "viFindNext"},
        {CORVANE_SIM_OPEN, "viOpen"},          {CORVANE_SIM_CLOSE, "viClose"},
        {CORVANE_SIM_WRITE, "viWrite"},        {CORVANE_SIM_READ, "viRead"}};
    return names.at(entry);
}

} // namespace

corvane_sim_fault_t sweep_fault_t::for_simulator() const
{
    return {what,
            entry,
            nth,
            nullptr,
            0,
            value,
            bytes.constData(),
            static_cast<std::size_t>(bytes.size())};
}

QString sweep_fault_t::text() const
{
    return QStringLiteral("%1 at %2 %3")
        .arg(QLatin1String(kind), QLatin1String(name_of(entry)))
        .arg(nth);
}

std::vector<sweep_fault_t>
list_faults(const std::function<std::uint64_t(corvane_sim_entry_t)> &calls)
{
    std::vector<sweep_fault_t> faults;
    for (const row_t &row : rows)
        for (const corvane_sim_entry_t entry : row.entries)
            for (std::uint32_t nth = 1; nth <= calls(entry); ++nth)
                faults.push_back({row.kind, row.what, row.value, row.bytes, entry, nth});
    return faults;
}

const std::vector<corvane_sim_entry_t> &swept_entries()
{
    return all_entries;
}
