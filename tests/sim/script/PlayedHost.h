// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/script/ScriptRunner.h"
#include "tests/sim/ReadFrame.h"
#include "values/Conversions.h"

#include <functional>
#include <string>
#include <vector>

/// An instrument reduced to what a script sees of it, with a host behind it that answers. What the script causes is
/// logged one thing a line: "> command", a text frame as "U 1 Transducer 17", a number frame as "m 0 1 0 2 0 3".
class PlayedHost : public sim::ScriptHost
{
public:
    const sim::InstrumentState& state() const override { return m_state; }
    const ferrolex::Measured& measured() const override { return m_measured; }

    void send(const sim::Frame& frame) override
    {
        const ReadFrame read = readFrame(frame);
        std::string line{read.code, ' ', read.field};
        if (std::string_view("TUVZbfgiloprx").find(read.code) != std::string_view::npos) {
            if (!read.text.empty())
                line += ' ' + read.text;
        } else {
            for (const double number : {read.n1, read.n2, read.n3, read.n4, static_cast<double>(read.i)})
                line += ' ' + values::decimalText(number).toStdString();
        }
        log.push_back(line);
        waitsForAnswer = std::string_view("Ubgjioxnfp").find(read.code) != std::string_view::npos;
    }

    bool execute(std::string_view command) override
    {
        log.push_back("> " + std::string(command));
        if (command == "imptest" || command == "amptest") {
            m_state.running = true;
            if (sweep)
                sweep(m_measured);
        } else if (command == "y") {
            m_state.running = false;
        } else if (command.substr(0, 7) == "impspot" || command.substr(0, 7) == "ampspot") {
            m_measured.lastLevel = 50;
        }
        return true;
    }

    void finished(const Outcome& outcome) override
    {
        hasFinished = true;
        failure = outcome ? std::string() : outcome.sentence().toStdString();
    }

    /// Runs the script to its end, answering every question and letting every sweep end; at most that many events.
    /// False when it did not come to its end.
    bool run(sim::ScriptRunner& runner, const QByteArray& script, int events = 100000)
    {
        sim::Moment now{0};
        if (const Outcome started = runner.start(script, *this, now); !started) {
            hasFinished = true;
            failure = started.sentence().toStdString();
        }
        while (!hasFinished && events-- > 0) {
            if (waitsForAnswer) {
                waitsForAnswer = false;
                if (stopsAt > 0 && --stopsAt == 0) {
                    runner.stop();
                    return false;
                }
                runner.acknowledged(now);
            } else if (const auto due = runner.nextDue()) {
                now = std::max(now, *due);
                runner.advance(now);
            } else if (m_state.running) {
                m_state.running = false;
                runner.runEnded(true, now);
            } else {
                return false;
            }
        }
        took = now;
        return hasFinished;
    }

    /// What a sweep leaves behind.
    std::function<void(ferrolex::Measured&)> sweep = [](ferrolex::Measured& measured) {
        measured = {50.0, 20.0, 3000.0, 39000.0, 41000.0};
    };
    sim::InstrumentState m_state;
    ferrolex::Measured m_measured;
    std::vector<std::string> log;
    bool waitsForAnswer = false;
    bool hasFinished = false;
    int stopsAt = 0; ///< the answer that is a stop, from 1; 0 for none
    std::string failure;
    sim::Moment took{0};

    std::string text() const
    {
        std::string lines;
        for (const std::string& line : log)
            lines += line + '\n';
        return lines;
    }
};
