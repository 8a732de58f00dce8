// SPDX-License-Identifier: MIT
#include "tests/support/recorded_pauses.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/instrument_traffic.h"

#include <QThread>
#include <QWindow>
#include <QtTest/QTest>
#include <qpa/qwindowsysteminterface.h>

namespace {

constexpr int double_click_ms = 200;
constexpr int single_click_ms = 5000;

using window_system_t = QWindowSystemInterface;
using queued_t = window_system_t::AsynchronousDelivery;

/// The pointer and the keyboard in front of a window. What they do waits in the window system's
/// queue, as real input does, until the event loop asks for it.
struct hands_t
{
    QWidget &window;
    int now_ms = 0;

    void mouse(const QWidget *target, QEvent::Type type, int later_ms = single_click_ms)
    {
        const QPoint place = target->mapTo(&window, target->rect().center());
        const bool presses = type == QEvent::MouseButtonPress;
        now_ms += presses ? later_ms : 1;
        window_system_t::handleMouseEvent<queued_t>(
            window.windowHandle(), static_cast<ulong>(now_ms), place, window.mapToGlobal(place),
            presses ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton, type);
    }
    void click(const QWidget *target, int later_ms = single_click_ms)
    {
        mouse(target, QEvent::MouseButtonPress, later_ms);
        mouse(target, QEvent::MouseButtonRelease);
    }
    void space_bar()
    {
        space(QEvent::KeyPress);
        space(QEvent::KeyRelease);
    }
    void space(QEvent::Type type, bool repeats = false)
    {
        window_system_t::handleKeyEvent<queued_t>(window.windowHandle(), type, Qt::Key_Space,
                                                  Qt::NoModifier, " ", repeats);
    }
};

/// Notes the keys that reach a window.
struct key_watcher_t : QObject
{
    bool eventFilter(QObject * /*receiver*/, QEvent *event) override
    {
        seen = seen || event->type() == QEvent::KeyPress;
        return false;
    }
    bool seen = false;
};

bool takes_keys(QWidget &window)
{
    key_watcher_t watcher;
    window.installEventFilter(&watcher);
    QTest::keyClick(window.windowHandle(), Qt::Key_F35);
    return watcher.seen;
}

Qt::CursorShape cursor_shape()
{
    const QCursor *const cursor = QGuiApplication::overrideCursor();
    return cursor != nullptr ? cursor->shape() : Qt::ArrowCursor;
}

} // namespace

class test_instrument_traffic : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { pauses.reset(); }
    void input_during_an_exchange_acts();
    void held_button_sticks_or_clicks();
    void inner_exchange_ends_the_outer_one();
    void nothing_came_but_something_is_lost();
    void double_click_toggles_twice();

private:
    /// Begins anew: connects, clicks ports, waits until the window takes input, and forgets what
    /// was sent.
    void connect_and_click(window_driver_t &driver, const QStringList &ports);
    /// Does this once, in the first pause of the next exchange.
    void during_exchange(const std::function<void()> &action);

    recorded_pauses_t &pauses = recorded_pauses_t::instance();
    simulator_t simulator;
};

void test_instrument_traffic::init()
{
    simulator.reset();
    simulator.load_fleet(R"({"default_timeout_ms": 20, "instruments": [{"product": 44,
        "serial": "SN44", "resources": ["USB0::0xA17E::0x2000::SN44::INSTR"]}]})");
    pauses.wait_for_real(true);
}

void test_instrument_traffic::during_exchange(const std::function<void()> &action)
{
    pauses.on_pause([this, action](unsigned long /*milliseconds*/) {
        pauses.on_pause(nullptr);
        action();
    });
}

void test_instrument_traffic::connect_and_click(window_driver_t &driver, const QStringList &ports)
{
    init();
    QVERIFY(driver.connect_usb("SN44"));
    for (const QString &port : ports)
        QVERIFY(driver.click(port));
    QTRY_VERIFY(takes_keys(driver.window));
    simulator.take_texts();
}

