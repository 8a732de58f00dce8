// SPDX-License-Identifier: MIT
#include "fuzz/visa_io_sweep.h"

#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

namespace {

using sim::operation_t;

/// What one exchange may take, which is VISA's own time-out, and what a dead peer may add to it.
constexpr qint64 wait_ms = 2000;
constexpr qint64 late_ms = 1000;
/// A link that is lost is made anew in the middle of an exchange, which can wait once more.
constexpr int most_waits = 2;
/// The machine may be busy with other things too.
constexpr qint64 slack = 4;

struct swept_t
{
    operation_t operation;
    const char *name;
};

constexpr swept_t swept[] = {
    {operation_t::open, "link"},
    {operation_t::set_attribute, "setting"},
    {operation_t::write, "write"},
    {operation_t::read, "read"},
};

const char *name_of(operation_t operation)
{
    return std::find_if(std::begin(swept), std::end(swept),
                        [operation](const swept_t &row) { return row.operation == operation; })
        ->name;
}

class visa_io_sweep_t
{
public:
    explicit visa_io_sweep_t(io_bench_t &its_bench) : bench(its_bench) {}

    /// Plays the session without a fault; false when it does not do what it should.
    bool prepare();
    void try_each(const std::vector<io_fault_t> &rows, fault_choice_t choice);
    const sweep_report_t &outcome() const { return report; }

private:
    void begin_session();
    qint64 play_ms();
    QString failure_under(const io_fault_t &row, unsigned nth, qint64 &session_ms);
    void try_fault(const io_fault_t &row, unsigned nth);
    std::uint64_t calls(operation_t operation)
    {
        return bench.bus.access()->faults.call_count(operation);
    }
    /// By this session, so far.
    unsigned calls_made(operation_t operation)
    {
        return static_cast<unsigned>(calls(operation) - calls_before[operation]);
    }

    io_bench_t &bench;
    program_user_t user;
    sweep_report_t report;
    std::map<operation_t, std::uint64_t> calls_before; ///< the session
    std::map<operation_t, unsigned> session_calls;
    qint64 longest_ms = 0;
};

/// Instrument and window as new.
void visa_io_sweep_t::begin_session()
{
    bench.switch_on();
    user.open_window();
    for (const swept_t &row : swept)
        calls_before[row.operation] = calls(row.operation);
}

qint64 visa_io_sweep_t::play_ms()
{
    QElapsedTimer timer;
    timer.start();
    bench.play(user);
    return timer.elapsed();
}

bool visa_io_sweep_t::prepare()
{
    report.begin(QStringLiteral("without a fault"));
    // The first time everything is loaded, the second time tells.
    begin_session();
    play_ms();
    begin_session();
    const qint64 undisturbed_ms = play_ms();
    longest_ms = slack * undisturbed_ms + most_waits * (wait_ms + late_ms);
    std::printf("A session takes %lld ms; it may take %lld ms.", undisturbed_ms, longest_ms);
    for (const swept_t &row : swept) {
        session_calls[row.operation] = calls_made(row.operation);
        std::printf(" %ss: %u.", row.name, session_calls[row.operation]);
    }
    std::printf("\n");
    const bool has_played = bench.has_played();
    bench.switch_on();
    return has_played && bench.reconnects(user);
}

/// Plays the session with a fault and gives the reason why the program has not survived, if any.
QString visa_io_sweep_t::failure_under(const io_fault_t &row, unsigned nth, qint64 &session_ms)
{
    sim::fault_t first = row.fault;
    first.calls_left = nth;
    bench.bus.access()->faults.add(first);
    for (const sim::fault_t &fault : row.more)
        bench.bus.access()->faults.add(fault);
    session_ms = play_ms();
    if (calls_made(row.fault.operation) < nth)
        return QStringLiteral("the session ended before the fault");
    if (session_ms > longest_ms)
        return QStringLiteral("took %1 ms of at most %2").arg(session_ms).arg(longest_ms);
    bench.plug();
    return bench.reconnects(user) ? QString() : QStringLiteral("cannot reconnect");
}

void visa_io_sweep_t::try_fault(const io_fault_t &row, unsigned nth)
{
    const QString what =
        QStringLiteral("%1 at %2 %3")
            .arg(QLatin1String(row.kind), QLatin1String(name_of(row.fault.operation)))
            .arg(nth);
    report.begin(what);
    begin_session();
    qint64 session_ms = 0;
    const QString failure = failure_under(row, nth, session_ms);
    report.end(QLatin1String(row.kind), what, failure, session_ms);
}

void visa_io_sweep_t::try_each(const std::vector<io_fault_t> &rows, fault_choice_t choice)
{
    for (const io_fault_t &row : rows) {
        for (unsigned nth = 1; nth <= session_calls[row.fault.operation]; nth += row.stride)
            if (choice.takes(QLatin1String(row.kind)))
                try_fault(row, nth);
    }
}

} // namespace

sim::fault_t fault_at(operation_t operation, sim::fault_kind_t kind, std::int64_t value,
                      const std::string &bytes)
{
    return {kind, operation, 1, std::nullopt, false, value, bytes};
}

io_bench_t::io_bench_t(int product_id, std::string resource_name)
    : product(product_id), resource(std::move(resource_name))
{
    renew_instrument();
}

void io_bench_t::renew_instrument()
{
    sim::fleet_t fleet;
    fleet.reboot_time = std::chrono::milliseconds(0);
    fleet.instruments.resize(1);
    fleet.instruments[0].config.product = product;
    fleet.instruments[0].config.serial = "F1";
    fleet.instruments[0].config.upgrade_id = {product, 0, 0, 1};
    fleet.instruments[0].resources = {resource};
    bus.load(fleet);
    bus.access()->log.enabled = false;
}

int sweep_visa_io(io_bench_t &bench, const std::vector<io_fault_t> &rows,
                  const fault_choice_t &choice)
{
    visa_io_sweep_t sweep(bench);
    if (!sweep.prepare()) {
        std::printf("FAILED: the session fails without a fault\n");
        return 1;
    }
    sweep.try_each(rows, choice);
    return sweep.outcome().print() ? 0 : 1;
}
