// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Frames.h"

namespace sim {

/// Where frames of a device go.
class FrameSink
{
public:
    virtual ~FrameSink() = default;
    virtual void send(const Frame& frame) = 0;
    /// Bytes as they stand, which need not be a frame.
    virtual void sendRaw(std::string_view bytes) = 0;
};

} // namespace sim
