// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"
#include "link/rules/ReportedSetting.h"

#include <cstdint>

class DeviceModule;
class Frame;
class InstrumentEvents;

/// The frames by which the instrument reports its state: each writes its fields into the mirror and tells what changed
/// by InstrumentEvents. A handler reads its strict fields first: one that fails leaves the mirror as it was. A value
/// that no instrument can have (InstrumentRanges) leaves its own field as it was.
///
/// Registers itself; owned by the DeviceModule whose table it stands in.
class StatusFrames
{
public:
    explicit StatusFrames(DeviceModule& device);

    /// The mirror's sweep settings have been sent: reports that are older do not come back into it.
    void settingsSent();
    /// Another connection: nothing was reported.
    void forgetReports() { m_reported = {}; }

private:
    using Method = bool (StatusFrames::*)(const Frame&);

    bool attenuation(const Frame& frame);           // A
    bool calibrationSlope(const Frame& frame);      // B
    bool trim(const Frame& frame);                  // C
    bool idleLevel(const Frame& frame);             // G
    bool idleImpedance(const Frame& frame);         // I
    bool options(const Frame& frame);               // J
    bool sweep(const Frame& frame);                 // K
    bool amplitudeLimits(const Frame& frame);       // L
    bool reactanceLimits(const Frame& frame);       // M
    bool impedanceLimits(const Frame& frame);       // N
    bool firmwareVersion(const Frame& frame);       // O
    bool points(const Frame& frame);                // P
    bool testParameters(const Frame& frame);        // Q
    bool calibration(const Frame& frame);           // R
    bool period(const Frame& frame);                // S
    bool serialNumber(const Frame& frame);          // V
    bool completeState(const Frame& frame);         // X
    bool deviceInformation(const Frame& frame);     // l
    bool sweepRange(const Frame& frame);            // s
    bool frequencyCompensation(const Frame& frame); // t

    bool isPresent(ReportedSetting& setting, double value);
    // A damaged field leaves the setting as it was.
    void takeSweepRange(const Frame& frame, int startField, int endField);
    void takeIdleFrequency(const Frame& frame, int field);

    struct Reported
    {
        ReportedSetting start, end, idle, mode, attenuation;
    };

    DeviceModule& m_device;
    Reported m_reported;
    InstrumentMirror& m_mirror;
    InstrumentEvents& m_events;
};
