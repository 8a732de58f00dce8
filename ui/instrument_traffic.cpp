// SPDX-License-Identifier: MIT
#include "ui/instrument_traffic.h"

#include "ui/late_input_filter.h"

#include <QCoreApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPointer>

namespace {

/// Any exchange takes longer, for the link pauses after each write: a shorter scope held none.
constexpr qint64 shortest_exchange_ms = 1;

struct scope_state_t
{
    int depth = 0;
    QElapsedTimer duration;
    QPointer<late_input_filter_t> filter;
};

scope_state_t scope;

} // namespace

instrument_traffic_t::instrument_traffic_t()
{
    if (scope.depth++ > 0)
        return;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    if (scope.filter == nullptr)
        scope.filter = new late_input_filter_t(QCoreApplication::instance());
    scope.duration.start();
}

instrument_traffic_t::~instrument_traffic_t()
{
    if (--scope.depth > 0)
        return;
    QGuiApplication::restoreOverrideCursor();
    if (scope.duration.elapsed() < shortest_exchange_ms)
        return;
    scope.filter->discard_pending();
}
