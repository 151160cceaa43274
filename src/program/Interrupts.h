// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;

/// Ctrl-C, a hang-up and a termination request as a signal of the event loop. A second one ends the program at once, as
/// if nobody listened. One object at a time.
///
/// With a patience (seconds) the program ends that long after the first one, whatever it is doing by then.
class Interrupts : public QObject
{
    Q_OBJECT

public:
    explicit Interrupts(unsigned patience = 0, QObject* parent = nullptr);
    ~Interrupts() override;

Q_SIGNALS:
    void interrupted();

private:
    void readWakeUp();

    QSocketNotifier* m_notifier = nullptr;
};
