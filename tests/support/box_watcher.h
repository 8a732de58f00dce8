// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

/// Closes each message box that appears, by a click on Ok, and keeps what it said.
class box_watcher_t : public QObject
{
public:
    explicit box_watcher_t(QObject *parent = nullptr);

    /// "title: text [button, ...]" of every box since the last call, oldest first; a default button
    /// that is not Ok says so.
    QStringList take_boxes();
    /// Leaves the box with this text open until another one has appeared on top of it.
    void leave_until_another(const QString &text);

private:
    void close_box();

    QTimer timer;
    QStringList boxes;
    QString left_text;
};
