// SPDX-License-Identifier: MIT
#include "tools/package_writer.h"

#include "tools/readable_file.h"
#include "tools/text_mode.h"
#include "tools/whole_file.h"
#include "upgrade/header_cipher.h"
#include "upgrade/little_endian.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

namespace {

constexpr std::size_t cipher_block_bytes = 8;
constexpr std::size_t copy_chunk_bytes = 1 << 16;

/// True for a header byte that no reader looks at.
bool is_filler(std::size_t place)
{
    const auto within = [place](std::size_t begin, std::size_t size) {
        return begin <= place && place < begin + size;
    };
    return !within(header_layout::end_offset, sizeof(std::uint32_t)) &&
           !within(header_layout::product_id, sizeof(std::int32_t)) &&
           !within(header_layout::magic, header_magic.size());
}

/// Writes `value` into the filler of a block, as much as there is room for.
void fill_block(upgrade_header_t &header, std::size_t block, unsigned value)
{
    for (std::size_t place = block; place < block + cipher_block_bytes; ++place) {
        if (is_filler(place)) {
            header[place] = static_cast<std::uint8_t>(value);
            value >>= 8;
        }
    }
}

/// Enciphers the header block by block, with the first filler that makes the block readable in text
/// mode; every block has at least two bytes of it.
upgrade_header_t encipher_header(upgrade_header_t header)
{
    upgrade_header_t sealed{};
    for (std::size_t block = 0; block < header.size(); block += cipher_block_bytes) {
        for (unsigned filler = 0; filler <= std::numeric_limits<std::uint16_t>::max(); ++filler) {
            fill_block(header, block, filler);
            des_crypt(&sealed[block], &header[block], cipher_block_bytes, header_key.data(),
                      header_key.size(), false);
            if (survives_text_mode(&sealed[block], cipher_block_bytes))
                break;
        }
    }
    return sealed;
}

upgrade_header_t make_header(std::int32_t product_id, std::uint32_t end_offset)
{
    upgrade_header_t header{};
    write_little_endian<std::uint32_t>(end_offset, &header[header_layout::end_offset]);
    write_little_endian<std::int32_t>(product_id, &header[header_layout::product_id]);
    std::copy(header_magic.begin(), header_magic.end(), &header[header_layout::magic]);
    return encipher_header(header);
}

segment_record_buffer_t make_record(const segment_record_t &record)
{
    segment_record_buffer_t buffer{};
    write_little_endian<std::uint32_t>(record.type, buffer.data());
    write_little_endian<std::uint32_t>(record.data_offset, &buffer[4]);
    write_little_endian<std::uint32_t>(record.data_length, &buffer[8]);
    return buffer;
}

std::vector<segment_record_t> lay_out(const package_plan_t &plan, std::uint64_t &end)
{
    std::vector<segment_record_t> records;
    end = upgrade_header_bytes;
    for (const planned_segment_t &segment : plan.segments) {
        end += segment_record_bytes;
        records.push_back(
            {segment.kind->type, static_cast<std::uint32_t>(end), segment.payload_bytes});
        end += segment.payload_bytes;
        if (end > std::numeric_limits<std::uint32_t>::max())
            throw std::runtime_error("the package is longer than its 32-bit offsets reach");
    }
    return records;
}

template <std::size_t size>
void write_bytes(whole_file_t &out, const std::array<std::uint8_t, size> &bytes)
{
    out.write(reinterpret_cast<const char *>(bytes.data()), size);
}

void copy_payload(whole_file_t &out, const planned_segment_t &segment)
{
    std::ifstream payload = open_to_read(segment.payload_path);
    std::vector<char> chunk(copy_chunk_bytes);
    std::uint64_t copied = 0;
    while (payload) {
        payload.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        const auto count = static_cast<std::size_t>(payload.gcount());
        out.write(chunk.data(), count);
        copied += count;
    }
    if (copied != segment.payload_bytes)
        throw std::runtime_error(segment.payload_path.u8string() + ": could not be copied");
}

} // namespace

void write_package(const package_plan_t &plan, const std::filesystem::path &path)
{
    std::uint64_t end = 0;
    const std::vector<segment_record_t> records = lay_out(plan, end);
    whole_file_t out(path);
    write_bytes(out, make_header(plan.product_id, static_cast<std::uint32_t>(end)));
    for (std::size_t index = 0; index < records.size(); ++index) {
        write_bytes(out, make_record(records[index]));
        copy_payload(out, plan.segments[index]);
    }
    out.complete();
}
