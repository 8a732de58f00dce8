// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>
#include <utility>

namespace visa_io {

/// An open file of the kernel's, which is closed at the end.
class descriptor_t
{
public:
    explicit descriptor_t(int open_file = -1) : number(open_file) {}
    descriptor_t(descriptor_t &&other) noexcept : number(std::exchange(other.number, -1)) {}
    ~descriptor_t()
    {
        if (is_open())
            ::close(number);
    }
    descriptor_t(const descriptor_t &) = delete;
    descriptor_t &operator=(const descriptor_t &) = delete;

    bool is_open() const { return number >= 0; }
    int get() const { return number; }

private:
    int number;
};

} // namespace visa_io
