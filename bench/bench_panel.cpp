// SPDX-License-Identifier: MIT
// How much Corvane adds to the link's own pauses: the time from a click to the repainted panel,
// beside the sum of the pauses that the link makes after each write and in each query, with an
// instrument that answers at once. bench_panel [ROW [RUNS]] measures one row only.

#include "bench/figures.h"
#include "drv/drv_device.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"
#include "ui/widget/ui_combo_box.h"

#include <QApplication>
#include <QElapsedTimer>

#include <ctime>
#include <vector>

namespace {

constexpr int usual_runs = 15;
constexpr double goal = 1.02;

struct figures_t
{
    double wall_ms;
    double pauses_ms;
    double cpu_ms;
};

/// The pauses of the link so far, from the calls that it made.
double pauses_ms(simulator_t &simulator)
{
    return static_cast<double>(simulator.calls(CORVANE_SIM_WRITE) * drv_device_t::write_pause_ms +
                               simulator.calls(CORVANE_SIM_READ) * drv_device_t::query_pause_ms);
}

/// What the user waits for: the action, and the painting of what it has changed. Callgrind counts
/// the instructions of this function.
Q_NEVER_INLINE void act_and_repaint(const std::function<void()> &action)
{
    action();
    QApplication::processEvents();
}

figures_t measure_once(simulator_t &simulator, const std::function<void()> &action)
{
    QApplication::processEvents();
    const double pauses_before = pauses_ms(simulator);
    const std::clock_t cpu_before = std::clock();
    QElapsedTimer timer;
    timer.start();
    act_and_repaint(action);
    const auto wall_ns = static_cast<double>(timer.nsecsElapsed());
    const auto cpu = static_cast<double>(std::clock() - cpu_before);
    return {wall_ns / 1e6, pauses_ms(simulator) - pauses_before, cpu * 1e3 / CLOCKS_PER_SEC};
}

void measure(simulator_t &simulator, const QString &name, const std::function<void()> &prepare,
             const std::function<void()> &action)
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1 && name != arguments.at(1))
        return;
    const int runs = arguments.size() > 2 ? arguments.at(2).toInt() : usual_runs;
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
    print_figure({name.toStdString(), "ms", median(wall), pauses, goal});
    print_figure({name.toStdString() + ", CPU time", "ms", median(cpu), 0, 0});
}

void measure_product(simulator_t &simulator, window_driver_t &driver, int product, int other)
{
    const QString title = QStringLiteral("%1: ").arg(product);
    const auto nothing = [] {};
    const auto connect_product = [&driver](int number) {
        auto *const list = driver.window.findChild<ui_combo_box_t *>();
        list->setCurrentIndex(
            list->findText(QStringLiteral("SN%1").arg(number), Qt::MatchContains));
    };
    auto *const frame = driver.window.findChild<ui_central_widget_t *>();
    measure(
        simulator, title + QStringLiteral("connect"), [&] { connect_product(other); },
        [&] { connect_product(product); });
    connect_product(product);
    measure(simulator, title + QStringLiteral("refresh"), nothing, [frame] { frame->refresh(); });
    measure(
        simulator, title + QStringLiteral("click to repaint"),
        [&driver] {
            driver.click(QStringLiteral("Reset"));
            driver.click(QStringLiteral("A"));
        },
        [&driver] { driver.click(QStringLiteral("3")); });
    measure(simulator, title + QStringLiteral("Reset"), nothing,
            [&driver] { driver.click(QStringLiteral("Reset")); });
}

} // namespace

int main(int argc, char **argv)
{
    return run_gui_test(argc, argv, [](int, char **) {
        simulator_t simulator;
        window_driver_t driver;
        driver.click(QStringLiteral("Rescan"));
        for (const int product : {44, 42, 24, 22, 21})
            measure_product(simulator, driver, product, product == 44 ? 42 : 44);
        return 0;
    });
}
