// SPDX-License-Identifier: MIT
#include "tests/support/recorded_pauses.h"

#include "drv/pause.h"

#include <chrono>
#include <thread>
#include <utility>

recorded_pauses_t &recorded_pauses_t::instance()
{
    static recorded_pauses_t recorder;
    return recorder;
}

void recorded_pauses_t::reset()
{
    const std::lock_guard<std::mutex> lock(mutex);
    called = nullptr;
    waited_for = false;
}

void recorded_pauses_t::wait_for_real(bool real)
{
    const std::lock_guard<std::mutex> lock(mutex);
    waited_for = real;
}

void recorded_pauses_t::on_pause(listener_t listener)
{
    const std::lock_guard<std::mutex> lock(mutex);
    called = listener ? std::make_shared<const listener_t>(std::move(listener)) : nullptr;
}

void recorded_pauses_t::pause(unsigned long milliseconds)
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto listener = called;
    const bool wait = waited_for;
    // The listener may pause itself, and other threads go on meanwhile.
    lock.unlock();
    if (listener)
        (*listener)(milliseconds);
    if (wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void pause_ms(unsigned long milliseconds)
{
    recorded_pauses_t::instance().pause(milliseconds);
}
