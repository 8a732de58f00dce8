// SPDX-License-Identifier: MIT
#include "tests/usb_kernel/checks.h"

#include "tests/usb_kernel/client.h"

#include <algorithm>
#include <future>
#include <thread>

namespace usb_kernel {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds short_time{400};
/// How much longer than allowed a call may take.
constexpr milliseconds grace{1000};

const std::string identity = "TMX,TMX5044,SN44001,1.0.0\n";

void expect_time_out(const client_t &client)
{
    std::string reply;
    const auto begin = test_clock_t::now();
    const ViStatus status = client.read(reply, 100, short_time);
    const auto taken = test_clock_t::now() - begin;
    expect_status(status, visa::error_timeout, "read without a reply");
    expect(taken >= short_time && taken <= short_time + grace, "the time-out is kept");
}

bool is_found(const std::string &name)
{
    const auto names = client_t::search();
    return std::find(names.begin(), names.end(), name) != names.end();
}

void both_are_found(bench_t &bench)
{
    std::vector<std::string> expected{bench.name(bench.prompt_place), bench.name(bench.late_place)};
    std::sort(expected.begin(), expected.end());
    wait_until("both instruments are found by their names", [&expected] {
        auto names = client_t::search();
        std::sort(names.begin(), names.end());
        return names == expected;
    });
    expect(client_t::search() == client_t::search(), "the order stays");
}

/// Replies that fill packets and the driver's buffers of 4096 bytes just so, with their headers of
/// 12 bytes, and one more or less.
void reply_of_any_size_is_whole(bench_t &bench)
{
    const client_t client(bench.name(bench.prompt_place));
    for (const std::size_t size : {1, 499, 500, 501, 2036, 4083, 4084, 4085, 4096, 8192, 10000}) {
        std::string reply(size, 'x');
        reply.back() = '\n';
        bench.bus.access()->scripts.add({{}, "SIZE?", reply, 1});
        expect(client.query("SIZE?") == reply, "a reply of " + std::to_string(size) + " bytes");
    }
}

void block_with_zeros_arrives_whole(bench_t &bench)
{
    const client_t client(bench.name(bench.prompt_place));
    for (const std::size_t size : {1, 3, 500, 2056, 4084, 5000}) {
        std::string block(size, '\0');
        block[size / 2] = '\n';
        bench.bus.access()->log.clear();
        expect_status(client.write(block), visa::success, "write");
        std::string arrived;
        for (const auto &entry : bench.bus.access()->log.entries())
            arrived += entry.bytes;
        expect(arrived == block, "a block of " + std::to_string(size) + " bytes arrives");
    }
    client.query("*CLS;*OPC?");
}

void late_reply_answers_no_other_query(bench_t &bench)
{
    const client_t client(bench.name(bench.late_place));
    expect_status(client.write("*IDN?"), visa::success, "write");
    expect_time_out(client);
    expect(client.query("*OPC?") == "1\n", "the next query gets its own reply");
    expect_status(client.write("*IDN?"), visa::success, "write");
    expect_time_out(client);
    std::this_thread::sleep_for(bench_t::late_reply);
    expect(client.query("*OPC?") == "1\n", "the next query gets its own reply, later too");
}

void opening_waits_behind_a_read_as_long_as_it_may(bench_t &bench)
{
    const std::string name = bench.name(bench.late_place);
    const client_t client(name);
    std::string reply;
    auto read =
        std::async(std::launch::async, [&] { return client.read(reply, 100, milliseconds(4000)); });
    std::this_thread::sleep_for(short_time);
    ViSession session = visa::null_object;
    const auto begin = test_clock_t::now();
    expect_status(open_now(name, session), visa::error_resource_not_found, "open");
    expect(test_clock_t::now() - begin < 2 * grace, "it ends in time");
    expect_status(read.get(), visa::error_timeout, "read without a reply");
    expect(client_t(name).query("*OPC?") == "1\n", "a later one succeeds");
}

void lost_connection_is_told(bench_t &bench, const client_t &client, const std::string &name)
{
    std::string reply;
    expect_status(client.write("*IDN?"), visa::error_connection_lost, "write afterwards");
    expect_status(client.read(reply), visa::error_connection_lost, "read afterwards");
    expect_status(client.clear(), visa::error_connection_lost, "clear afterwards");
    bench.bus.access()->plug(bench.prompt_place);
    wait_until("the instrument is found again", [&name] { return is_found(name); });
    expect(client_t(name).query("*IDN?") == identity, "a new connection works");
    expect_status(client.write("*IDN?"), visa::error_connection_lost,
                  "the old connection stays lost");
}

void pulled_plug_ends_a_read(bench_t &bench)
{
    const std::string name = bench.name(bench.prompt_place);
    const client_t client(name);
    std::string reply;
    auto read = std::async(std::launch::async, [&client, &reply] {
        return client.read(reply, 100, milliseconds(10000));
    });
    std::this_thread::sleep_for(short_time);
    bench.bus.access()->unplug(bench.prompt_place);
    expect(read.wait_for(grace) == std::future_status::ready, "the read ends at once");
    expect_status(read.get(), visa::error_connection_lost, "read");
    wait_until("the instrument is found no more", [&name] { return !is_found(name); });
    lost_connection_is_told(bench, client, name);
}

} // namespace

std::vector<check_t> all_checks()
{
    return {
        {"both instruments are found", both_are_found},
        {"reply of any size is whole", reply_of_any_size_is_whole},
        {"block with zeros arrives whole", block_with_zeros_arrives_whole},
        {"late reply answers no other query", late_reply_answers_no_other_query},
        {"opening waits behind a read as long as it may",
         opening_waits_behind_a_read_as_long_as_it_may},
        {"pulled plug ends a read", pulled_plug_ends_a_read},
    };
}

} // namespace usb_kernel
