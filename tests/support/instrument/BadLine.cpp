// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/instrument/BadLine.h"

#include <cstddef>

namespace played {
namespace {

using namespace std::chrono_literals;

constexpr int kFlood = 200;
constexpr int kFirstOfNumbers = 4, kLastOfNumbers = 58; // of N1 to N4, from 0

} // namespace

BadLine::BadLine(const LineFaults& faults)
    : m_faults(faults)
    , m_engine(faults.seed)
{}

std::string BadLine::noise()
{
    std::string bytes(static_cast<std::size_t>(number(1, 90)), ' ');
    for (char& byte : bytes)
        byte = static_cast<char>(number(0, 255));
    return bytes;
}

void BadLine::spoil(std::string& frame)
{
    // One of them at most: what is too long by as much as it is too short passes for a frame, and nobody could tell.
    if (strikes(m_faults.nonNumeric))
        frame[static_cast<std::size_t>(number(kFirstOfNumbers, kLastOfNumbers))] = 'z';
    else if (strikes(m_faults.lostBytes))
        frame.erase(static_cast<std::size_t>(number(0, static_cast<int>(frame.size()) - 1)),
                    static_cast<std::size_t>(number(1, 3)));
    else if (strikes(m_faults.wrongLength))
        frame.insert(static_cast<std::size_t>(number(2, 64)), static_cast<std::size_t>(number(1, 6)), ' ');
}

std::vector<BadLine::Piece> BadLine::carry(const std::string& frame)
{
    std::vector<Piece> pieces;
    const bool noisy = strikes(m_faults.garbage);
    if (noisy)
        pieces.push_back({noise()});
    if (strikes(m_faults.flood)) {
        for (int i = 0; i < kFlood; ++i)
            pieces.push_back({std::string(1, "*#&@^!W"[i % 7]) + ":0" + std::string(62, '0') + "\r\n"});
    }
    if (strikes(m_faults.lostFrames))
        return pieces;
    std::string bytes = frame;
    if (!noisy)
        spoil(bytes);
    if (strikes(m_faults.unplug)) {
        bytes.resize(bytes.size() / 2);
        pieces.push_back({bytes, 0ms, true});
        return pieces;
    }
    const auto silence = strikes(m_faults.stall) ? 100ms : 0ms;
    if (strikes(m_faults.split) && bytes.size() > 1) {
        const auto cut = static_cast<std::size_t>(number(1, static_cast<int>(bytes.size()) - 1));
        pieces.push_back({bytes.substr(0, cut), silence});
        pieces.push_back({bytes.substr(cut), std::chrono::milliseconds(number(1, 5))});
    } else {
        pieces.push_back({bytes, silence});
    }
    return pieces;
}

} // namespace played
