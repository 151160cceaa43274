// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/Line.h"

#include <algorithm>
#include <array>
#include <utility>

namespace sim {

namespace {

constexpr int kFloodFrames = 500;
constexpr char kMeaninglessCode = '*';
constexpr std::string_view kNumberCodes = "ABCDEFGHIJKLMNPQRSXYst";

bool isPoint(const Frame& frame)
{
    return frameCode(frame) == 'F' || frameCode(frame) == 'H';
}

} // namespace

Line::Line(const FaultPlan& plan, std::uint64_t seed)
    : m_plan(plan)
    , m_random(seed ^ 0xfa17)
{
    plugIn();
}

void Line::plugIn()
{
    m_unplugged = false;
    m_unpluggedNews = false;
    if (const std::uint32_t every = m_plan.every(Fault::Unplug))
        m_pointsToUnplug = 1 + m_random.below(2ULL * every);
}

bool Line::takeUnplugged()
{
    return std::exchange(m_unpluggedNews, false);
}

void Line::clear()
{
    m_bytes.clear();
    m_begin = 0;
    m_segments.clear();
    m_stalledUntil.reset();
}

void Line::append(std::string_view bytes, Duration pause)
{
    if (bytes.empty())
        return;
    if (m_segments.empty() || pause.count() > 0)
        m_segments.push_back({bytes.size(), pause});
    else
        m_segments.back().length += bytes.size();
    m_bytes.append(bytes);
}

void Line::send(const Frame& frame)
{
    if (m_unplugged)
        return;
    ++m_framesSent;
    if (!m_plan.any()) {
        append({frame.data(), frame.size()}, Duration(0));
        return;
    }
    if (m_pointsToUnplug > 0 && isPoint(frame) && --m_pointsToUnplug == 0) {
        clear();
        m_unplugged = true;
        m_unpluggedNews = true;
        return;
    }
    const auto strikes = [this](Fault fault) { return m_random.onceIn(m_plan.every(fault)); };

    std::string bytes(frame.data(), frame.size());
    if (strikes(Fault::NonNumeric))
        spoilNumber(bytes);
    // Never both in one frame: columns put in and columns lost could make up a frame of the right length with wrong
    // numbers, which no host can tell from a good one.
    if (strikes(Fault::WrongLength))
        spoilLength(bytes);
    else if (strikes(Fault::LostBytes))
        loseBytes(bytes);
    if (strikes(Fault::Garbage))
        append(garbage(), Duration(0));
    if (strikes(Fault::Flood)) {
        const Frame meaningless = numberFrame(kMeaninglessCode, 0, {});
        for (int i = 0; i < kFloodFrames; ++i)
            append({meaningless.data(), meaningless.size()}, Duration(0));
    }
    Duration pause{0};
    if (strikes(Fault::Stall))
        pause = std::chrono::milliseconds(200 + m_random.below(400));
    if (strikes(Fault::SplitWrites)) {
        std::string_view rest = bytes;
        while (!rest.empty()) {
            const std::size_t length = std::min<std::size_t>(rest.size(), 1 + m_random.below(kFrameSize - 1));
            append(rest.substr(0, length), pause);
            rest.remove_prefix(length);
            pause = std::chrono::microseconds(200 + m_random.below(4000));
        }
    } else {
        append(bytes, pause);
    }
}

void Line::sendRaw(std::string_view bytes)
{
    if (bytes.size() == kFrameSize) {
        Frame frame;
        std::copy(bytes.begin(), bytes.end(), frame.begin());
        send(frame);
    } else if (!m_unplugged) {
        append(bytes, Duration(0));
    }
}

void Line::spoilNumber(std::string& bytes)
{
    if (kNumberCodes.find(bytes[0]) == std::string_view::npos)
        return;
    static constexpr std::array<std::string_view, 6> kNoNumbers{"", "?", "nan", "--", "x1F", "overflow"};
    static constexpr std::array<std::pair<std::size_t, std::size_t>, 6> kFields{
        {{2, 1}, {4, 13}, {18, 13}, {32, 13}, {46, 13}, {60, 5}}};
    const auto [at, width] = kFields[m_random.below(kFields.size())];
    const std::string_view text = kNoNumbers[m_random.below(kNoNumbers.size())].substr(0, width);
    bytes.replace(at, width, std::string(width - text.size(), ' ') + std::string(text));
}

void Line::spoilLength(std::string& bytes)
{
    const std::size_t at = 3 + m_random.below(kFrameSize - 5);
    const std::size_t count = 1 + m_random.below(3);
    if (m_random.below(2) == 0)
        bytes.insert(at, count, ' ');
    else
        bytes.erase(at, std::min(count, kFrameSize - 2 - at));
}

void Line::loseBytes(std::string& bytes)
{
    for (std::uint64_t count = 1 + m_random.below(3); count > 0; --count)
        bytes.erase(m_random.below(bytes.size()), 1);
}

std::string Line::garbage()
{
    std::string bytes(1 + m_random.below(40), '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(m_random.below(256));
    return bytes;
}

std::string_view Line::ready(Moment now)
{
    if (m_segments.empty())
        return {};
    Segment& front = m_segments.front();
    if (front.pause.count() > 0) {
        if (!m_stalledUntil)
            m_stalledUntil = now + front.pause;
        if (now < *m_stalledUntil)
            return {};
        m_stalledUntil.reset();
        front.pause = Duration(0);
    }
    return std::string_view(m_bytes).substr(m_begin, front.length);
}

void Line::written(std::size_t bytes)
{
    if (m_segments.empty())
        return;
    Segment& front = m_segments.front();
    bytes = std::min(bytes, front.length);
    front.length -= bytes;
    m_begin += bytes;
    if (front.length == 0)
        m_segments.pop_front();
    if (m_begin == m_bytes.size()) {
        m_bytes.clear();
        m_begin = 0;
    } else if (m_begin > 64 * 1024) {
        m_bytes.erase(0, m_begin);
        m_begin = 0;
    }
}

} // namespace sim
