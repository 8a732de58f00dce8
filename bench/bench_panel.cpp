// SPDX-License-Identifier: MIT
// How much Corvane adds to the link's own pauses: the time from a click to the repainted panel,
// beside the sum of the pauses that the link makes after each write and in each query, with an
// instrument that answers at once.

#include "app/application_look.h"
#include "drv/drv_device.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

constexpr int runs = 15;

struct figures_t
{
    double wall_ms;
    double pauses_ms;
    double cpu_ms;
};

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The pauses of the link so far, from the calls that it made.
double pauses_ms(simulator_t &simulator)
{
    return static_cast<double>(simulator.calls(CORVANE_SIM_WRITE) * drv_device_t::write_pause_ms +
                               simulator.calls(CORVANE_SIM_READ) * drv_device_t::query_pause_ms);
}

figures_t measure_once(simulator_t &simulator, const std::function<void()> &action)
{
    QApplication::processEvents();
    const double pauses_before = pauses_ms(simulator);
    const std::clock_t cpu_before = std::clock();
    QElapsedTimer timer;
    timer.start();
    action();
    // Paints what the action has changed.
    QApplication::processEvents();
    const auto wall_ns = static_cast<double>(timer.nsecsElapsed());
    const auto cpu = static_cast<double>(std::clock() - cpu_before);
    return {wall_ns / 1e6, pauses_ms(simulator) - pauses_before, cpu * 1e3 / CLOCKS_PER_SEC};
}

void measure(simulator_t &simulator, const QString &name, const std::function<void()> &prepare,
             const std::function<void()> &action)
{
    std::vector<double> wall;
    std::vector<double> cpu;
    double pauses = 0;
    for (int run = 0; run < runs; ++run) {
        prepare();
        const figures_t figures = measure_once(simulator, action);
        wall.push_back(figures.wall_ms);
        cpu.push_back(figures.cpu_ms);
        pauses = figures.pauses_ms;
    }
    std::printf("%-28s %9.2f %9.2f %8.3f %9.2f\n", qPrintable(name), median(wall), pauses,
                median(wall) / pauses, median(cpu));
}

void measure_product(simulator_t &simulator, window_driver_t &driver, int product)
{
    const QString serial = QStringLiteral("SN%1").arg(product);
    const auto nothing = [] {};
    auto *const frame = driver.window.findChild<ui_central_widget_t *>();
    driver.connect_usb(serial);
    measure(simulator, QStringLiteral("%1: refresh").arg(product), nothing,
            [frame] { frame->refresh(); });
    measure(
        simulator, QStringLiteral("%1: click to repaint").arg(product),
        [&driver] {
            driver.click(QStringLiteral("Reset"));
            driver.click(QStringLiteral("A"));
        },
        [&driver] { driver.click(QStringLiteral("3")); });
    measure(simulator, QStringLiteral("%1: Reset").arg(product), nothing,
            [&driver] { driver.click(QStringLiteral("Reset")); });
}

} // namespace

int main(int argc, char **argv)
{
    return run_gui_test(argc, argv, [](int, char **) {
        simulator_t simulator;
        window_driver_t driver;
        std::printf("%-28s %9s %9s %8s %9s\n", "medians of 15 runs, in ms", "measured", "pauses",
                    "ratio", "CPU time");
        measure(
            simulator, QStringLiteral("44: connect"), [] {},
            [&driver] { driver.click(QStringLiteral("Rescan")); });
        for (const int product : {44, 42, 24, 22, 21})
            measure_product(simulator, driver, product);
        return 0;
    });
}
