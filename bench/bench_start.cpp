// SPDX-License-Identifier: MIT
// From the start of the process to its first painted window, and the memory that it takes by then:
// Corvane beside a bare window. The programs run as they are; a library put in front of Qt tells
// when they have painted (first_paint.cpp).

#include "bench/figures.h"

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <array>
#include <ctime>

namespace {

constexpr int runs = 31;
constexpr int patience_ms = 10'000;
/// What a program still does once its window is there is done by then.
constexpr int settle_ms = 300;

struct case_t
{
    QString program;
    QStringList arguments;
    QString library_path;
    std::vector<double> times_ms;
    std::vector<double> peaks_kib;
};

double monotonic_ms()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

QProcessEnvironment environment(const QString &library_path)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(CORVANE_FIRST_PAINT));
    variables.insert(QStringLiteral("LD_LIBRARY_PATH"), library_path);
    return variables;
}

/// The moment that the program tells of, in ms of the monotonic clock.
double painted_ms(QProcess &process)
{
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patience_ms))
            qFatal("%s has painted nothing", qPrintable(process.program()));
    return process.readLine().trimmed().toDouble() / 1e6;
}

void start_once(case_t &subject)
{
    QProcess process;
    process.setProcessEnvironment(environment(subject.library_path));
    process.setStandardErrorFile(QProcess::nullDevice());
    const double started_ms = monotonic_ms();
    process.start(subject.program, subject.arguments, QIODevice::ReadOnly);
    subject.times_ms.push_back(painted_ms(process) - started_ms);
    QThread::msleep(settle_ms);
    subject.peaks_kib.push_back(peak_memory_kib(std::to_string(process.processId())));
    process.kill();
    process.waitForFinished();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString corvane = QStringLiteral(CORVANE_PROGRAM);
    const QString bare = QStringLiteral(CORVANE_BARE_WINDOW);
    const QString no_visa = QStringLiteral("none");
    std::array<case_t, 4> cases{{
        {bare, {}, no_visa, {}, {}},
        {bare, {QStringLiteral("empty")}, no_visa, {}, {}},
        {corvane, {}, QStringLiteral(CORVANE_SIM_FOLDER), {}, {}},
        {corvane, {}, no_visa, {}, {}},
    }};
    // In turn, so that what disturbs the machine disturbs all of them.
    for (int run = 0; run < runs; ++run)
        for (case_t &subject : cases)
            start_once(subject);

    const auto &[window, empty, with_visa, without_visa] = cases;
    const struct
    {
        const char *name;
        const case_t &measured;
        const case_t &yardstick;
        bool has_goal;
    } rows[] = {
        {"with a VISA library, bare window", with_visa, window, true},
        {"without one, bare window", without_visa, window, true},
        {"with a VISA library, empty window", with_visa, empty, false},
    };
    for (const auto &row : rows)
        print_figure({std::string("start ") + row.name, "ms", median(row.measured.times_ms),
                      median(row.yardstick.times_ms), row.has_goal ? 1.25 : 0});
    for (const auto &row : rows)
        print_figure({std::string("peak memory ") + row.name, "KiB", median(row.measured.peaks_kib),
                      median(row.yardstick.peaks_kib), row.has_goal ? 1.3 : 0});
    return 0;
}
