// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <map>

/// Which faults of a sweep are tried: all of one kind, or each K-th.
class fault_choice_t
{
public:
    explicit fault_choice_t(int k = 1, const QString &only_kind = {})
        : every(k), chosen_kind(only_kind)
    {
    }

    /// To be asked for each fault once, in order.
    bool takes(const QString &kind);

private:
    int every;
    QString chosen_kind;
    int number = 0;
};

/// What came of the faults of a sweep, as a table. A program that crashes or hangs under one says
/// under which, and ends with status 1.
class sweep_report_t
{
public:
    sweep_report_t();
    ~sweep_report_t();
    sweep_report_t(const sweep_report_t &) = delete;
    sweep_report_t &operator=(const sweep_report_t &) = delete;

    /// Says what is done from now on; it hangs when it takes longer than a minute.
    void begin(const QString &what);
    /// Notes what came of a fault of this kind: why the program has not survived it, or nothing.
    void end(const QString &kind, const QString &fault, const QString &failure, qint64 session_ms);
    /// Prints the table. True when every fault was survived, and there was one.
    bool print() const;

private:
    struct figures_t
    {
        int tried = 0;
        int survived = 0;
        qint64 slowest_ms = -1;
        QString slowest;
    };

    std::map<QString, figures_t> figures;
};

/// Runs a sweep as a program with a display, and the options --every and --kind.
int run_sweep(int argc, char **argv, const std::function<int(fault_choice_t)> &sweep);
