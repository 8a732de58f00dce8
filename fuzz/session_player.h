// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/program_user.h"
#include "tests/support/package_folder.h"
#include "tests/support/simulator.h"

/// A user who does everything that the program offers, whatever it answers: connects every product
/// over USB and one over LAN, routes, uses every dialog, upgrades the firmware and provisions.
///
/// A session begins with a fresh window and a fresh fleet; the link and the command layer live as
/// long as the process and keep what the session before has left in them.
class session_player_t
{
public:
    /// The time-out of the simulated instruments' sessions.
    static constexpr int timeout_ms = 20;

    session_player_t();

    /// The instruments of the sweep, just switched on; sessions and faults are gone.
    void switch_on();
    /// A new main window in place of the one before, not connected.
    void open_window() { user.open_window(); }
    /// From the first Rescan to the last dialog.
    void play();
    /// True when a Rescan connects the first instrument and a route of it lights up.
    bool reconnects();
    /// True when the first instrument has received everything that the package holds.
    bool upgraded();

    simulator_t simulator;

private:
    void use_panels();
    void use_about_box();
    void use_product_dialog();

    package_folder_t folder;
    QString package;
    program_user_t user;
};
