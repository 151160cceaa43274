// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <random>
#include <string>
#include <vector>

namespace played {

/// How often a line does what to the frames that go over it: once in so many frames on average, 0 never.
struct LineFaults
{
    unsigned seed = 0;
    int garbage = 0;     ///< bytes without meaning ahead of a frame
    int lostBytes = 0;   ///< a frame without one to three of its bytes
    int lostFrames = 0;  ///< nothing of a frame
    int split = 0;       ///< a frame in two pieces, milliseconds apart
    int stall = 0;       ///< nothing for a tenth of a second
    int flood = 0;       ///< 200 frames that mean nothing ahead of a frame
    int wrongLength = 0; ///< a frame with columns too many
    int nonNumeric = 0;  ///< a letter in a number
    int unplug = 0;      ///< the cable is pulled in the middle of a frame
};

/// What becomes of frames on a bad line. The same faults and frames give the same bytes.
class BadLine
{
public:
    struct Piece
    {
        std::string bytes;
        std::chrono::milliseconds before{0}; ///< of silence ahead of it
        bool last = false;                   ///< the cable is pulled behind it
    };

    explicit BadLine(const LineFaults& faults);
    std::vector<Piece> carry(const std::string& frame);

private:
    int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    bool strikes(int every) { return every > 0 && number(1, every) == 1; }
    std::string noise();
    void spoil(std::string& frame);

    LineFaults m_faults;
    std::mt19937 m_engine;
};

} // namespace played
