// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusPanels.h"

#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "link/SettingsRules.h"
#include "program/ProgramState.h"
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

void StatusPanels::follow(InstrumentEvents& events, const InstrumentMirror& mirror, const ProgramState& state)
{
    const auto on = [&events](auto signal, auto handler) { QObject::connect(&events, signal, &events, handler); };
    on(&InstrumentEvents::connected, [this] { show(State, "Connected"); });
    on(&InstrumentEvents::lost, [this] { clear(); });
    on(&InstrumentEvents::phaseReported, [this](bool phase) { show(Phase, phase ? "On" : "Off"); });
    on(&InstrumentEvents::periodReported, [this](double milliseconds) { ShowTestPeriod(milliseconds); });
    on(&InstrumentEvents::sweepModeReported, [this](int mode) { ShowSweepMode(mode); });
    on(&InstrumentEvents::changed, [this, &mirror, &state](MirrorPart part) { showChanged(part, mirror, state); });
}

void StatusPanels::showChanged(MirrorPart part, const InstrumentMirror& mirror, const ProgramState& state)
{
    switch (part) {
    case MirrorPart::Attenuation:
        ShowAttenuation(mirror.iAttenuationCode, mirror.dblAttenuationStep);
        break;
    case MirrorPart::IdleFrequency:
        ShowIdleFrequency(mirror.dblIdleFrequency);
        break;
    case MirrorPart::SweepRangeConfirmed:
        showFrequency(StartFrequency, mirror.dblStartFrequency);
        showFrequency(EndFrequency, mirror.dblEndFrequency);
        break;
    case MirrorPart::Points:
        // While a test runs the panel belongs to its progress.
        if (!state.gbfPlotting)
            showPoints(mirror.iPointsInTest);
        break;
    default:
        break;
    }
}

void StatusPanels::clear()
{
    show(State, "Disconnected");
    show(Pen, "1");
    for (const Panel panel :
         {StartFrequency, EndFrequency, Points, Phase, Period, IdleFrequency, SweepMode, Attenuation})
        show(panel, {});
}

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
    show(Attenuation, settingsrules::attenuationText(code, dblAttenuationStep).toStdString());
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
