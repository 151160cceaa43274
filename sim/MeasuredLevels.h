// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Evaluation.h"
#include "sim/protocol/FrameSink.h"

namespace sim {

/// Passes frames on and notes what was measured: the level told last, and the smallest and the largest one of the sweep
/// that runs or ran last, in the numbers that the host is given.
class MeasuredLevels : public FrameSink
{
public:
    /// The sink outlives it.
    explicit MeasuredLevels(FrameSink& sink)
        : m_sink(sink)
    {}

    void send(const Frame& frame) override;
    void sendRaw(std::string_view bytes) override { m_sink.sendRaw(bytes); }

    const ferrolex::Measured& measured() const { return m_measured; }
    void forget() { m_measured = {}; }

private:
    void note(double frequency, double level);

    FrameSink& m_sink;
    ferrolex::Measured m_measured;
};

} // namespace sim
