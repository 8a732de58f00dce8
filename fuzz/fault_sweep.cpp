// SPDX-License-Identifier: MIT
// Plays a long session of the real program again and again, each time with one VISA call failing in
// one way, until every call has failed in every way: fault_sweep [--every K] [--kind NAME]
//
// A session survives when it neither crashes nor takes longer than the link's time-outs explain,
// and the program can be used as before once the fault is gone. Run it without the C library's
// pauses (bench/no_pauses.cpp), or it takes days.

#include "fuzz/fault_list.h"
#include "fuzz/session_player.h"
#include "fuzz/sweep_report.h"
#include "upgrade/upgrade_protocol.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <map>

namespace {

/// The machine may be busy with other things too: a session may take so many times the time of an
/// undisturbed one, and one that takes longer is played again before that counts.
constexpr qint64 slack = 4;
constexpr int most_attempts = 3;

class fault_sweep_t
{
public:
    /// Plays the session without a fault; false when it does not do what it should.
    bool prepare();
    std::vector<sweep_fault_t> faults();
    void try_fault(const sweep_fault_t &fault);
    void print_session() const;
    const sweep_report_t &outcome() const { return report; }

private:
    /// Plays the session in a new window, with a fault if there is one, and measures it.
    qint64 play_ms(const sweep_fault_t *fault = nullptr);
    std::uint64_t calls_made(corvane_sim_entry_t entry);
    qint64 play_in_time_ms(const sweep_fault_t &fault);
    QString failure_of(const sweep_fault_t &fault, qint64 session_ms);

    session_player_t player;
    std::map<corvane_sim_entry_t, std::uint64_t> calls_before;
    std::map<corvane_sim_entry_t, std::uint64_t> session_calls;
    qint64 undisturbed_ms = 0;
    qint64 longest_ms = 0;
    sweep_report_t report;
};

qint64 fault_sweep_t::play_ms(const sweep_fault_t *fault)
{
    player.switch_on();
    player.open_window();
    for (const corvane_sim_entry_t entry : swept_entries())
        calls_before[entry] = player.simulator.calls(entry);
    if (fault != nullptr)
        player.simulator.add_fault(fault->for_simulator());
    QElapsedTimer timer;
    timer.start();
    player.play();
    return timer.elapsed();
}

/// How often the last session has called an entry point.
std::uint64_t fault_sweep_t::calls_made(corvane_sim_entry_t entry)
{
    return player.simulator.calls(entry) - calls_before[entry];
}

bool fault_sweep_t::prepare()
{
    report.begin(QStringLiteral("without a fault"));
    // The first time everything is loaded, the second time tells.
    play_ms();
    undisturbed_ms = play_ms();
    for (const corvane_sim_entry_t entry : swept_entries())
        session_calls[entry] = calls_made(entry);
    // One fault can cost one time-out, or in an upgrade as many as there are attempts.
    longest_ms = slack * undisturbed_ms + qint64{ready_attempts} * session_player_t::timeout_ms;
    const bool upgraded = player.upgraded();
    player.switch_on();
    return upgraded && player.reconnects();
}

std::vector<sweep_fault_t> fault_sweep_t::faults()
{
    return list_faults([this](corvane_sim_entry_t entry) { return session_calls[entry]; });
}

qint64 fault_sweep_t::play_in_time_ms(const sweep_fault_t &fault)
{
    qint64 session_ms = play_ms(&fault);
    for (int attempt = 1; attempt < most_attempts && session_ms > longest_ms; ++attempt)
        session_ms = play_ms(&fault);
    return session_ms;
}

/// Why the program has not survived; empty when it has.
QString fault_sweep_t::failure_of(const sweep_fault_t &fault, qint64 session_ms)
{
    if (calls_made(fault.entry) < fault.nth)
        return QStringLiteral("the session ended before the fault");
    if (session_ms > longest_ms)
        return QStringLiteral("took %1 ms of at most %2").arg(session_ms).arg(longest_ms);
    player.switch_on();
    if (!player.reconnects())
        return QStringLiteral("cannot reconnect");
    return {};
}

void fault_sweep_t::try_fault(const sweep_fault_t &fault)
{
    report.begin(fault.text());
    const qint64 session_ms = play_in_time_ms(fault);
    report.end(QString::fromLatin1(fault.kind), fault.text(), failure_of(fault, session_ms),
               session_ms);
}

void fault_sweep_t::print_session() const
{
    unsigned long long calls = 0;
    for (const auto &entry : session_calls)
        calls += entry.second;
    std::printf("A session makes %llu VISA calls and takes %lld ms; it may take %lld ms.\n", calls,
                undisturbed_ms, longest_ms);
}

int sweep(fault_choice_t choice)
{
    fault_sweep_t sweep;
    if (!sweep.prepare()) {
        std::printf("FAILED: the session fails without a fault\n");
        return 1;
    }
    sweep.print_session();
    for (const sweep_fault_t &fault : sweep.faults())
        if (choice.takes(QString::fromLatin1(fault.kind)))
            sweep.try_fault(fault);
    return sweep.outcome().print() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    return run_sweep(argc, argv, sweep);
}
