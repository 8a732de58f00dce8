// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/program_user.h"
#include "fuzz/sweep_report.h"
#include "sim/bus/bus.h"

#include <cstdint>
#include <string>
#include <vector>

/// One way in which an exchange of the instrument can fail.
struct io_fault_t
{
    const char *kind;
    sim::fault_t fault;                  ///< at the n-th call of its operation
    unsigned stride = 1;                 ///< n goes in steps of so many
    std::vector<sim::fault_t> more = {}; ///< at the first calls of theirs
};

/// What no reply is: longer than what the program asks for; bytes that are no text.
constexpr std::int64_t oversized_bytes = 100'000;
constexpr char garbage[] = "\xff\xfe\x80,%n,\x01\x1b[2J,;\"'\r\n";

/// A fault of this operation.
sim::fault_t fault_at(sim::operation_t operation, sim::fault_kind_t kind, std::int64_t value = 0,
                      const std::string &bytes = {});

/// A simulated instrument that the program reaches through our VISA library for real instruments,
/// and what the user does with it.
class io_bench_t
{
public:
    /// With an instrument of this product id, under this VISA resource name.
    io_bench_t(int product_id, std::string resource_name);
    virtual ~io_bench_t() = default;
    io_bench_t(const io_bench_t &) = delete;
    io_bench_t &operator=(const io_bench_t &) = delete;

    /// The instrument just switched on and connected; planted faults are gone.
    virtual void switch_on() = 0;
    /// The same instrument reachable again, in whatever state the session has left it.
    virtual void plug() = 0;
    /// A session of the program, from a new window's first click to the last.
    virtual void play(program_user_t &user) = 0;
    /// True when the instrument has received what a session without a fault sends it.
    virtual bool has_played() = 0;
    /// True when the program connects and a route lights up.
    virtual bool reconnects(program_user_t &user) = 0;

    sim::bus_t bus;

protected:
    /// A new instrument on the bus in place of the one before.
    void renew_instrument();

private:
    const int product;
    const std::string resource;
};

/// Plays the session of a bench again and again, each time with one exchange failing in one way,
/// and prints what came of it; the status of the program.
int sweep_visa_io(io_bench_t &bench, const std::vector<io_fault_t> &rows,
                  const fault_choice_t &choice);
