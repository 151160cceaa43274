// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/CommandParser.h"

#include <algorithm>

namespace sim {

namespace {

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < ' ' && c != '\r';
}

} // namespace

void CommandParser::feed(std::string_view bytes, Moment now)
{
    m_buffer.append(bytes);
    if (!bytes.empty())
        m_lastFeed = now;
}

void CommandParser::dropFront(std::size_t bytes)
{
    m_begin += bytes;
    if (m_begin == m_buffer.size()) {
        m_buffer.clear();
        m_begin = 0;
    } else if (m_begin > 4096) {
        m_buffer.erase(0, m_begin);
        m_begin = 0;
    }
}

std::optional<CommandParser::Input> CommandParser::next(Moment now)
{
    for (;;) {
        std::string_view text = waiting();
        if (text.empty())
            return {};
        if (m_blockLeft > 0) {
            const std::size_t count = std::min(m_blockLeft, text.size());
            Input block{Kind::Block, {}, std::string(text.substr(0, count))};
            m_blockLeft -= count;
            dropFront(count);
            return block;
        }
        const std::size_t end = text.find('\r');
        if (m_skippingLine) {
            m_skippingLine = end == std::string_view::npos;
            dropFront(m_skippingLine ? text.size() : end + 1);
            continue;
        }
        if (isControl(text.front()) || text.front() == '\r') {
            dropFront(1);
            continue;
        }
        if (text.front() == ' ') {
            const std::string_view stop = " y\r";
            if (text.substr(0, stop.size()) == stop) {
                dropFront(stop.size());
                return Input{Kind::StopScript, {}, {}};
            }
            const bool mayBecomeStop = text == stop.substr(0, text.size());
            if (mayBecomeStop && (text.size() > 1 || now - m_lastFeed < kBlankPause))
                return {};
            dropFront(1);
            return Input{Kind::Acknowledge, {}, {}};
        }
        if (end == std::string_view::npos) {
            if (text.size() <= kLongestLine)
                return {};
            m_skippingLine = true;
            continue;
        }
        std::string line(text.substr(0, end));
        dropFront(end + 1);
        if (line.size() > kLongestLine)
            continue;
        line.erase(std::remove_if(line.begin(), line.end(), isControl), line.end());
        const std::size_t blank = line.find(' ');
        if (blank == std::string::npos)
            return Input{Kind::Command, line, {}};
        return Input{Kind::Command, line.substr(0, blank), std::string(trimmed(std::string_view(line).substr(blank)))};
    }
}

std::optional<Moment> CommandParser::nextDue() const
{
    if (m_blockLeft == 0 && !m_skippingLine && waiting() == " ")
        return m_lastFeed + kBlankPause;
    return {};
}

void CommandParser::reset()
{
    m_buffer.clear();
    m_begin = 0;
    m_blockLeft = 0;
    m_skippingLine = false;
}

} // namespace sim
