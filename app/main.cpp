// SPDX-License-Identifier: MIT
#include "app/application_look.h"
#include "app/main_window.h"

#include <QApplication>

namespace {

constexpr int window_width = 1000;
constexpr int window_height = 400;

} // namespace

int main(int argc, char **argv)
{
    scale_with_display();
    const QApplication application(argc, argv);
    apply_application_look();
    MainWindow window(nullptr);
    window.resize(window_width, window_height);
    window.show();
    return QApplication::exec();
}
