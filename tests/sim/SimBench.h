// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Instrument.h"
#include "sim/bench/PartModel.h"
#include "values/Conversions.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// Frames read back the way a host reads them.
struct ReadFrame
{
    char code = 0;
    char field = 0;
    double n1 = 0, n2 = 0, n3 = 0, n4 = 0;
    int i = 0;
    std::string text;
};

inline ReadFrame readFrame(std::string_view bytes)
{
    ReadFrame read;
    EXPECT_EQ(bytes.size(), 67u);
    if (bytes.size() != 67)
        return read;
    EXPECT_EQ(bytes[1], ':');
    EXPECT_EQ(bytes[65], '\r');
    read.code = bytes[0];
    read.field = bytes[2];
    read.n1 = values::tolerantNumber(bytes.substr(4, 13));
    read.n2 = values::tolerantNumber(bytes.substr(18, 13));
    read.n3 = values::tolerantNumber(bytes.substr(32, 13));
    read.n4 = values::tolerantNumber(bytes.substr(46, 13));
    read.i = values::strictInt32(bytes.substr(60, 5)).value_or(-1);
    const std::string_view text = bytes.substr(4, 61);
    const std::size_t last = text.find_last_not_of(' ');
    read.text = last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
    return read;
}

inline ReadFrame readFrame(const sim::Frame& frame)
{
    return readFrame(std::string_view(frame.data(), frame.size()));
}

/// Keeps what a device sends.
class Recorder : public sim::FrameSink
{
public:
    void send(const sim::Frame& frame) override { sendRaw({frame.data(), frame.size()}); }
    void sendRaw(std::string_view bytes) override
    {
        raw.emplace_back(bytes);
        if (bytes.size() == 67)
            frames.push_back(readFrame(bytes));
    }

    /// The codes in order, for example "DFFFEY".
    std::string codes() const
    {
        std::string text;
        for (const ReadFrame& frame : frames)
            text += frame.code;
        return text;
    }
    std::vector<ReadFrame> of(char code) const
    {
        std::vector<ReadFrame> found;
        for (const ReadFrame& frame : frames) {
            if (frame.code == code)
                found.push_back(frame);
        }
        return found;
    }
    void clear()
    {
        frames.clear();
        raw.clear();
    }

    std::vector<ReadFrame> frames;
    std::vector<std::string> raw;
};

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
        if (adjust)
            adjust(setup);
        instrument = std::make_unique<sim::Instrument>(std::move(setup), recorder);
        instrument->hostArrived(now);
    }

    static std::shared_ptr<const sim::PartModel> shipped(const char* name)
    {
        ValueOr<sim::PartModel> part = sim::PartModel::load(QLatin1String(name));
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
    std::unique_ptr<sim::Instrument> instrument;
};
