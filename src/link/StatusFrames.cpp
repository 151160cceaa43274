// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusFrames.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "instrument/InstrumentRanges.h"
#include "link/DeviceModule.h"
#include "link/rules/FirmwareVersion.h"
#include "link/rules/Frame.h"
#include "values/Conversions.h"

namespace {

/// "No phase" in the level frames.
constexpr double kNoPhase = -65536;

bool flag(double number)
{
    return number != 0;
}

void takeIf(bool believed, double& field, double value)
{
    if (believed)
        field = value;
}

} // namespace

StatusFrames::StatusFrames(DeviceModule& device)
    : m_device(device)
    , m_mirror(device.context().mirror)
    , m_events(device.events())
{
    static constexpr struct
    {
        char code;
        Method method;
    } kMethods[] = {
        {'A', &StatusFrames::attenuation},
        {'B', &StatusFrames::calibrationSlope},
        {'C', &StatusFrames::trim},
        {'G', &StatusFrames::idleLevel},
        {'I', &StatusFrames::idleImpedance},
        {'J', &StatusFrames::options},
        {'K', &StatusFrames::sweep},
        {'L', &StatusFrames::amplitudeLimits},
        {'M', &StatusFrames::reactanceLimits},
        {'N', &StatusFrames::impedanceLimits},
        {'O', &StatusFrames::firmwareVersion},
        {'P', &StatusFrames::points},
        {'Q', &StatusFrames::testParameters},
        {'R', &StatusFrames::calibration},
        {'S', &StatusFrames::period},
        {'V', &StatusFrames::serialNumber},
        {'X', &StatusFrames::completeState},
        {'l', &StatusFrames::deviceInformation},
        {'s', &StatusFrames::sweepRange},
        {'t', &StatusFrames::frequencyCompensation},
    };
    for (const auto& entry : kMethods)
        device.registerHandler(entry.code,
                               [this, method = entry.method](const Frame& frame) { return (this->*method)(frame); });
}

// Sweep settings ------------------------------------------------------------------------------------------------------

void StatusFrames::settingsSent()
{
    m_reported.start.command(m_mirror.dblStartFrequency);
    m_reported.end.command(m_mirror.dblEndFrequency);
    m_reported.idle.command(m_mirror.dblIdleFrequency);
    m_reported.mode.command(m_mirror.iSweepMode);
    m_reported.attenuation.command(m_mirror.iAttenuationCode);
}

bool StatusFrames::isPresent(ReportedSetting& setting, double value)
{
    // What is set now is newer than an answer that is still on its way.
    return setting.believes(value) && !m_device.answers().late();
}

void StatusFrames::takeSweepRange(const Frame& frame, int startField, int endField)
{
    const double start = frame.number(startField), end = frame.number(endField);
    if (frame.isNumber(startField) && instrumentranges::isFrequency(m_mirror, start))
        takeIf(isPresent(m_reported.start, start), m_mirror.dblStartFrequency, start);
    if (frame.isNumber(endField) && instrumentranges::isFrequency(m_mirror, end))
        takeIf(isPresent(m_reported.end, end), m_mirror.dblEndFrequency, end);
}

void StatusFrames::takeIdleFrequency(const Frame& frame, int field)
{
    const double hertz = frame.number(field);
    if (frame.isNumber(field) && instrumentranges::isIdleFrequency(m_mirror, hertz))
        takeIf(isPresent(m_reported.idle, hertz), m_mirror.dblIdleFrequency, hertz);
    Q_EMIT m_events.changed(MirrorPart::IdleFrequency);
}

bool StatusFrames::attenuation(const Frame& frame)
{
    std::int32_t available = 0, steps = 0;
    if (!frame.ParseF(available) || !frame.ParseI(steps))
        return false;
    m_mirror.bfAttenuationAvailable = available != 0;
    m_mirror.dblAttenuationStep = frame.number(3);
    m_mirror.iAttenuationSteps = values::roundToInt16(steps);
    if (frame.isNumber(4) && isPresent(m_reported.attenuation, frame.number(4)))
        m_mirror.iAttenuationCode = values::roundToInt16(frame.number(4));
    Q_EMIT m_events.changed(MirrorPart::Attenuation);
    return true;
}

bool StatusFrames::sweep(const Frame& frame)
{
    std::int32_t direction = 0;
    if (!frame.ParseF(direction))
        return false;
    m_mirror.iSweepDirection = values::roundToInt16(direction);
    takeSweepRange(frame, 2, 3);
    Q_EMIT m_events.sweepModeReported(direction);
    Q_EMIT m_events.changed(MirrorPart::SweepMode);
    Q_EMIT m_events.changed(MirrorPart::SweepRange);
    takeIdleFrequency(frame, 1);
    return true;
}

