// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusPanels.h"

#include "values/Conversions.h"

#include <array>
#include <cassert>
#include <charconv>
#include <cstring>

namespace {

/// A text of a few numbers and words on the stack.
class PanelText
{
public:
    PanelText& operator<<(std::string_view text)
    {
        assert(m_length + text.size() <= m_buffer.size());
        std::memcpy(m_buffer.data() + m_length, text.data(), text.size());
        m_length += text.size();
        return *this;
    }
    PanelText& operator<<(double value)
    {
        assert(m_length + values::kDecimalTextSize <= m_buffer.size());
        m_length += values::writeDecimal(value, m_buffer.data() + m_length);
        return *this;
    }
    PanelText& operator<<(int value)
    {
        const auto end = std::to_chars(m_buffer.data() + m_length, m_buffer.data() + m_buffer.size(), value);
        m_length = static_cast<std::size_t>(end.ptr - m_buffer.data());
        return *this;
    }
    operator std::string_view() const { return {m_buffer.data(), m_length}; }

private:
    std::array<char, 3 * values::kDecimalTextSize> m_buffer;
    std::size_t m_length = 0;
};

} // namespace

void StatusPanels::showFrequency(Panel panel, double hertz)
{
    show(panel, PanelText() << hertz << " Hz");
}

void StatusPanels::showPoints(double points)
{
    show(Points, PanelText() << points << " pts");
}

void StatusPanels::showProgress(int point, int points)
{
    show(Points, PanelText() << point << "/" << points << " pts");
}

void StatusPanels::ShowAttenuation(int code, double dblAttenuationStep)
{
    show(Attenuation, PanelText() << "-" << code * dblAttenuationStep << " dB");
}

void StatusPanels::ShowIdleFrequency(double value)
{
    if (value == 0)
        show(IdleFrequency, "Off");
    else if (value == -1)
        show(IdleFrequency, "Start");
    else
        showFrequency(IdleFrequency, value);
}

void StatusPanels::ShowSweepMode(int mode)
{
    static constexpr std::string_view kModes[] = {"A to B", "B to A", "Alternate"};
    if (mode >= 0 && mode <= 2)
        show(SweepMode, kModes[mode]);
}

void StatusPanels::ShowTestPeriod(double ms)
{
    show(Period, PanelText() << ms << " mS");
}
