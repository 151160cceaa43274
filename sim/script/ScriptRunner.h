// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Evaluation.h"
#include "sim/protocol/Frames.h"
#include "sim/protocol/InstrumentState.h"
#include "sim/protocol/Moment.h"
#include "values/Outcome.h"

#include <QByteArray>

#include <optional>
#include <string_view>

namespace sim {

/// What a running script may do with the instrument it runs on.
class ScriptHost
{
public:
    virtual ~ScriptHost() = default;
    virtual const InstrumentState& state() const = 0;
    /// Since the script began.
    virtual const ferrolex::Measured& measured() const = 0;
    /// Sends a frame to the host; a script action that is answered is followed by acknowledged() or stop() of the
    /// runner.
    virtual void send(const Frame& frame) = 0;
    /// Runs a command as if the host had written it, without its carriage return; "y" stops a sweep but not the script.
    /// False when there is no such command. A sweep that this begins is followed by runEnded() of the runner.
    virtual bool execute(std::string_view command) = 0;
    /// The script has come to its end; the failure's sentence is told to the user. The runner is not called again.
    virtual void finished(const Outcome& outcome) = 0;
};

/// Runs scripts on the instrument. To add one: derive from it and hand it to Instrument::Setup. It never blocks;
/// everything it is waiting for comes in through one of the calls below. None of them is made from within another.
class ScriptRunner
{
public:
    virtual ~ScriptRunner() = default;
    /// The outcome tells whether the script could begin; after a failure nothing follows.
    virtual Outcome start(const QByteArray& script, ScriptHost& host, Moment now) = 0;
    /// The host has carried out the action.
    virtual void acknowledged(Moment now) = 0;
    /// A sweep, calibration or diagnosis is over; completed is false when it was stopped.
    virtual void runEnded(bool completed, Moment now) = 0;
    /// The user has stopped the script. The runner is not called again until the next start().
    virtual void stop() = 0;
    /// Called when nextDue() has come.
    virtual void advance(Moment) {}
    virtual std::optional<Moment> nextDue() const { return {}; }
};

} // namespace sim
