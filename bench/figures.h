// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A figure and what it is measured against, in the same unit.
struct figure_t
{
    std::string name;
    std::string unit;
    double measured;
    double yardstick; ///< 0 when there is none
    double goal;      ///< for measured / yardstick; 0 when there is none
};

/// Prints a row of the table of scripts/bench.
void print_figure(const figure_t &figure);

/// The middle one; of an even number of values the upper of the two. There must be some.
double median(std::vector<double> values);

/// The peak resident memory of a process in KiB, as Linux tells it; 0 when it does not.
double peak_memory_kib(const std::string &process_id = "self");
