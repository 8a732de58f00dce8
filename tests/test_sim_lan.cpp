// SPDX-License-Identifier: MIT
#include "rpc/record_marking.h"
#include "rpc/vxi11.h"
#include "sim/bus/bus.h"
#include "sim/lan/port_mapper.h"
#include "sim/lan/rpc_conversation.h"
#include "sim/lan/vxi11_service.h"

#include <QByteArray>
#include <QtTest/QTest>

#include <thread>

using namespace rpc::vxi11;
using namespace sim;
using namespace sim::lan;

namespace {

constexpr std::uint16_t core_port = 1025;
constexpr std::uint32_t soon_ms = 30; ///< a time-out that is waited for

/// What clients share.
struct network_t
{
    explicit network_t(int delay_ms = 0)
    {
        fleet_t fleet = default_fleet();
        fleet.instruments.resize(1);
        fleet.instruments[0].response_delay = std::chrono::milliseconds(delay_ms);
        bus.load(fleet);
    }

    bus_t bus;
    link_table_t links;
};

/// The results of a call; the memory of the texts is the client's.
template <typename result_t>
struct answered_t : result_t
{
    std::uint32_t status = 99;
    bool waits = false;
    bool ended = false; ///< the connection, in place of an answer
};

/// One connection to the instrument's core channel.
class client_t
{
public:
    explicit client_t(network_t &network)
        : conversation(std::make_unique<vxi11_service_t>(network.bus, 0, core_port, network.links))
    {
    }

    template <typename result_t, typename args_t>
    answered_t<result_t> call(procedure_t procedure, const args_t &args,
                              std::uint32_t program = core_program)
    {
        return result<result_t>(record_of(static_cast<std::uint32_t>(procedure), args, program));
    }

    template <typename args_t>
    static std::string record_of(std::uint32_t procedure, const args_t &args, std::uint32_t program)
    {
        std::string record(rpc::record_header_room);
        rpc::xdr_writer_t out(record);
        rpc::write_call(out, {7, 2, program, 1, procedure, {}});
        out.structure(args);
        rpc::end_record(record, 0);
        return record;
    }

    /// Goes on until the answer is there; waits for it only if `patient`.
    template <typename result_t>
    answered_t<result_t> result(std::string_view bytes = {}, bool patient = true)
    {
        reply.clear();
        progress_t progress;
        do {
            progress = conversation.advance(bytes, reply);
            if (progress.state == progress_t::state_t::waiting && patient &&
                progress.until != never)
                std::this_thread::sleep_until(progress.until);
        } while (reply.empty() && progress.until != never && patient);
        answered_t<result_t> answered;
        answered.waits = progress.state == progress_t::state_t::waiting;
        answered.ended = progress.state == progress_t::state_t::finished;
        if (const auto read = rpc::read_reply(
                std::string_view(reply).substr(std::min<std::size_t>(4, reply.size())))) {
            answered.status = read->status;
            rpc::xdr_reader_t(read->results).structure(static_cast<result_t &>(answered));
        }
        return answered;
    }

    std::uint32_t open(const char *device = "inst0")
    {
        const auto made = call<create_link_result_t>(procedure_t::create_link,
                                                     create_link_args_t{1, false, 0, device});
        return made.error == 0 ? made.link : 0;
    }

    /// The error that a call ends in.
    template <typename args_t>
    std::uint32_t error(procedure_t procedure, const args_t &args,
                        std::uint32_t program = core_program)
    {
        return call<error_result_t>(procedure, args, program).error;
    }

    std::uint32_t write(std::uint32_t link, std::string_view text, std::uint32_t flags = flag_end)
    {
        return error(procedure_t::device_write, write_args_t{link, soon_ms, soon_ms, flags, text});
    }

    /// What a read brings: data and reason, or the error.
    QByteArray read(std::uint32_t link, std::uint32_t size = 100, char term_char = 0,
                    std::uint32_t timeout = soon_ms)
    {
        const std::uint32_t flags = term_char == 0 ? 0 : flag_term_char;
        const auto got = call<read_result_t>(
            procedure_t::device_read,
            read_args_t{link, size, timeout, 0, flags, static_cast<std::uint32_t>(term_char)});
        if (got.error != 0)
            return "error " + QByteArray::number(got.error);
        return QByteArray(got.data.data(), static_cast<int>(got.data.size())).trimmed() + "|" +
               QByteArray::number(got.reason);
    }

    std::uint32_t lock(std::uint32_t link, std::uint32_t flags = 0)
    {
        return error(procedure_t::device_lock, lock_args_t{link, flags, soon_ms});
    }

    std::uint32_t unlock(std::uint32_t link)
    {
        return error(procedure_t::device_unlock, link_args_t{link});
    }

private:
    rpc_conversation_t conversation;
    std::string reply;
};

} // namespace

class test_sim_lan : public QObject
{
    Q_OBJECT

private slots:
    void reply_comes_at_the_wrong_time();
    void lock_is_ignored_or_never_ends();
    void call_that_is_not_served_is_believed();
    void port_mapper_sends_clients_astray();
};

