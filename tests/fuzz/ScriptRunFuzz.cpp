// SPDX-License-Identifier: GPL-3.0-or-later
// The interpreter under arbitrary scripts: one that the checker refuses does not begin; any other runs, with a host
// that answers, sweeps that end and time that passes, without ever waiting for nothing; frames are whole.
#include "controls/ferrolex/Ferrolex.h"
#include "sim/script/Interpreter.h"

#include <QByteArray>

#include <cstdlib>

namespace {

constexpr int kMostEvents = 300;

void check(bool held)
{
    if (!held)
        std::abort();
}

class Host : public sim::ScriptHost
{
public:
    const sim::InstrumentState& state() const override { return instrument; }
    const ferrolex::Measured& measured() const override { return levels; }
    void send(const sim::Frame& frame) override
    {
        check(!hasFinished && frame[1] == ':' && frame[65] == '\r' && frame[66] == '\n');
        for (std::size_t i = 0; i < 65; ++i)
            check(frame[i] >= ' ' && frame[i] <= '~');
    }
    bool execute(std::string_view command) override
    {
        check(!hasFinished && !command.empty() && command.find('\r') == std::string_view::npos);
        if (command == "imptest" || command == "amptest") {
            instrument.running = true;
            levels = {50.0, 20.0, 3000.0, 39000.0, 41000.0};
        } else if (command == "y") {
            instrument.running = false;
        }
        return true;
    }
    void finished(const Outcome& outcome) override
    {
        check(!hasFinished && (outcome.ok() || !outcome.sentence().isEmpty()));
        hasFinished = true;
    }

    sim::InstrumentState instrument;
    ferrolex::Measured levels;
    bool hasFinished = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray script(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    Ferrolex ferrolex;
    const std::int16_t code = ferrolex.CheckBytes(script, 1.28, QStringLiteral("T46"));
    sim::Interpreter interpreter;
    Host host;
    sim::Moment now{0};
    const bool began = interpreter.start(script, host, now).ok();
    check(began == (code == Ferrolex::Clean || code == Ferrolex::Warnings));
    if (!began)
        return 0;
    for (int events = 0; events < kMostEvents && !host.hasFinished; ++events) {
        if (const auto due = interpreter.nextDue()) {
            check(*due >= now);
            now = *due;
            interpreter.advance(now);
        } else if (host.instrument.running && events % 2 == 0) {
            host.instrument.running = false;
            interpreter.runEnded(true, now);
        } else {
            interpreter.acknowledged(now);
        }
    }
    if (!host.hasFinished)
        interpreter.stop();
    check(!interpreter.nextDue());
    return 0;
}