void test_instrument_traffic::input_during_an_exchange_acts()
{
    const struct
    {
        corvane_sim_fault_kind kind;
        corvane_sim_entry entry;
        int value, sent;
    } rows[] = {{CORVANE_SIM_FAULT_DELAY, CORVANE_SIM_READ, 5, 5},
                {CORVANE_SIM_FAULT_LOST, CORVANE_SIM_READ, 0, 5},
                {CORVANE_SIM_FAULT_STATUS, CORVANE_SIM_WRITE, simulator_t::vi_error_io, 0}};
    for (const auto &row : rows) {
        window_driver_t driver;
        hands_t hands{driver.window};
        connect_and_click(driver, {"A"});
        simulator.add_fault({row.kind, row.entry, 1, nullptr, 1, row.value, nullptr, 0});
        driver.button("D")->setFocus(Qt::TabFocusReason);

        Qt::CursorShape shape = Qt::ArrowCursor;
        during_exchange([&] {
            shape = cursor_shape();
            for (const char *const label : {"3", "A", "4", "Reset", "Rescan", "D"})
                hands.click(driver.button(label));
            hands.space_bar();
            window_system_t::handleCloseEvent<queued_t>(driver.window.windowHandle());
        });
        hands.click(driver.button("3"));
        QTRY_VERIFY(!driver.window.isVisible());
        driver.window.show();
        QTRY_VERIFY(takes_keys(driver.window));
        QCOMPARE(shape, Qt::WaitCursor);
        QCOMPARE(cursor_shape(), Qt::ArrowCursor);
        const QByteArrayList texts = simulator.take_texts();
        QCOMPARE(texts.size(), row.sent);
        QVERIFY(texts.isEmpty() || texts.first() == "ADD:ROUTe A3");
        QCOMPARE(driver.disabled_ports(), QStringList());

        // The first press of this double-click was discarded.
        hands.click(driver.button("D"), double_click_ms);
        QTRY_VERIFY(driver.disabled_ports().contains("A"));
    }
}

void test_instrument_traffic::held_button_sticks_or_clicks()
{
    // Each is released meanwhile but the key that is repeated and the one that is pressed then.
    for (const QString held_by : {"mouse", "key", "repeated key", "late key"}) {
        const bool by_mouse = held_by == "mouse";
        window_driver_t driver;
        hands_t hands{driver.window};
        connect_and_click(driver, {"A", "3"});
        QAbstractButton *const held = driver.button("D");
        QAbstractButton *const routed = driver.button("A");
        (by_mouse ? routed : held)->setFocus(Qt::TabFocusReason);
        if (by_mouse)
            hands.mouse(held, QEvent::MouseButtonPress);
        else if (held_by != "late key")
            hands.space(QEvent::KeyPress);
        QTRY_COMPARE(held->isDown(), held_by != "late key");

        during_exchange([&] {
            if (by_mouse)
                hands.mouse(held, QEvent::MouseButtonRelease);
            else if (held_by == "key")
                hands.space(QEvent::KeyRelease);
            else
                hands.space(QEvent::KeyPress, held_by == "repeated key");
        });
        by_mouse ? hands.space_bar() : hands.click(routed);
        QTRY_VERIFY(takes_keys(driver.window) && simulator.calls(CORVANE_SIM_WRITE) > 0);
        if (held_by.contains(' ')) {
            hands.space(QEvent::KeyPress, true);
            hands.space(QEvent::KeyRelease);
        }
        QTRY_VERIFY(takes_keys(driver.window) && !held->isDown());
        QCOMPARE(simulator.take_texts().value(0), QByteArray("ADD:ROUTe A0"));
        QCOMPARE(driver.disabled_ports(), QStringList());
        hands.click(held);
        QTRY_VERIFY(driver.disabled_ports().contains("A"));
    }
}

void test_instrument_traffic::inner_exchange_ends_the_outer_one()
{
    QGuiApplication::setOverrideCursor(QCursor(Qt::CrossCursor));
    {
        const instrument_traffic_t outer;
        {
            const instrument_traffic_t inner;
        }
        QCOMPARE(cursor_shape(), Qt::WaitCursor);
        QThread::msleep(2);
    }
    QCOMPARE(cursor_shape(), Qt::CrossCursor);
    QGuiApplication::restoreOverrideCursor();
}

void test_instrument_traffic::nothing_came_but_something_is_lost()
{
    window_driver_t driver;
    hands_t hands{driver.window};
    connect_and_click(driver, {});
    hands.click(driver.button("D"));
    {
        const instrument_traffic_t too_short;
    }
    QTRY_VERIFY(driver.disabled_ports().contains("A"));
}

void test_instrument_traffic::double_click_toggles_twice()
{
    for (const auto &[second_press_ms, sent] :
         {std::pair(double_click_ms, 5), {single_click_ms, 10}}) {
        window_driver_t driver;
        hands_t hands{driver.window};
        connect_and_click(driver, {"A"});
        for (const int later_ms : {single_click_ms, second_press_ms}) {
            hands.click(driver.button("3"), later_ms);
            QTRY_VERIFY(takes_keys(driver.window));
        }
        QCOMPARE(simulator.take_texts().size(), sent);
    }
}

CORVANE_GUI_TEST_MAIN(test_instrument_traffic)
#include "test_instrument_traffic.moc"