bool StatusFrames::sweepRange(const Frame& frame)
{
    takeSweepRange(frame, 2, 3);
    Q_EMIT m_events.changed(MirrorPart::SweepRangeConfirmed);
    return true;
}

bool StatusFrames::points(const Frame& frame)
{
    std::int32_t running = 0, parameter = 0;
    if (!frame.ParseF(running) || !frame.ParseI(parameter))
        return false;
    m_mirror.bfRunning = running != 0;
    m_mirror.iPointsInTest = values::roundToInt16(frame.number(1));
    m_mirror.iTestParam1 = frame.number(2);
    m_mirror.iTestParam2 = frame.number(3);
    m_mirror.iTestParam3 = frame.number(4);
    m_mirror.iTestParam4 = parameter;
    Q_EMIT m_events.changed(MirrorPart::Points);
    return true;
}

bool StatusFrames::testParameters(const Frame& frame)
{
    m_mirror.iTestParam5 = frame.number(1);
    m_mirror.iTestParam6 = frame.number(3);
    m_mirror.iTestParam7 = frame.number(4);
    Q_EMIT m_events.periodReported(frame.number(2));
    return true;
}

bool StatusFrames::period(const Frame& frame)
{
    m_mirror.iTestParam2 = frame.number(3);
    m_mirror.iTestParam3 = frame.number(4);
    Q_EMIT m_events.periodReported(frame.number(2));
    return true;
}

bool StatusFrames::completeState(const Frame& frame)
{
    std::int32_t mode = 0, parameter = 0;
    if (!frame.ParseF(mode) || !frame.ParseI(parameter))
        return false;
    if (instrumentranges::isSweepMode(mode) && isPresent(m_reported.mode, mode))
        m_mirror.iSweepMode = values::roundToInt16(mode);
    takeSweepRange(frame, 1, 2);
    m_mirror.iPointsInTest = values::roundToInt16(frame.number(3));
    m_mirror.iTestParam7 = parameter;
    Q_EMIT m_events.sweepModeReported(mode);
    Q_EMIT m_events.changed(MirrorPart::SweepRangeConfirmed);
    Q_EMIT m_events.changed(MirrorPart::Points);
    takeIdleFrequency(frame, 4);
    m_device.answerComplete();
    return true;
}

// Idle output ---------------------------------------------------------------------------------------------------------

bool StatusFrames::idleLevel(const Frame& frame)
{
    Q_EMIT m_events.levelMeasured(frame.number(2), frame.number(3) * frame.number(4), frame.number(3) != kNoPhase);
    return true;
}

bool StatusFrames::idleImpedance(const Frame& frame)
{
    Q_EMIT m_events.levelMeasured(frame.number(2), frame.number(3) * frame.number(4), true);
    return true;
}

// What the instrument can do ------------------------------------------------------------------------------------------

