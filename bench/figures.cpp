// SPDX-License-Identifier: MIT
#include "bench/figures.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace {

constexpr int number_width = 11;

std::string number_text(double value, int decimals)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return value != 0 ? text : "-";
}

void print_number(double value, int decimals)
{
    std::printf(" %*s", number_width, number_text(value, decimals).c_str());
}

} // namespace

void print_figure(const figure_t &figure)
{
    std::printf("%-54s %-10s", figure.name.c_str(), figure.unit.c_str());
    print_number(figure.measured, 2);
    print_number(figure.yardstick, 2);
    print_number(figure.yardstick != 0 ? figure.measured / figure.yardstick : 0, 3);
    print_number(figure.goal, 2);
    std::printf("\n");
    std::fflush(stdout);
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double peak_memory_kib(const std::string &process_id)
{
    std::ifstream status("/proc/" + process_id + "/status");
    std::string word;
    while (status >> word && word != "VmHWM:")
        ;
    double kib = 0;
    status >> kib;
    return kib;
}
