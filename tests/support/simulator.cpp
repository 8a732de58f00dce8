// SPDX-License-Identifier: MIT
#include "tests/support/simulator.h"

#include <QFile>

namespace {

/// Calls a copying function twice: for the size, then for the bytes.
template <typename copy_t>
QByteArray copied(copy_t copy)
{
    const std::size_t size = copy(nullptr, 0);
    if (size == CORVANE_SIM_NONE)
        return {};
    // Texts end in a zero byte that the size does not count.
    QByteArray bytes(static_cast<int>(size) + 1, '\0');
    copy(bytes.data(), static_cast<std::size_t>(bytes.size()));
    bytes.chop(1);
    return bytes;
}

void require(int result, const char *what)
{
    if (result != 0)
        qFatal("the simulator refuses: %s", what);
}

} // namespace

/// A function of the control interface, under the name by which the library exports it. The
/// declaration gives its type; it is never linked.
#define CONTROL(name) reinterpret_cast<decltype(&(name))>(resolved(library, #name))

namespace {

QFunctionPointer resolved(QLibrary &library, const char *name)
{
    const QFunctionPointer function = library.resolve(name);
    if (function == nullptr)
        qFatal("the simulator lacks %s: %s", name, qPrintable(library.errorString()));
    return function;
}

} // namespace

simulator_t::simulator_t() : library(QStringLiteral(CORVANE_SIM_VISA_NAME))
{
    reset();
}

void simulator_t::reset()
{
    static const QByteArray fleet = [] {
        QFile file(QStringLiteral(CORVANE_FLEET));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no fleet in %s", CORVANE_FLEET);
        return file.readAll().replace(R"("default_timeout_ms": 2000)",
                                      R"("default_timeout_ms": 50)");
    }();
    CONTROL(corvane_sim_reset)();
    load_fleet(fleet);
}

void simulator_t::load_fleet(const QByteArray &json)
{
    require(CONTROL(corvane_sim_load_fleet)(json.constData()), "the fleet");
}

QByteArrayList simulator_t::take_texts()
{
    QByteArrayList texts;
    const std::size_t count = CONTROL(corvane_sim_log_count)();
    for (std::size_t index = 0; index < count; ++index) {
        texts.append(copied([&](void *bytes, std::size_t capacity) {
            return CONTROL(corvane_sim_log_entry)(index, nullptr, nullptr, bytes, capacity);
        }));
    }
    CONTROL(corvane_sim_log_clear)();
    return texts;
}

void simulator_t::stop_log()
{
    CONTROL(corvane_sim_log_enable)(0);
}

quint64 simulator_t::calls(corvane_sim_entry entry)
{
    return CONTROL(corvane_sim_call_count)(entry);
}

void simulator_t::script_reply(const QByteArray &message, const QByteArray &bytes, int times)
{
    require(CONTROL(corvane_sim_script_reply)(
                nullptr, message.constData(), static_cast<std::size_t>(message.size()),
                bytes.constData(), static_cast<std::size_t>(bytes.size()), times),
            "a scripted reply");
}

void simulator_t::fail_call(corvane_sim_entry entry, unsigned nth, int status)
{
    add_fault({CORVANE_SIM_FAULT_STATUS, entry, nth, nullptr, 0, status, nullptr, 0});
}

void simulator_t::add_fault(const corvane_sim_fault &fault)
{
    require(CONTROL(corvane_sim_add_fault)(&fault), "a fault");
}

QList<QPair<int, QByteArray>> simulator_t::images(const QByteArray &resource)
{
    QList<QPair<int, QByteArray>> received;
    const std::size_t count = CONTROL(corvane_sim_image_count)(resource.constData());
    for (std::size_t index = 0; index < count; ++index) {
        int kind = 0;
        const QByteArray image = copied([&](void *bytes, std::size_t capacity) {
            return CONTROL(corvane_sim_image)(resource.constData(), index, &kind, nullptr, bytes,
                                              capacity);
        });
        received.append({kind, image});
    }
    return received;
}

QList<QPair<QByteArray, QByteArray>> simulator_t::parameters(const QByteArray &resource)
{
    QList<QPair<QByteArray, QByteArray>> received;
    const std::size_t count = CONTROL(corvane_sim_parameter_count)(resource.constData());
    for (std::size_t index = 0; index < count; ++index) {
        char name[32] = "";
        const QByteArray value = copied([&](void *bytes, std::size_t capacity) {
            return CONTROL(corvane_sim_parameter)(resource.constData(), index, name, bytes,
                                                  capacity);
        });
        received.append({QByteArray(name), value});
    }
    return received;
}

void simulator_t::fail_block(const QByteArray &resource, unsigned nth)
{
    require(CONTROL(corvane_sim_upgrade_misbehave)(resource.constData(), 0, 0, nth, 0),
            "to misbehave");
}
