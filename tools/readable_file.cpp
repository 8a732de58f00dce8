// SPDX-License-Identifier: MIT
#include "tools/readable_file.h"

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

std::ifstream open_to_read(const std::filesystem::path &file)
{
    const std::string refusal = file.u8string() + ": cannot be read";
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw std::runtime_error(refusal + ": not a regular file");
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::system_error(errno, std::generic_category(), refusal);
    return stream;
}
