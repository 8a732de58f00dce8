// SPDX-License-Identifier: MIT
// How much Corvane and our VISA library for real instruments add to the link's own pauses when the
// panel of product 44 is refreshed over LAN: bench_lan_panel ADDRESS

#include "bench/figures.h"
#include "drv/drv_device.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"

#include <QApplication>
#include <QElapsedTimer>

namespace {

constexpr int runs = 15;
/// For the colors of four ports, and after each for the routes.
constexpr int queries = 8;
constexpr double goal = 1.05;

} // namespace

int main(int argc, char **argv)
{
    return run_gui_test(argc, argv, [](int, char **) {
        window_driver_t driver;
        driver.connect_lan(QCoreApplication::arguments().value(1));
        if (driver.panel() != QLatin1String("ui_44port_control_widget_t"))
            return 1;
        auto *const frame = driver.window.findChild<ui_central_widget_t *>();
        std::vector<double> wall_ms;
        for (int run = 0; run < runs; ++run) {
            QApplication::processEvents();
            QElapsedTimer timer;
            timer.start();
            frame->refresh();
            QApplication::processEvents();
            wall_ms.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        }
        const double pauses_ms =
            queries * (drv_device_t::write_pause_ms + drv_device_t::query_pause_ms);
        print_figure({"corvane-visa, 44: refresh", "ms", median(wall_ms), pauses_ms, goal});
        return 0;
    });
}
