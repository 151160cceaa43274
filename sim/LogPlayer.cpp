// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/LogPlayer.h"

#include "controls/linklog/LinkLogReader.h"
#include "sim/protocol/SerialNumber.h"
#include "values/Conversions.h"

#include <QCoreApplication>

#include <algorithm>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::LogPlayer", text);
}

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

} // namespace

ValueOr<std::vector<linklog::Entry>> LogPlayer::readLog(QIODevice& device)
{
    std::vector<linklog::Entry> entries;
    linklog::Reader reader(device);
    while (std::optional<linklog::Entry> entry = reader.next()) {
        if (entry->kind == linklog::Entry::Remark)
            continue;
        if (entries.size() == static_cast<std::size_t>(kMostEntries))
            return Outcome::failure(tr("The link log has more than %1 entries.").arg(kMostEntries));
        entries.push_back(std::move(*entry));
    }
    if (!reader.failure().isNull())
        return Outcome::failure(reader.failure());
    if (std::none_of(entries.begin(), entries.end(),
                     [](const linklog::Entry& entry) { return entry.kind == linklog::Entry::FromInstrument; }))
        return Outcome::failure(tr("The link log holds no frame of an instrument."));
    return entries;
}

QByteArray LogPlayer::recordedSerial(const std::vector<linklog::Entry>& entries)
{
    for (const linklog::Entry& entry : entries) {
        if (entry.kind == linklog::Entry::FromInstrument && entry.bytes.startsWith("V:") &&
            entry.bytes.size() == static_cast<qsizetype>(kFrameSize)) {
            const QByteArray serial = entry.bytes.mid(4, static_cast<qsizetype>(kTextWidth)).trimmed();
            return isSerialNumber(serial) ? serial : QByteArray();
        }
    }
    return {};
}

LogPlayer::LogPlayer(std::vector<linklog::Entry> entries, QByteArray serial, const Pace& pace, FrameSink& sink)
    : m_entries(std::move(entries))
    , m_serial(std::move(serial))
    , m_pace(pace)
    , m_sink(sink)
{}

int LogPlayer::countInputs(CommandParser& parser, Moment now)
{
    int count = 0;
    while (const std::optional<CommandParser::Input> input = parser.next(now)) {
        if (input->kind == CommandParser::Kind::Block)
            continue;
        ++count;
        if (input->kind == CommandParser::Kind::Command && input->word == "loadscript") {
            const std::optional<std::int32_t> length = values::strictInt32(std::string_view(input->argument));
            parser.expectBlock(static_cast<std::size_t>(std::max(0, length.value_or(0))));
        }
    }
    return count;
}

void LogPlayer::hostArrived(Moment now)
{
    m_playing = true;
    m_host.reset();
    m_recorded.reset();
    m_inputsSeen = 0;
    m_inputsNeeded = 0;
    toEntry(0, now);
}

void LogPlayer::toEntry(std::size_t index, Moment now)
{
    m_next = index;
    m_due = now;
    if (index >= m_entries.size())
        return;
    const linklog::Entry& entry = m_entries[index];
    if (entry.kind == linklog::Entry::ToInstrument) {
        // A moment later, so that a lone blank counts as the acknowledgement that it is.
        m_recorded.feed(view(entry.bytes), now - CommandParser::kBlankPause);
        m_inputsNeeded += countInputs(m_recorded, now);
        m_due = now + kLongestWait;
        return;
    }
    switch (m_pace.kind) {
    case Pace::Kind::Fast:
        break;
    case Pace::Kind::Rate:
        m_due = now + secondsToDuration(1.0 / m_pace.pointsPerSecond);
        break;
    case Pace::Kind::Honest:
        if (index > 0) {
            const Duration pause = std::chrono::microseconds(entry.microseconds - m_entries[index - 1].microseconds);
            m_due = now + std::clamp(pause, Duration(0), kLongestPause);
        }
        break;
    }
}

void LogPlayer::receive(std::string_view bytes, Moment now)
{
    m_host.feed(bytes, now);
    m_inputsSeen += countInputs(m_host, now);
}

void LogPlayer::advance(Moment now, int frameBudget)
{
    m_inputsSeen += countInputs(m_host, now);
    while (m_playing && m_next < m_entries.size() && frameBudget > 0) {
        const linklog::Entry& entry = m_entries[m_next];
        if (entry.kind == linklog::Entry::ToInstrument) {
            if (m_inputsSeen < m_inputsNeeded && now < m_due)
                return;
            toEntry(m_next + 1, now);
            continue;
        }
        if (now < m_due)
            return;
        m_sink.sendRaw(view(entry.bytes));
        --frameBudget;
        // From the moment it was due, so that the pace does not drift.
        toEntry(m_next + 1,
                m_pace.kind == Pace::Kind::Fast ? now : std::max(m_due, now - std::chrono::milliseconds(200)));
    }
}

std::optional<Moment> LogPlayer::nextDue() const
{
    if (!m_playing || m_next >= m_entries.size())
        return {};
    if (m_entries[m_next].kind == linklog::Entry::ToInstrument && m_inputsSeen >= m_inputsNeeded)
        return Moment(0);
    const std::optional<Moment> blank = m_host.nextDue();
    return blank ? std::min(*blank, m_due) : m_due;
}

QString LogPlayer::activity() const
{
    if (m_next >= m_entries.size())
        return tr("the recording is at its end");
    return (m_entries[m_next].kind == linklog::Entry::ToInstrument
                ? tr("recording, entry %1 of %2, waiting for the host")
                : tr("recording, entry %1 of %2"))
        .arg(m_next + 1)
        .arg(m_entries.size());
}

} // namespace sim