bool StatusFrames::amplitudeLimits(const Frame& frame)
{
    std::int32_t offered = 0, idleOutput = 0;
    if (!frame.ParseF(offered) || !frame.ParseI(idleOutput))
        return false;
    m_mirror.bfAmplitudeTest = offered != 0;
    if (instrumentranges::areFrequencyLimits(frame.number(1), frame.number(2))) {
        m_mirror.dblAmpMinFreq = frame.number(1);
        m_mirror.dblAmpMaxFreq = frame.number(2);
    }
    if (instrumentranges::areLimits(frame.number(3), frame.number(4))) {
        m_mirror.dblAmpMinDb = frame.number(3);
        m_mirror.dblAmpMaxDb = frame.number(4);
    }
    m_mirror.bfIdleOutput = idleOutput != 0;
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

bool StatusFrames::reactanceLimits(const Frame& frame)
{
    std::int32_t offered = 0;
    if (!frame.ParseF(offered))
        return false;
    m_mirror.bfReactanceTest = offered != 0;
    m_mirror.dblReactanceMin = frame.number(3);
    m_mirror.dblReactanceMax = frame.number(4);
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

bool StatusFrames::impedanceLimits(const Frame& frame)
{
    std::int32_t offered = 0;
    if (!frame.ParseF(offered))
        return false;
    m_mirror.bfImpedanceTest = offered != 0;
    m_mirror.dblImpMinOhms = frame.number(3);
    m_mirror.dblImpMaxOhms = frame.number(4) - 1;
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

// What the instrument is ----------------------------------------------------------------------------------------------

bool StatusFrames::firmwareVersion(const Frame& frame)
{
    std::int32_t debug = 0;
    if (!frame.ParseF(debug))
        return false;
    m_mirror.bfDebugFirmware = debug != 0;
    m_mirror.dblFirmwareMajor = frame.number(1);
    m_mirror.dblFirmwareMinor = frame.number(2);
    m_mirror.dblFirmwareBuild = frame.number(3);
    m_mirror.dblFirmwareBoard = frame.number(4);
    m_mirror.dblFirmwareVersion = firmwareVersionNumber(m_mirror.dblFirmwareMajor, m_mirror.dblFirmwareMinor);
    Q_EMIT m_events.changed(MirrorPart::Firmware);
    return true;
}

bool StatusFrames::serialNumber(const Frame& frame)
{
    frame.ParseText(m_mirror.strDeviceSerial);
    m_device.serialNumberTold();
    Q_EMIT m_events.changed(MirrorPart::SerialNumber);
    return true;
}

bool StatusFrames::deviceInformation(const Frame& frame)
{
    std::int32_t slot = 0;
    if (!frame.ParseF(slot))
        return false;
    const auto slots = static_cast<std::int32_t>(m_mirror.strDeviceInfo.size());
    if (slot >= 0 && slot < slots) {
        frame.ParseText(m_mirror.strDeviceInfo[static_cast<std::size_t>(slot)]);
    } else if (slot == slots) {
        frame.ParseText(m_mirror.strDeviceModel);
        m_device.context().device.SetDeviceType(deviceTypeOfModel(m_mirror.strDeviceModel));
    }
    Q_EMIT m_events.changed(MirrorPart::Information);
    return true;
}

// Calibration and trims -----------------------------------------------------------------------------------------------

bool StatusFrames::calibrationSlope(const Frame& frame)
{
    std::int32_t loopBack = 0;
    if (!frame.ParseF(loopBack))
        return false;
    m_mirror.bfLoopBack = loopBack != 0;
    m_mirror.dblOscFrequencyB = frame.number(1);
    // N2 carries an offset too; the one in N3 is the one that counts.
    m_mirror.dblCalOffset = frame.number(3);
    m_mirror.dblCalSlope = frame.number(4);
    Q_EMIT m_events.changed(MirrorPart::CalibrationSlope);
    Q_EMIT m_events.changed(MirrorPart::LoopBack);
    return true;
}

bool StatusFrames::trim(const Frame& frame)
{
    std::int32_t phase = 0, vdut = 0;
    if (!frame.ParseF(phase) || !frame.ParseI(vdut))
        return false;
    m_mirror.dblOscFrequencyC = frame.number(1);
    m_mirror.dblVrefLevel = frame.number(2);
    m_mirror.dblVdutLevel = frame.number(3);
    m_mirror.iVrefCode = values::roundToInt16(frame.number(4));
    m_mirror.iVdutCode = values::roundToInt16(vdut);
    Q_EMIT m_events.phaseReported(phase == 1);
    Q_EMIT m_events.changed(MirrorPart::Trim);
    return true;
}

bool StatusFrames::options(const Frame& frame)
{
    std::int32_t loopBack = 0, dropped = 0;
    if (!frame.ParseF(loopBack) || !frame.ParseI(dropped))
        return false;
    m_mirror.bfLoopBack = loopBack != 0;
    m_mirror.bfOption1 = flag(frame.number(1));
    m_mirror.bfOption2 = flag(frame.number(2));
    m_mirror.bfOption3 = flag(frame.number(3));
    m_mirror.bfOption4 = flag(frame.number(4));
    Q_EMIT m_events.changed(MirrorPart::LoopBack);
    Q_EMIT m_events.changed(MirrorPart::Options);
    return true;
}

bool StatusFrames::calibration(const Frame& frame)
{
    std::int32_t apply = 0;
    if (!frame.ParseF(apply))
        return false;
    m_mirror.bfApplyCal = apply != 0;
    m_mirror.iCalParam1 = frame.number(1);
    m_mirror.iCalParam2 = frame.number(2);
    m_mirror.bfCalibrated = flag(frame.number(3));
    Q_EMIT m_events.changed(MirrorPart::Calibration);
    return true;
}

bool StatusFrames::frequencyCompensation(const Frame& frame)
{
    m_mirror.dblFreqComp = frame.number(1);
    Q_EMIT m_events.changed(MirrorPart::FrequencyCompensation);
    return true;
}
