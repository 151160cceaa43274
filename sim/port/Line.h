// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Random.h"
#include "sim/port/FaultPlan.h"
#include "sim/protocol/FrameSink.h"
#include "sim/protocol/Moment.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// The line between the instrument and its port: takes whole frames and hands out bytes, with the faults of the plan.
/// The same seed and the same frames give the same faults. Apart from NonNumeric, no fault turns a point into another
/// one that looks well: what still has the form of a point frame is one that was sent.
class Line : public FrameSink
{
public:
    Line(const FaultPlan& plan, std::uint64_t seed);

    void send(const Frame& frame) override;
    /// Bytes that are no frame of the right length pass without faults.
    void sendRaw(std::string_view bytes) override;

    /// What may be written now; empty while the line stalls or nothing waits. Stays valid until the next call that
    /// changes the line.
    std::string_view ready(Moment now);
    /// So many bytes of ready() have been written.
    void written(std::size_t bytes);
    std::size_t pending() const { return m_bytes.size() - m_begin; }
    /// When a stall ends; nothing while the line does not stall.
    std::optional<Moment> stalledUntil() const { return m_stalledUntil; }
    /// True once after the plan has pulled the plug; the line is then empty and stays so until plugIn().
    bool takeUnplugged();
    void plugIn();
    /// Drops what was not written.
    void clear();

    std::uint64_t framesSent() const { return m_framesSent; }

private:
    struct Segment
    {
        std::size_t length = 0;
        Duration pause{0}; ///< before the first byte
    };

    void append(std::string_view bytes, Duration pause);
    void spoilNumber(std::string& bytes);
    void spoilLength(std::string& bytes);
    void loseBytes(std::string& bytes);
    std::string garbage();

    FaultPlan m_plan;
    Random m_random;
    std::string m_bytes;
    std::size_t m_begin = 0;
    std::deque<Segment> m_segments;
    std::optional<Moment> m_stalledUntil;
    std::uint64_t m_framesSent = 0;
    std::uint64_t m_pointsToUnplug = 0;
    bool m_unplugged = false;
    bool m_unpluggedNews = false;
};

} // namespace sim
