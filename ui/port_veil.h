// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>
#include <QWidget>

/// Lies over a front panel and darkens the widgets there that are disabled, with all that is in
/// them: their style leaves their texts as bright as those of the others.
class port_veil_t : public QWidget
{
    Q_OBJECT

public:
    /// Covers the whole of `panel`, whatever its size, above the children that it has by now.
    explicit port_veil_t(QWidget *panel);

    /// Darkens a child of the panel whenever it is disabled.
    void watch(QWidget *widget) { watched.append(widget); }

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QVector<QWidget *> watched;
};
