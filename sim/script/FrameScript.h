// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/script/ScriptRunner.h"

#include <QString>

#include <string>
#include <variant>
#include <vector>

namespace sim {

/// A script runner for demonstrations and tests: whatever script was loaded, it carries out the steps of a text, one a
/// line:
///
///     U 1 Transducer 17      a text frame: code, F, text (codes T U V Z b f g i l o p r x)
///     m 0 1 0 2 0 3          a number frame: code, F, then up to N1 N2 N3 N4 I (all other codes)
///     > points 200           a command as the host would write it
///     sweep impedance        a sweep of the settings in force, up to its end; or "sweep amplitude"
///     wait 250               a pause in milliseconds
///
/// Lines that begin with "#" and empty lines are passed over. After a frame whose action is answered (U b f g i j n o p
/// x) it waits for the host's acknowledgement. A sweep that is stopped ends the script.
class FrameScript : public ScriptRunner
{
public:
    /// The sentence of a failure names the line.
    static ValueOr<FrameScript> fromText(const QByteArray& text);

    Outcome start(const QByteArray& script, ScriptHost& host, Moment now) override;
    void acknowledged(Moment now) override;
    void runEnded(bool completed, Moment now) override;
    void stop() override;
    void advance(Moment now) override;
    std::optional<Moment> nextDue() const override;

private:
    struct SendFrame
    {
        Frame frame;
        bool answered;
    };
    struct Execute
    {
        std::string command;
    };
    struct Sweep
    {
        TestKind kind;
    };
    struct Pause
    {
        Duration duration;
    };
    using Step = std::variant<SendFrame, Execute, Sweep, Pause>;
    enum class Awaiting
    {
        Nothing,
        Acknowledgement,
        RunEnd,
        Time
    };

    static std::optional<Step> stepOf(const QByteArray& line);
    void carryOn(Moment now);

    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    ScriptHost* m_host = nullptr; ///< while it runs
    Awaiting m_awaiting = Awaiting::Nothing;
    Moment m_due{0};
};

} // namespace sim
