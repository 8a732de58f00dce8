// SPDX-License-Identifier: MIT
#include "ui/waiting_thread.h"

#include "ui/ui_waiting_dialog.h"

namespace {

constexpr unsigned long nap_seconds = 3600;

} // namespace

waiting_thread::waiting_thread()
{
    auto *const dialog = new ui_waiting_dialog_t(nullptr);
    dialog->show();
}

void waiting_thread::run()
{
    // Asleep, because a loop around nothing would take a whole core, and the compiler may assume
    // that such a loop ends.
    for (;;)
        sleep(nap_seconds);
}
