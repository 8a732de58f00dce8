// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/simulator.h"

#include <QString>

#include <functional>

/// What an operation does on the link: the entry points that it calls and, between them, its pauses
/// in milliseconds; for example "write 5 10 read".
QString conversation(simulator_t &simulator, const std::function<void()> &operation);