void test_sim_lan::reply_comes_at_the_wrong_time()
{
    network_t network(2 * soon_ms);
    client_t client(network);
    client_t other(network);
    const std::uint32_t link = client.open();
    client.write(link, "ROUTes?");
    QCOMPARE(client.read(link), "error 15");
    QCOMPARE(client.read(link, 100, 0, 1000), "0,14,9,0|4");

    // An abort ends the wait of the link that it names, and the reply can still be read.
    client.write(link, "ROUTes?");
    const std::string read = client_t::record_of(12, read_args_t{link, 100, 60'000}, core_program);
    QVERIFY(client.result<read_result_t>(read, false).waits);
    const auto abort = static_cast<procedure_t>(device_abort);
    QCOMPARE(other.error(abort, link_args_t{link + 1}, abort_program), 4U);
    QCOMPARE(other.error(abort, link_args_t{link}, abort_program), 0U);
    QCOMPARE(client.result<read_result_t>().error, 23U);
    QCOMPARE(client.read(link, 100, 0, 1000), "0,14,9,0|4");
}

void test_sim_lan::lock_is_ignored_or_never_ends()
{
    network_t network;
    auto owner = std::make_unique<client_t>(network);
    client_t other(network);
    const std::uint32_t owners = owner->open();
    const std::uint32_t others = other.open();
    QCOMPARE(owner->lock(owners), 0U);
    for (const std::uint32_t flags : {0U, flag_wait_lock})
        QCOMPARE(other.lock(others, flags), 11U);
    QCOMPARE(other.read(others), "error 11");
    for (const procedure_t procedure :
         {procedure_t::device_readstb, procedure_t::device_trigger, procedure_t::device_clear})
        QCOMPARE(other.error(procedure, generic_args_t{others}), 11U);
    QCOMPARE(other.unlock(others), 12U);
    const create_link_args_t locking{1, true, soon_ms, "inst0"};
    QCOMPARE(other.error(procedure_t::create_link, locking), 11U);

    QCOMPARE(owner->unlock(owners), 0U);
    QVERIFY(network.links.take_change());
    const auto second = other.call<create_link_result_t>(procedure_t::create_link, locking);
    QCOMPARE(second.error, 0U);
    QCOMPARE(owner->lock(owners), 11U);
    QCOMPARE(other.error(procedure_t::destroy_link, link_args_t{second.link}), 0U);
    QCOMPARE(owner->lock(owners), 0U);
    owner.reset();
    QVERIFY(network.links.take_change());
    QCOMPARE(other.lock(others), 0U);
}

void test_sim_lan::call_that_is_not_served_is_believed()
{
    network_t network;
    client_t client(network);
    client_t stranger(network);
    const std::uint32_t link = client.open();
    for (const char *const device : {"inst1", "", "inst", "inst00", "gpib0,5"})
        QCOMPARE(client.open(device), 0U);
    QCOMPARE(stranger.open(), 2U);
    QCOMPARE(stranger.write(link, "*CLS"), 4U);
    const auto status_of = [&](std::uint32_t procedure, std::uint32_t program = core_program) {
        return client
            .call<error_result_t>(static_cast<procedure_t>(procedure), link_args_t{link}, program)
            .status;
    };
    for (const std::uint32_t procedure : {16U, 17U, 20U, 22U, 25U, 26U})
        QCOMPARE(client.error(static_cast<procedure_t>(procedure), link_args_t{link}), 8U);
    for (const std::uint32_t procedure : {1U, 21U, 24U, 27U})
        QCOMPARE(status_of(procedure), 3U);
    QCOMPARE(status_of(0), 0U);
    QCOMPARE(status_of(11), 4U); // too few arguments
    QCOMPARE(status_of(0, 395'185), 1U);
    // Longer than any message: refused, and forgotten.
    const std::string much(vxi11_service_t::most_message_bytes - 100, ' ');
    QCOMPARE(client.write(link, much, 0), 0U);
    QCOMPARE(client.write(link, std::string(200, ' '), 0), 17U);
    QCOMPARE(client.write(link, "ROUTes?"), 0U);
    QCOMPARE(client.read(link), "0,14,9,0|4");
    for (std::size_t more = 1; more < vxi11_service_t::most_links; ++more)
        QVERIFY(client.open() != 0);
    QCOMPARE(client.open(), 0U);
}

void test_sim_lan::port_mapper_sends_clients_astray()
{
    // Version and procedure; the arguments; accept status and results.
    const char *const rows[][3] = {
        {"00000002 00000003", "000607af 00000001 00000006 00000000", "00000000 00000401"},
        {"00000002 00000003", "000607af 00000001 00000011 00000000", "00000000 00000000"}, // UDP
        {"00000002 00000003", "000607af 00000002 00000006 00000000", "00000000 00000000"},
        {"00000002 00000003", "000607af", "00000004"},
        {"00000004 00000003", "000607af 00000001 00000003 74637000 00000000 00000000",
         "00000000 0000000d 3132372e302e302e312e342e31 000000"}, // 127.0.0.1.4.1
        {"00000003 00000003", "000607af 00000001 ffffffff 74637000", "00000004"},
        {"00000003 00000004", "", "00000003"},
        {"00000005 00000003", "", "00000002 00000002 00000004"}};
    port_mapper_t mapper("127.0.0.1", core_port);
    for (const auto &[procedure, arguments, answer] : rows) {
        const QByteArray call = QByteArray("00000007 00000000 00000002 000186a0") + procedure +
                                QByteArray(32, '0') + arguments;
        std::string reply;
        bus_time_t until = never;
        answer_call(mapper, QByteArray::fromHex(call).toStdString(), false, reply, until);
        QCOMPARE(QByteArray::fromStdString(reply.substr(20)), QByteArray::fromHex(answer));
    }
}

QTEST_GUILESS_MAIN(test_sim_lan)
#include "test_sim_lan.moc"
