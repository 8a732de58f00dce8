// SPDX-License-Identifier: MIT
#include "upgrade/package_reader.h"

#include "upgrade/accepted_id.h"
#include "upgrade/header_cipher.h"

#include <fstream>

namespace {

/// Header and records are read in the platform's text mode, payloads byte for byte. On Windows a
/// package must therefore have no CR LF and no Ctrl-Z in the former.
constexpr std::ios::openmode record_mode = std::ios::in;
constexpr std::ios::openmode payload_mode = std::ios::in | std::ios::binary;

bool read_bytes(const std::filesystem::path &file, std::ios::openmode mode, std::uint64_t offset,
                char *buffer, std::size_t length)
{
    std::ifstream stream(file, mode);
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(buffer, static_cast<std::streamsize>(length));
    return stream.good();
}

template <std::size_t size>
bool read_record_bytes(const std::filesystem::path &file, std::uint64_t offset,
                       std::array<std::uint8_t, size> &buffer)
{
    return read_bytes(file, record_mode, offset, reinterpret_cast<char *>(buffer.data()),
                      buffer.size());
}

} // namespace

bool read_upgrade_header(const std::filesystem::path &file, upgrade_header_t &header)
{
    upgrade_header_t read{};
    if (!file_holds(file, 0, upgrade_header_bytes) || !read_record_bytes(file, 0, read))
        return false;
    des_crypt(header.data(), read.data(), read.size(), header_key.data(), header_key.size(), true);
    return check_upgrade_header(header);
}

bool read_segment_record(const std::filesystem::path &file, segment_record_buffer_t &buffer,
                         std::uint64_t offset)
{
    read_record_bytes(file, offset, buffer);
    return true;
}

bool read_payload(const std::filesystem::path &file, std::uint64_t offset, char *buffer,
                  std::size_t length)
{
    return read_bytes(file, payload_mode, offset, buffer, length);
}

bool file_holds(const std::filesystem::path &file, std::uint64_t offset, std::uint64_t length)
{
    if (length == 0)
        return true;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return !error && offset <= size && length <= size - offset;
}

bool check_upgrade_header(const upgrade_header_t &header)
{
    return header_has_magic(header) && check_product_id(header_product_id(header));
}
