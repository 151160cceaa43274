// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class InstrumentEvents;

/// Whether an instrument has told its complete state as often as it was asked, and who it is.
///
/// The host asks twice, so that between the two answers the second is older than whatever was set behind the first.
/// Until complete(), nothing may be changed or started on the word of what the instrument tells.
class AnswerWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr int kAsked = 2;        ///< answers to wait for after each connection
    static constexpr int kQuiet = 1000;     ///< ms without a frame of state after which no more of them are awaited
    static constexpr int kLongest = 10'000; ///< ms after which an instrument that never falls quiet is not waited for

    explicit AnswerWatch(InstrumentEvents& events, QObject* parent = nullptr);

    /// Milliseconds in place of kQuiet.
    void setQuiet(int milliseconds) { m_quiet.setInterval(milliseconds); }

    /// No answer is awaited: all are in, the instrument has fallen quiet, or there is none.
    bool complete() const { return m_awaited == 0 && !m_awaitsName; }
    /// An answer is in and another one is awaited: what comes now is older than what the user sets now.
    bool late() const { return m_answered && !complete(); }

Q_SIGNALS:
    /// Once for each connection that lasts so long.
    void completed();

private:
    void connected();
    void lost();
    void heard();
    void answered();
    void named();
    void giveUp();

    int m_awaited = 0;
    bool m_awaitsName = false; ///< stored settings belong to a serial number
    bool m_answered = false;
    QTimer m_quiet;
    QElapsedTimer m_sinceAsked;
};
