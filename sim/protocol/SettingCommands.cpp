// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/SettingCommands.h"

#include "sim/protocol/CommandArguments.h"
#include "sim/protocol/CommandTable.h"
#include "sim/protocol/StatusFrames.h"

#include <algorithm>

namespace sim::settings {

namespace {

using Frames = std::vector<Frame>;
using Text = std::string_view;

Frames startFrequency(Text text, InstrumentState& state)
{
    setFrequency(&SweepSettings::startFrequency, text, state);
    return {status::frequencies(state)};
}

Frames endFrequency(Text text, InstrumentState& state)
{
    setFrequency(&SweepSettings::endFrequency, text, state);
    return {status::frequencies(state)};
}

Frames idleFrequency(Text text, InstrumentState& state)
{
    const std::optional<double> number = argument::number(text);
    if (number && (*number == 0 || *number == -1))
        state.settings.idleFrequency = *number;
    else
        setFrequency(&SweepSettings::idleFrequency, text, state);
    state.idleOutput = state.settings.idleFrequency != 0;
    return {status::sweepMode(state)};
}

Frames spotFrequency(Text text, InstrumentState& state)
{
    setFrequency(&SweepSettings::spotFrequency, text, state);
    return {status::slope(state)};
}

Frames points(Text text, InstrumentState& state)
{
    SweepSettings& settings = state.settings;
    settings.points = argument::wholeNumber(text, 1, kMostPoints).value_or(settings.points);
    if (!state.running)
        state.pointsInTest = settings.points;
    return {status::points(state)};
}

Frames attenuation(Text text, InstrumentState& state)
{
    int& code = state.settings.attenuation;
    code = argument::wholeNumber(text, 0, state.facts->attenuationSteps).value_or(code);
    return {status::attenuation(state)};
}

Frames repeat(Text text, InstrumentState& state)
{
    state.settings.repeat = argument::flag(text).value_or(state.settings.repeat);
    return {status::points(state)};
}

Frames sweepMode(Text text, InstrumentState& state)
{
    state.settings.sweepMode = argument::wholeNumber(text, 0, 2).value_or(state.settings.sweepMode);
    return {status::sweepMode(state)};
}

Frames period(Text text, InstrumentState& state)
{
    state.settings.period = argument::wholeNumber(text, 0, kLongestPeriod).value_or(state.settings.period);
    return {status::sampling(state)};
}

Frames phase(Text text, InstrumentState& state)
{
    state.settings.phase = argument::flag(text).value_or(state.settings.phase);
    return {status::phase(state)};
}

Frames samples(Text text, InstrumentState& state)
{
    state.settings.samples = argument::wholeNumber(text, 1, kMostSamples).value_or(state.settings.samples);
    return {status::sampling(state)};
}

Frames linear(Text text, InstrumentState& state)
{
    state.settings.linear = argument::flag(text).value_or(state.settings.linear);
    return {status::sampling(state)};
}

Frames choosePin(Text text, InstrumentState& state)
{
    if (const std::optional<argument::Pin> chosen = argument::pin(text)) {
        state.settings.pin = chosen->pin;
        state.pen = chosen->pen;
    }
    return {status::options(state)};
}

Frames loopback(Text text, InstrumentState& state)
{
    state.loopback = argument::flag(text).value_or(state.loopback);
    return {status::options(state)};
}

Frames factorySettings(Text, InstrumentState& state)
{
    state.settings = SweepSettings();
    state.idleOutput = state.settings.idleFrequency != 0;
    if (!state.running)
        state.pointsInTest = state.settings.points;
    return status::settings(state);
}

constexpr StateCommand<Frames> kCommands[] = {
    {"startfreq", startFrequency},
    {"endfreq", endFrequency},
    {"idlefreq", idleFrequency},
    {"spotfreq", spotFrequency},
    {"points", points},
    {"atten", attenuation},
    {"repeat", repeat},
    {"sweepmode", sweepMode},
    {"period", period},
    {"phase", phase},
    {"samples", samples},
    {"linear", linear},
    {"setpin", choosePin},
    {"loopback", loopback},
    {"default", factorySettings},
};

} // namespace

QStringList words()
{
    return wordsOf(kCommands);
}

std::optional<std::vector<Frame>> apply(std::string_view word, std::string_view text, InstrumentState& state)
{
    return applyFrom(kCommands, word, text, state);
}

void setFrequency(double SweepSettings::*frequency, std::string_view text, InstrumentState& state)
{
    if (const std::optional<double> number = argument::number(text))
        state.settings.*frequency = std::clamp(*number, state.facts->minFrequency, state.facts->maxFrequency);
}

SweepSettings bounded(SweepSettings settings, const ModelFacts& facts)
{
    for (double* frequency : {&settings.startFrequency, &settings.endFrequency, &settings.spotFrequency})
        *frequency = std::clamp(*frequency, facts.minFrequency, facts.maxFrequency);
    if (settings.idleFrequency != 0 && settings.idleFrequency != -1)
        settings.idleFrequency = std::clamp(settings.idleFrequency, facts.minFrequency, facts.maxFrequency);
    settings.attenuation = std::clamp(settings.attenuation, 0, facts.attenuationSteps);
    return settings;
}

} // namespace sim::settings
