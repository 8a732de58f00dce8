// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/sim_control.h"

#include <QByteArray>
#include <QLibrary>
#include <QList>
#include <QPair>

/// The simulated instruments that the program under test reaches through the VISA C interface: what
/// they received, and how they are made to misbehave. It is the library that the program loads.
class simulator_t
{
public:
    static constexpr int vi_error_tmo = static_cast<int>(0xBFFF0015);
    static constexpr int vi_error_io = static_cast<int>(0xBFFF003E);

    /// Ends the test program when the simulator is not on the loader's path.
    simulator_t();

    /// Everything as at the start: instruments, log, faults, sessions. Only the time-out is
    /// shorter, so that an instrument that stays silent costs no time.
    void reset();
    /// Replaces the instruments by those of a fleet file's text.
    void load_fleet(const QByteArray &json);
    /// The texts that instruments received since the last call or reset, oldest first.
    QByteArrayList take_texts();
    /// Notes no further texts; for long runs.
    void stop_log();
    /// How often an entry point was called since the last reset.
    quint64 calls(corvane_sim_entry entry);
    /// Makes the instruments answer `message` with exactly these bytes, `times` times (-1: always).
    void script_reply(const QByteArray &message, const QByteArray &bytes, int times = -1);
    /// Makes the n-th next call (from 1) of an entry point fail at once with a status.
    void fail_call(corvane_sim_entry entry, unsigned nth = 1, int status = vi_error_io);
    void add_fault(const corvane_sim_fault &fault);
    /// The firmware images received: kind (1 host, 3 boot) and bytes.
    QList<QPair<int, QByteArray>> images(const QByteArray &resource);
    /// The device parameters received: name and bytes.
    QList<QPair<QByteArray, QByteArray>> parameters(const QByteArray &resource);
    /// Makes the instrument unready at the n-th block (from 1) of an image.
    void fail_block(const QByteArray &resource, unsigned nth);

private:
    QLibrary library;
};
