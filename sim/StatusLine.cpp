// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/StatusLine.h"

#include <algorithm>
#include <sys/ioctl.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr Duration kInterval = std::chrono::milliseconds(250);

int terminalWidth(std::FILE* stream)
{
    winsize size{};
    if (::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

} // namespace

StatusLine::StatusLine(std::FILE* stream, bool enabled)
    : m_stream(stream)
    , m_enabled(enabled)
    , m_terminal(::isatty(::fileno(stream)) == 1)
{}

StatusLine::~StatusLine()
{
    if (m_lineOpen)
        std::fputs("\r\033[K", m_stream);
    std::fflush(m_stream);
}

void StatusLine::show(const QString& steady, const QString& moving, Moment now)
{
    if (!wanted(now))
        return;
    m_next = now + kInterval;
    if (m_terminal) {
        const QString line = (moving.isEmpty() ? steady : steady + QLatin1String("; ") + moving)
                                 .left(std::max(1, terminalWidth(m_stream) - 1));
        std::fprintf(m_stream, "\r%s\033[K", line.toLocal8Bit().constData());
        m_lineOpen = true;
    } else if (steady != m_lastSteady) {
        std::fprintf(m_stream, "%s\n", steady.toLocal8Bit().constData());
        m_lastSteady = steady;
    }
    std::fflush(m_stream);
}

void StatusLine::say(const QString& sentence)
{
    std::fprintf(m_stream, "%smarrowick-sim: %s\n", m_lineOpen ? "\r\033[K" : "", sentence.toLocal8Bit().constData());
    std::fflush(m_stream);
    m_lineOpen = false;
    m_next = Moment(0);
}

} // namespace sim
