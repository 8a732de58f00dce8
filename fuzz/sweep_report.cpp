// SPDX-License-Identifier: MIT
#include "fuzz/sweep_report.h"

#include "tests/support/window_driver.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace {

constexpr unsigned hang_s = 60;

std::array<char, 80> current_fault{};

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

} // namespace

bool fault_choice_t::takes(const QString &kind)
{
    return (chosen_kind.isEmpty() || kind == chosen_kind) && number++ % every == 0;
}

sweep_report_t::sweep_report_t()
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::signal(SIGALRM, report_death);
    std::signal(SIGABRT, report_death);
}

sweep_report_t::~sweep_report_t()
{
    ::alarm(0);
}

void sweep_report_t::begin(const QString &what)
{
    std::snprintf(current_fault.data(), current_fault.size(), "%s\n", qPrintable(what));
    ::alarm(hang_s);
}

void sweep_report_t::end(const QString &kind, const QString &fault, const QString &failure,
                         qint64 session_ms)
{
    figures_t &result = figures[kind];
    ++result.tried;
    if (failure.isEmpty())
        ++result.survived;
    else
        std::printf("FAILED: %s: %s\n", qPrintable(fault), qPrintable(failure));
    if (session_ms > result.slowest_ms) {
        result.slowest_ms = session_ms;
        result.slowest = fault;
    }
}

bool sweep_report_t::print() const
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

int run_sweep(int argc, char **argv, const std::function<int(fault_choice_t)> &sweep)
{
    return run_gui_test(argc, argv, [&sweep](int, char **) {
        QCommandLineParser parser;
        const QCommandLineOption every("every", "Try only each K-th fault.", "K", "1");
        const QCommandLineOption kind("kind", "Try only one kind of fault.", "NAME");
        parser.addOptions({every, kind});
        parser.addHelpOption();
        parser.process(*QCoreApplication::instance());
        return sweep(fault_choice_t(std::max(1, parser.value(every).toInt()), parser.value(kind)));
    });
}
