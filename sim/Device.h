// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Moment.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>

namespace sim {

/// What stands behind the port: an instrument, or the recording of one. It knows no clock, no port and no thread: bytes
/// and the time are handed in, frames go out through the FrameSink it was made with.
class Device
{
public:
    virtual ~Device() = default;

    /// A host has opened the port, or has closed it. What was half received is forgotten at both.
    virtual void hostArrived(Moment now) = 0;
    virtual void hostLeft() = 0;
    virtual void receive(std::string_view bytes, Moment now) = 0;
    /// Does what is due, but sends no more than about that many frames.
    virtual void advance(Moment now, int frameBudget) = 0;
    /// Why it is about to leave the port by itself; each is told once, and ends with powered().
    enum class Leave
    {
        No,
        Restart,   ///< when what it has sent is out
        CableLost, ///< at once, but it goes on running
        PowerLost  ///< at once
    };
    virtual Leave takeLeave() { return Leave::No; }
    /// It is back at a port.
    virtual void powered(Moment) {}
    /// When advance() has something to do again; nothing when only the host can change that.
    virtual std::optional<Moment> nextDue() const = 0;

    virtual QByteArray serial() const = 0;
    /// One line without a full stop that tells a person what goes on, for example "impedance sweep, point 512 of 1024".
    virtual QString activity() const = 0;
};

} // namespace sim
