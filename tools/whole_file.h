// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <system_error>

/// A file that appears, or replaces an older one, only when it is complete. Everything throws
/// std::exception, with a text for the user, when the file cannot be written.
class whole_file_t
{
public:
    /// Replaces what `path` links to, if it is a link.
    explicit whole_file_t(const std::filesystem::path &path);
    /// Leaves nothing behind but a complete file.
    ~whole_file_t();

    void write(const char *bytes, std::size_t count);
    /// Puts what was written in its place.
    void complete();

private:
    void refuse_if(const std::error_code &error) const;
    void refuse_if(bool failed) const;

    std::filesystem::path path;
    std::filesystem::path target;
    /// Beside the target, for the file alone until it is complete.
    std::filesystem::path folder;
    std::filesystem::path file;
    std::ofstream out;
};
