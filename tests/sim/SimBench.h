// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Instrument.h"
#include "sim/parts/PartFile.h"
#include "tests/sim/Recorder.h"

#include <QStringList>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// An instrument on a bench where time passes only when told to.
class SimBench
{
public:
    explicit SimBench(const std::function<void(sim::Instrument::Setup&)>& adjust = {})
    {
        sim::Instrument::Setup setup;
        setup.serial = "T46-0042";
        setup.specimen = shipped("langevin40k");
        setup.pace = {sim::Pace::Kind::Fast, 0};
        setup.idleLevelsPerSecond = 0;
        setup.keep = [this](const sim::KeptMemory& memory) {
            kept = memory;
            ++timesKept;
            return Outcome::success();
        };
        setup.tell = [this](const QString& sentence) { told.append(sentence); };
        if (adjust)
            adjust(setup);
        instrument = std::make_unique<sim::Instrument>(std::move(setup), recorder);
        instrument->hostArrived(now);
    }

    static std::shared_ptr<const sim::PartModel> shipped(const char* name)
    {
        ValueOr<sim::PartModel> part = sim::partfile::load(QLatin1String(name));
        EXPECT_TRUE(part.ok()) << part.sentence().toStdString();
        return std::make_shared<sim::PartModel>(part.value());
    }

    void write(std::string_view bytes) { instrument->receive(bytes, now); }
    /// Writes a command and returns the frames it was answered with at once.
    std::vector<ReadFrame> ask(const std::string& command)
    {
        recorder.clear();
        write(command + "\r");
        return recorder.frames;
    }
    /// Lets the time pass in steps to whatever is due next.
    void pass(sim::Duration duration, int frameBudget = 64)
    {
        const sim::Moment end = now + duration;
        for (;;) {
            instrument->advance(now, frameBudget);
            const std::optional<sim::Moment> due = instrument->nextDue();
            if (!due || *due > end)
                break;
            now = std::max(now, *due);
        }
        now = end;
    }
    /// Until nothing runs any more.
    void finishRun()
    {
        for (int rounds = 0; rounds < 100000 && instrument->state().running; ++rounds) {
            if (const std::optional<sim::Moment> due = instrument->nextDue())
                now = std::max(now, *due);
            instrument->advance(now, 64);
        }
        ASSERT_FALSE(instrument->state().running) << "the run does not end";
    }

    sim::Moment now{std::chrono::hours(1)};
    Recorder recorder;
    std::optional<sim::KeptMemory> kept;
    int timesKept = 0;
    QStringList told; ///< to the person at the simulator
    std::unique_ptr<sim::Instrument> instrument;
};
