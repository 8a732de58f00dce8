// SPDX-License-Identifier: MIT
#include "tools/whole_file.h"

#include <cerrno>
#include <random>
#include <string>

namespace {

/// Makes a folder of a name that is free.
std::filesystem::path make_folder(const std::filesystem::path &parent, std::error_code &error)
{
    std::random_device random;
    std::filesystem::path folder;
    do {
        folder = parent / (".corvane-package-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder, error) && !error);
    return folder;
}

} // namespace

whole_file_t::whole_file_t(const std::filesystem::path &given_path) : path(given_path)
{
    std::error_code error;
    target = std::filesystem::weakly_canonical(path, error);
    refuse_if(error);
    // What is write-protected is not to be replaced either.
    refuse_if(std::filesystem::exists(target, error) &&
              !std::fstream(target, std::ios::binary | std::ios::in | std::ios::out));
    folder = make_folder(target.parent_path(), error);
    refuse_if(error);
    file = folder / target.filename();
    out.open(file, std::ios::binary);
}

whole_file_t::~whole_file_t()
{
    out.close();
    std::error_code error;
    std::filesystem::remove_all(folder, error);
}

void whole_file_t::write(const char *bytes, std::size_t count)
{
    refuse_if(!out.write(bytes, static_cast<std::streamsize>(count)));
}

void whole_file_t::complete()
{
    out.close();
    refuse_if(!out);
    std::error_code error;
    if (const auto status = std::filesystem::status(target, error); exists(status))
        std::filesystem::permissions(file, status.permissions(), error);
    std::filesystem::rename(file, target, error);
    refuse_if(error);
}

void whole_file_t::refuse_if(const std::error_code &error) const
{
    if (error)
        throw std::system_error(error, path.u8string() + ": cannot be written");
}

void whole_file_t::refuse_if(bool failed) const
{
    if (failed)
        refuse_if(std::error_code(errno, std::generic_category()));
}
