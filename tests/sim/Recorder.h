// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/FrameSink.h"
#include "tests/sim/ReadFrame.h"

#include <string>
#include <vector>

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

    std::string codes() const { return codesOf(frames); }
    std::vector<ReadFrame> of(char code) const { return framesOf(frames, code); }
    void clear()
    {
        frames.clear();
        raw.clear();
    }

    std::vector<ReadFrame> frames;
    std::vector<std::string> raw;
};
