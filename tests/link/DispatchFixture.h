// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LinkFixture.h"

#include <utility>
#include <vector>

/// A connected instrument and what its events told.
class DispatchFixture : public LinkFixture
{
protected:
    void SetUp() override
    {
        connectDevice();
        window.calls.clear();
        window.panels.clear();
        const InstrumentEvents* const events = &module.events();
        QObject::connect(events, &InstrumentEvents::changed, events, [this](MirrorPart part) { told.push_back(part); });
        QObject::connect(events, &InstrumentEvents::levelMeasured, events,
                         [this](double level, double phase, bool measured) {
                             levels.push_back({level, phase, measured});
                         });
        QObject::connect(events, &InstrumentEvents::stateComplete, events, [this] { ++completed; });
    }
    /// The instrument is opened again: its next complete state counts as its first.
    void reconnect()
    {
        device.Close();
        connectDevice();
    }
    /// The parts of the mirror that were told as changed since the last call.
    std::vector<MirrorPart> changed() { return std::exchange(told, {}); }

    struct Level
    {
        double level = 0, phase = 0;
        bool measured = false;
        bool operator==(const Level&) const = default;
    };
    std::vector<MirrorPart> told;
    std::vector<Level> levels;
    int completed = 0;
};

using Parts = std::vector<MirrorPart>;
