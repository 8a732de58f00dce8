// SPDX-License-Identifier: MIT
// Plays a long session of the real program again and again, each time with one VISA call failing in
// one way, until every call has failed in every way: fault_sweep [--every K] [--kind NAME]
//
// A session survives when it neither crashes nor takes longer than the link's time-outs explain,
// and the program can be used as before once the fault is gone. Run it without the C library's
// pauses (bench/no_pauses.cpp), or it takes days.

#include "fuzz/fault_list.h"
#include "fuzz/session_player.h"
#include "upgrade/upgrade_protocol.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>

#include <unistd.h>

namespace {

/// A session that does not end in this time hangs.
constexpr unsigned hang_s = 60;
/// The machine may be busy with other things too: a session may take so many times the time of an
/// undisturbed one, and one that takes longer is played again before that counts.
constexpr qint64 slack = 4;
constexpr int most_attempts = 3;

std::array<char, 80> current_fault{};

/// Says which fault it was when the program ends in the middle of a session.
extern "C" void report_death(int signal_number)
{
    constexpr char crashed[] = "CRASHED: ";
    constexpr char hangs[] = "HANGS: ";
    const bool late = signal_number == SIGALRM;
    const bool written =
        ::write(STDOUT_FILENO, late ? hangs : crashed, (late ? sizeof hangs : sizeof crashed) - 1) >
            0 &&
        ::write(STDOUT_FILENO, current_fault.data(), std::strlen(current_fault.data())) > 0;
    ::_exit(written ? 1 : 2);
}

void watch(const QString &what)
{
    std::snprintf(current_fault.data(), current_fault.size(), "%s\n", qPrintable(what));
    ::alarm(hang_s);
}

/// What came of one kind of fault.
struct figures_t
{
    int tried = 0;
    int survived = 0;
    qint64 slowest_ms = -1;
    QString slowest;
};

class fault_sweep_t
{
public:
    /// Plays the session without a fault; false when it does not do what it should.
    bool prepare();
    std::vector<sweep_fault_t> faults();
    void try_fault(const sweep_fault_t &fault);
    void print_session() const;
    /// True when every fault was survived, and there was one.
    bool print_figures() const;

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
    std::map<QString, figures_t> figures;
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
    watch(QStringLiteral("without a fault"));
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
    watch(fault.text());
    const qint64 session_ms = play_in_time_ms(fault);
    const QString failure = failure_of(fault, session_ms);
    figures_t &result = figures[QString::fromLatin1(fault.kind)];
    ++result.tried;
    if (failure.isEmpty())
        ++result.survived;
    else
        std::printf("FAILED: %s: %s\n", qPrintable(fault.text()), qPrintable(failure));
    if (session_ms > result.slowest_ms) {
        result.slowest_ms = session_ms;
        result.slowest = fault.text();
    }
}

void fault_sweep_t::print_session() const
{
    unsigned long long calls = 0;
    for (const auto &entry : session_calls)
        calls += entry.second;
    std::printf("A session makes %llu VISA calls and takes %lld ms; it may take %lld ms.\n", calls,
                undisturbed_ms, longest_ms);
}

bool fault_sweep_t::print_figures() const
{
    figures_t total;
    std::printf("%-10s %7s %9s  %s\n", "fault", "tried", "survived", "slowest session");
    for (const auto &[kind, result] : figures) {
        std::printf("%-10s %7d %9d  %lld ms, %s\n", qPrintable(kind), result.tried, result.survived,
                    result.slowest_ms, qPrintable(result.slowest));
        total.tried += result.tried;
        total.survived += result.survived;
    }
    std::printf("%-10s %7d %9d\n", "all", total.tried, total.survived);
    return total.tried > 0 && total.survived == total.tried;
}

int sweep(int every, const QString &kind)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::signal(SIGALRM, report_death);
    std::signal(SIGABRT, report_death);
    fault_sweep_t sweep;
    if (!sweep.prepare()) {
        std::printf("FAILED: the session fails without a fault\n");
        return 1;
    }
    sweep.print_session();
    int number = 0;
    for (const sweep_fault_t &fault : sweep.faults()) {
        const bool chosen = kind.isEmpty() || kind == QLatin1String(fault.kind);
        if (chosen && number++ % every == 0)
            sweep.try_fault(fault);
    }
    ::alarm(0);
    return sweep.print_figures() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    return run_gui_test(argc, argv, [](int, char **) {
        QCommandLineParser parser;
        const QCommandLineOption every("every", "Try only each K-th fault.", "K", "1");
        const QCommandLineOption kind("kind", "Try only one kind of fault.", "NAME");
        parser.addOptions({every, kind});
        parser.addHelpOption();
        parser.process(*QCoreApplication::instance());
        return sweep(std::max(1, parser.value(every).toInt()), parser.value(kind));
    });
}
