// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <string>
#include <thread>

/// A pseudo-terminal (POSIX) whose other end the program opens as a serial port.
class pseudo_terminal_t
{
public:
    pseudo_terminal_t();
    ~pseudo_terminal_t();
    pseudo_terminal_t(const pseudo_terminal_t &) = delete;
    pseudo_terminal_t &operator=(const pseudo_terminal_t &) = delete;

    /// The device that the program opens.
    std::string path() const;
    /// Waits for the next command in the background and answers it.
    void answer_next(const QByteArray &reply);
    /// The next bytes that the program sent, `count` of them unless they fail to come for a second.
    QByteArray take_bytes(int count);

private:
    bool wait_for_bytes() const;
    void receive();

    int master;
    std::thread answering;
    QByteArray received;
};
