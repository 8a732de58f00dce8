// SPDX-License-Identifier: MIT
// Writes a package under a name in Chinese characters, reads it as Corvane does and prints the
// report: what needs no Qt, in one program. scripts/build-windows compares that.

#include "tools/package_report.h"
#include "upgrade/accepted_id.h"
#include "upgrade/header_cipher.h"
#include "upgrade/little_endian.h"
#include "upgrade/package_reader.h"
#include "upgrade/segment_chain.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>

namespace {

constexpr std::int32_t product_id = 44;
const std::string payload = "TMX";

void write_package(const std::filesystem::path &file)
{
    constexpr std::uint32_t begin = upgrade_header_bytes + segment_record_bytes;
    const auto length = static_cast<std::uint32_t>(payload.size());
    std::array<std::uint8_t, begin> bytes{};
    write_little_endian<std::uint32_t>(begin + length, &bytes[header_layout::end_offset]);
    write_little_endian<std::int32_t>(product_id, &bytes[header_layout::product_id]);
    std::copy(header_magic.begin(), header_magic.end(), &bytes[header_layout::magic]);
    des_crypt(bytes.data(), bytes.data(), upgrade_header_bytes, header_key.data(),
              header_key.size(), false);
    write_little_endian<std::uint32_t>(5, &bytes[upgrade_header_bytes]);
    write_little_endian<std::uint32_t>(begin, &bytes[upgrade_header_bytes + 4]);
    write_little_endian<std::uint32_t>(length, &bytes[upgrade_header_bytes + 8]);
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    out << payload;
}

package_report_t read_package(const std::filesystem::path &file)
{
    set_accepted_ids({product_id, 0, 0, 1});
    upgrade_header_t header{};
    package_report_t report;
    report.has_magic = read_upgrade_header(file, header);
    report.file_bytes = std::filesystem::file_size(file);
    report.product_id = header_product_id(header);
    report.end_offset = header_end_offset(header);
    segment_chain_t chain(file, report.end_offset);
    chain_step_t step = chain.next();
    for (; step == chain_step_t::segment; step = chain.next())
        report.segments.push_back({chain.record_offset(), chain.record(), {}});
    if (step != chain_step_t::complete)
        report.findings.push_back({"chain", "the end offset was not met"});
    return report;
}

} // namespace

int main()
{
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / std::filesystem::u8path(u8"固件 1.ADS");
    write_package(file);
    const package_report_t report = read_package(file);
    std::string sent(payload.size(), '\0');
    read_payload(file, report.segments.at(0).record.data_offset, sent.data(), sent.size());
    std::filesystem::remove(file);
    std::cout << report_as_text(report) << "payload: " << sent << '\n';
    return 0;
}
