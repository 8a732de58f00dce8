// SPDX-License-Identifier: MIT
#include "tests/support/conversation.h"

#include "tests/support/recorded_pauses.h"

#include <QStringList>

#include <array>

namespace {

struct entry_t
{
    corvane_sim_entry entry;
    const char *name;
};

// In the order in which calls come that have no pause between them.
constexpr std::array<entry_t, 6> entries{{{CORVANE_SIM_CLOSE, "close"},
                                          {CORVANE_SIM_FIND_RSRC, "find"},
                                          {CORVANE_SIM_FIND_NEXT, "next"},
                                          {CORVANE_SIM_READ, "read"},
                                          {CORVANE_SIM_OPEN, "open"},
                                          {CORVANE_SIM_WRITE, "write"}}};

/// Notes calls as they come.
class call_notes_t
{
public:
    explicit call_notes_t(simulator_t &instruments) : simulator(instruments)
    {
        take();
        notes.clear();
    }

    /// Notes the calls since the last time, and then a pause.
    void take(const QString &pause = {})
    {
        for (std::size_t index = 0; index < entries.size(); ++index) {
            const quint64 now = simulator.calls(entries[index].entry);
            for (; counts[index] < now; ++counts[index])
                notes.append(entries[index].name);
        }
        if (!pause.isEmpty())
            notes.append(pause);
    }

    QStringList notes;

private:
    simulator_t &simulator;
    std::array<quint64, entries.size()> counts{};
};

} // namespace

QString conversation(simulator_t &simulator, const std::function<void()> &operation)
{
    call_notes_t calls(simulator);
    recorded_pauses_t::instance().on_pause(
        [&calls](unsigned long pause) { calls.take(QString::number(pause)); });
    operation();
    recorded_pauses_t::instance().on_pause(nullptr);
    calls.take();
    return calls.notes.join(' ');
}
