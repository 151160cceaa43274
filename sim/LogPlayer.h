// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/linklog/LinkLog.h"
#include "sim/Device.h"
#include "sim/port/Pace.h"
#include "sim/protocol/CommandParser.h"
#include "sim/protocol/FrameSink.h"
#include "values/Outcome.h"

#include <QIODevice>

#include <vector>

namespace sim {

/// Plays the instrument's side of a recorded link log to whoever connects, from the beginning each time. Where the host
/// wrote something in the recording, it waits until the host of today has written as many commands, but not longer than
/// kLongestWait: a host that behaves otherwise gets the rest all the same. What the host writes is not understood.
class LogPlayer : public Device
{
public:
    static constexpr Duration kLongestWait = std::chrono::seconds(3);
    /// Pauses of the recording are kept up to this length.
    static constexpr Duration kLongestPause = std::chrono::seconds(2);
    static constexpr int kMostEntries = 2'000'000;

    /// Reads the whole log. With the pace Honest the recording's own times are kept.
    static ValueOr<std::vector<linklog::Entry>> readLog(QIODevice& device);
    /// The serial number that the recorded instrument reported in its frame "V"; empty when it did not, or not a valid
    /// one.
    static QByteArray recordedSerial(const std::vector<linklog::Entry>& entries);

    LogPlayer(std::vector<linklog::Entry> entries, QByteArray serial, const Pace& pace, FrameSink& sink);

    void hostArrived(Moment now) override;
    void hostLeft() override { m_playing = false; }
    void receive(std::string_view bytes, Moment now) override;
    void advance(Moment now, int frameBudget) override;
    std::optional<Moment> nextDue() const override;
    QByteArray serial() const override { return m_serial; }
    QString activity() const override;

private:
    /// Commands and acknowledgements in what a parser has been fed; the bytes of a script count for nothing.
    static int countInputs(CommandParser& parser, Moment now);
    void toEntry(std::size_t index, Moment now);

    std::vector<linklog::Entry> m_entries;
    QByteArray m_serial;
    Pace m_pace;
    FrameSink& m_sink;
    bool m_playing = false;
    std::size_t m_next = 0;
    Moment m_due{0};
    CommandParser m_host;     ///< what the host of today writes
    CommandParser m_recorded; ///< what the recorded one wrote
    int m_inputsSeen = 0;
    int m_inputsNeeded = 0;
};

} // namespace sim
