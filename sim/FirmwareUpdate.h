// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Device.h"
#include "sim/boot/BootLoader.h"
#include "sim/port/FaultPlan.h"
#include "sim/protocol/InstrumentState.h"

#include <functional>

namespace sim {

/// The boot loader in its instrument: time, faults, and what the rest of the instrument asks of it.
class FirmwareUpdate
{
public:
    /// An announced block of which nothing has come for so long will not come.
    static constexpr Duration kSilence = std::chrono::milliseconds(500);

    struct Setup
    {
        firmware::TrustedKeys keys;
        FaultPlan faults;                         ///< its last three
        std::function<void(const QString&)> tell; ///< a sentence for the person who runs the simulator
    };

    /// The flash, the state and the sink outlive it. The state's firmware version is that of the factory image.
    FirmwareUpdate(Flash& flash, InstrumentState& state, Setup setup, FrameSink& sink);

    static bool isOwn(std::string_view word) { return BootLoader::isOwn(word); }
    /// Nothing but its own commands is to be obeyed.
    bool isExclusive() const { return m_loader.isExclusive(); }
    /// busy: a test or a script runs. Returns how many bytes follow that are no commands.
    std::size_t command(std::string_view word, std::string_view argument, bool busy, Moment now);
    bool isReceiving() const { return m_loader.isReceiving(); }
    void take(std::string_view bytes, Moment now);
    bool hasFallenSilent(Moment now) const { return isReceiving() && now >= m_lastByte + kSilence; }
    void giveUp();
    std::optional<Moment> nextDue() const;
    void hostLeft() { m_loader.hostLeft(); }
    /// True once when the flash has changed enough to be kept.
    bool takeKeepWanted();
    Device::Leave takeLeave();
    /// After a restart or a loss of power: true when the instrument begins anew, with another image perhaps.
    bool powered();
    /// The image that runs is whole.
    bool runsWhole() const { return m_loader.runningIsWhole(); }
    /// Empty when no update is going on.
    QString activity() const;

private:
    bool runOnTrial();
    void blockComes(int number, qsizetype length);
    void noteVersion();
    void afterwards();
    void tell(const QString& sentence) const;

    Flash& m_flash;
    InstrumentState& m_state;
    Setup m_setup;
    FrameSink& m_sink;
    int m_factoryMajor, m_factoryMinor, m_factoryBuild;
    BootLoader m_loader;
    Moment m_lastByte{0};
    int m_blocks = 0;
    bool m_keepWanted = false;
    bool m_off = false;
    Device::Leave m_leave = Device::Leave::No;
};

} // namespace sim
