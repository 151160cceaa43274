// SPDX-License-Identifier: GPL-3.0-or-later
// The instrument's own message codes. Each handler reads its fields first: a field that fails leaves the mirror as it
// was.
#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/Commands.h"
#include "link/DeviceModule.h"
#include "link/FirmwareVersion.h"
#include "link/NoticeRules.h"
#include "prefs/Preferences.h"
#include "program/MainModule.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <limits>

namespace {

/// "No phase" in the level frames.
constexpr double kNoPhase = -65536;
/// Past this number an amplitude document refuses a point.
constexpr std::int32_t kLastAmplitudePoint = 1024;

bool flag(double number)
{
    return number != 0;
}

std::int16_t toInt16(std::int32_t value)
{
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, std::numeric_limits<std::int16_t>::min(),
                                                              std::numeric_limits<std::int16_t>::max()));
}

} // namespace

void DeviceModule::registerOwnHandlers()
{
    static constexpr struct
    {
        char code;
        Method method;
    } kMethods[] = {
        {'A', &DeviceModule::attenuation},
        {'B', &DeviceModule::calibrationSlope},
        {'C', &DeviceModule::trim},
        {'D', &DeviceModule::testStarted},
        {'E', &DeviceModule::testEnded},
        {'F', &DeviceModule::impedancePoint},
        {'G', &DeviceModule::idleLevel},
        {'H', &DeviceModule::amplitudePoint},
        {'I', &DeviceModule::idleImpedance},
        {'J', &DeviceModule::options},
        {'K', &DeviceModule::sweep},
        {'L', &DeviceModule::amplitudeLimits},
        {'M', &DeviceModule::reactanceLimits},
        {'N', &DeviceModule::impedanceLimits},
        {'O', &DeviceModule::firmwareVersion},
        {'P', &DeviceModule::points},
        {'Q', &DeviceModule::testParameters},
        {'R', &DeviceModule::calibration},
        {'S', &DeviceModule::period},
        {'T', &DeviceModule::notice},
        {'V', &DeviceModule::serialNumber},
        {'X', &DeviceModule::completeState},
        {'Y', &DeviceModule::pointsFinished},
        {'a', &DeviceModule::activePen},
        {'c', &DeviceModule::extentsWanted},
        {'h', &DeviceModule::endOfProgram},
        {'k', &DeviceModule::scriptState},
        {'l', &DeviceModule::deviceInformation},
        {'r', &DeviceModule::stateText},
        {'s', &DeviceModule::sweepRange},
        {'t', &DeviceModule::frequencyCompensation},
        {'u', &DeviceModule::loopView},
    };
    for (const auto& entry : kMethods)
        registerHandler(entry.code,
                        [this, method = entry.method](const Frame& frame) { return (this->*method)(frame); });
    // Recognised, and nothing to do: "*", "#", "&", "@", "^", "!" and "W" need no entry, no more than unknown codes.
}

PenDocument* DeviceModule::documentUnderTest() const
{
    PenDocument* const document = m_context.port.activeDocument();
    return document != nullptr && document->gstrKey == m_context.state.gstrPlotKey ? document : nullptr;
}

void DeviceModule::showTestPoints()
{
    const InstrumentMirror& mirror = m_context.mirror;
    if (m_context.state.gbfPlotting)
        m_panels.showProgress(mirror.iCurrentPoint + 1, mirror.iPointsInTest);
    else
        m_panels.showPoints(mirror.iPointsInTest);
}

bool DeviceModule::attenuation(const Frame& frame)
{
    std::int32_t available = 0, steps = 0;
    if (!frame.ParseF(available) || !frame.ParseI(steps))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfAttenuationAvailable = available != 0;
    mirror.dblAttenuationStep = frame.number(3);
    const std::int16_t code = values::roundToInt16(frame.number(4));
    m_panels.ShowAttenuation(code, mirror.dblAttenuationStep);
    if (!m_answers.late())
        mirror.iAttenuationCode = code;
    mirror.iAttenuationSteps = toInt16(steps);
    Q_EMIT m_events.changed(MirrorPart::Attenuation);
    return true;
}

bool DeviceModule::calibrationSlope(const Frame& frame)
{
    std::int32_t loopBack = 0;
    if (!frame.ParseF(loopBack))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfLoopBack = loopBack != 0;
    mirror.dblOscFrequencyB = frame.number(1);
    // N2 carries an offset too; the one in N3 is the one that counts.
    mirror.dblCalOffset = frame.number(3);
    mirror.dblCalSlope = values::tolerantNumber(values::decimalText(frame.number(4)));
    if (m_context.state.gbfDeviceReady)
        m_dialog->showCalSlope(frame.number(4));
    Q_EMIT m_events.changed(MirrorPart::CalibrationSlope);
    Q_EMIT m_events.changed(MirrorPart::LoopBack);
    return true;
}

bool DeviceModule::trim(const Frame& frame)
{
    std::int32_t phase = 0, vdut = 0;
    if (!frame.ParseF(phase) || !frame.ParseI(vdut))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    m_panels.show(StatusPanels::Phase, phase == 1 ? "On" : "Off");
    mirror.dblOscFrequencyC = frame.number(1);
    mirror.dblVrefLevel = frame.number(2);
    mirror.dblVdutLevel = frame.number(3);
    mirror.iVrefCode = values::roundToInt16(frame.number(4));
    mirror.iVdutCode = toInt16(vdut);
    if (m_context.state.gbfDeviceReady)
        m_dialog->showTrimCodes(mirror.iVrefCode, mirror.iVdutCode);
    Q_EMIT m_events.changed(MirrorPart::Trim);
    Q_EMIT m_events.phaseReported(phase == 1);
    return true;
}

void DeviceModule::readStatus(const Frame& frame, std::int32_t bfIdleOutput)
{
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfRunning = flag(frame.number(1));
    mirror.dblStartFrequency = frame.number(2);
    m_panels.showFrequency(StatusPanels::StartFrequency, mirror.dblStartFrequency);
    mirror.dblEndFrequency = frame.number(3);
    m_panels.showFrequency(StatusPanels::EndFrequency, mirror.dblEndFrequency);
    m_context.state.gbfSweepActive = flag(frame.number(4));
    mirror.bfIdleOutput = bfIdleOutput != 0;
}

bool DeviceModule::testStarted(const Frame& frame)
{
    if (m_context.port.activeDocument() == nullptr)
        return true;
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    readStatus(frame, idleOutput);
    m_plotState.GUISetPlotting();
    if (PenDocument* const document = m_context.port.activeDocument())
        document->SetPlotting();
    return true;
}

bool DeviceModule::testEnded(const Frame& frame)
{
    std::int32_t selector = 0, idleOutput = 0;
    if (!frame.ParseF(selector) || !frame.ParseI(idleOutput))
        return false;
    readStatus(frame, idleOutput);
    m_plotState.GUISetViewing();
    showTestPoints();
    return true;
}

bool DeviceModule::impedancePoint(const Frame& frame)
{
    std::int32_t marker = 0, point = 0;
    if (!frame.ParseF(marker) || !frame.ParseI(point))
        return false;
    m_context.mirror.iCurrentPoint = toInt16(point);
    const double frequency = frame.number(1);
    const double impedance = frame.number(2);
    if (impedance == 0 || m_context.port.activeDocument() == nullptr) {
        m_context.device.Write(command::text(command::kStop));
        return true;
    }
    PenDocument* document = documentUnderTest();
    if (document == nullptr)
        return true;
    const bool accepted = document->pgiTestType != PenDocument::Amplitude;
    document->AddImpedancePoint(frequency, impedance, frame.number(3), frame.number(4), point);
    if (!accepted)
        endOfPoints();
    if (marker == 0)
        return true;
    // A refused point shows a message, and any document may be gone behind it.
    document = documentUnderTest();
    if (document == nullptr)
        return true;
    showMeasured(*document, frequency, 0);
    m_context.port.refreshLoopView();
    return true;
}

bool DeviceModule::amplitudePoint(const Frame& frame)
{
    std::int32_t marker = 0, point = 0;
    if (!frame.ParseF(marker) || !frame.ParseI(point))
        return false;
    m_context.mirror.iCurrentPoint = toInt16(point);
    const double frequency = frame.number(1);
    if (m_context.port.activeDocument() == nullptr) {
        m_context.device.Write(command::text(command::kStop));
        return true;
    }
    PenDocument* document = documentUnderTest();
    if (document == nullptr)
        return true;
    const bool accepted = document->pgiTestType == PenDocument::Amplitude && point <= kLastAmplitudePoint;
    document->AddAmplitudePoint(frequency, frame.number(2), frame.number(3), frame.number(4), point);
    if (!accepted)
        endOfPoints();
    if (marker == 0)
        return true;
    document = documentUnderTest();
    if (document != nullptr)
        showMeasured(*document, frequency, 3);
    return true;
}

void DeviceModule::endOfPoints()
{
    // The user was told once and the test is being stopped; the points that are still on their way go nowhere instead
    // of raising the same message hundreds of times.
    m_context.state.gstrPlotKey.clear();
}

void DeviceModule::showMeasured(PenDocument& document, double frequency, int action)
{
    document.peGraph().setVertLineAnnotation(0, frequency);
    m_panels.showProgress(m_context.mirror.iCurrentPoint + 1, m_context.mirror.iPointsInTest);
    document.peGraph().PEactions(action);
}

bool DeviceModule::idleLevel(const Frame& frame)
{
    const bool phaseMeasured = frame.number(3) != kNoPhase;
    Q_EMIT m_events.levelMeasured(frame.number(2), frame.number(3) * frame.number(4), phaseMeasured);
    if (m_context.state.gbfDeviceReady) {
        const double phase = frame.number(3);
        m_dialog->SetInputLevel(frame.number(2), phase * frame.number(4), phase != kNoPhase);
    }
    return true;
}

bool DeviceModule::idleImpedance(const Frame& frame)
{
    Q_EMIT m_events.levelMeasured(frame.number(2), frame.number(3) * frame.number(4), true);
    if (m_context.state.gbfDeviceReady)
        m_dialog->SetInputLevel(frame.number(2), frame.number(3) * frame.number(4), true);
    return true;
}

bool DeviceModule::options(const Frame& frame)
{
    std::int32_t loopBack = 0, dropped = 0;
    if (!frame.ParseF(loopBack) || !frame.ParseI(dropped))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfLoopBack = loopBack != 0;
    if (m_context.state.gbfDeviceReady && m_context.preferences.value(options::kTestSchedule))
        m_dialog->showLoopBack(mirror.bfLoopBack);
    mirror.bfOption1 = flag(frame.number(1));
    mirror.bfOption2 = flag(frame.number(2));
    mirror.bfOption3 = flag(frame.number(3));
    mirror.bfOption4 = flag(frame.number(4));
    Q_EMIT m_events.changed(MirrorPart::LoopBack);
    Q_EMIT m_events.changed(MirrorPart::Options);
    return true;
}

bool DeviceModule::sweep(const Frame& frame)
{
    std::int32_t direction = 0;
    if (!frame.ParseF(direction))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.iSweepDirection = toInt16(direction);
    m_panels.ShowSweepMode(direction);
    m_panels.ShowIdleFrequency(frame.number(1));
    if (!m_answers.late()) {
        mirror.dblIdleFrequency = frame.number(1);
        mirror.dblStartFrequency = frame.number(2);
        mirror.dblEndFrequency = frame.number(3);
    }
    Q_EMIT m_events.changed(MirrorPart::SweepMode);
    Q_EMIT m_events.changed(MirrorPart::IdleFrequency);
    Q_EMIT m_events.changed(MirrorPart::SweepRange);
    return true;
}

bool DeviceModule::amplitudeLimits(const Frame& frame)
{
    std::int32_t offered = 0, idleOutput = 0;
    if (!frame.ParseF(offered) || !frame.ParseI(idleOutput))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfAmplitudeTest = offered != 0;
    mirror.dblAmpMinFreq = frame.number(1);
    mirror.dblAmpMaxFreq = frame.number(2);
    mirror.dblAmpMinDb = frame.number(3);
    mirror.dblAmpMaxDb = frame.number(4);
    mirror.bfIdleOutput = idleOutput != 0;
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

bool DeviceModule::reactanceLimits(const Frame& frame)
{
    std::int32_t offered = 0;
    if (!frame.ParseF(offered))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfReactanceTest = offered != 0;
    mirror.dblReactanceMin = frame.number(3);
    mirror.dblReactanceMax = frame.number(4);
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

bool DeviceModule::impedanceLimits(const Frame& frame)
{
    std::int32_t offered = 0;
    if (!frame.ParseF(offered))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfImpedanceTest = offered != 0;
    mirror.dblImpMinOhms = frame.number(3);
    mirror.dblImpMaxOhms = frame.number(4) - 1;
    Q_EMIT m_events.changed(MirrorPart::Limits);
    return true;
}

bool DeviceModule::firmwareVersion(const Frame& frame)
{
    std::int32_t debug = 0;
    if (!frame.ParseF(debug))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfDebugFirmware = debug != 0;
    mirror.dblFirmwareMajor = frame.number(1);
    mirror.dblFirmwareMinor = frame.number(2);
    mirror.dblFirmwareBuild = frame.number(3);
    mirror.dblFirmwareBoard = frame.number(4);
    mirror.dblFirmwareVersion = firmwareVersionNumber(mirror.dblFirmwareMajor, mirror.dblFirmwareMinor);
    if (m_context.port.firmwareWizardReadsVersion())
        m_context.port.showWizardVersion(firmwareVersionText(mirror));
    Q_EMIT m_events.changed(MirrorPart::Firmware);
    return true;
}

bool DeviceModule::points(const Frame& frame)
{
    std::int32_t running = 0, parameter = 0;
    if (!frame.ParseF(running) || !frame.ParseI(parameter))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfRunning = running != 0;
    const double points = frame.number(1);
    mirror.iPointsInTest = values::roundToInt16(points);
    if (!m_context.state.gbfPlotting)
        m_panels.showPoints(points);
    mirror.iTestParam1 = frame.number(2);
    mirror.iTestParam2 = frame.number(3);
    mirror.iTestParam3 = frame.number(4);
    mirror.iTestParam4 = parameter;
    Q_EMIT m_events.changed(MirrorPart::Points);
    return true;
}

bool DeviceModule::testParameters(const Frame& frame)
{
    InstrumentMirror& mirror = m_context.mirror;
    mirror.iTestParam5 = frame.number(1);
    m_panels.ShowTestPeriod(frame.number(2));
    mirror.iTestParam6 = frame.number(3);
    mirror.iTestParam7 = frame.number(4);
    Q_EMIT m_events.periodReported(frame.number(2));
    return true;
}

bool DeviceModule::calibration(const Frame& frame)
{
    std::int32_t apply = 0;
    if (!frame.ParseF(apply))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    mirror.bfApplyCal = apply != 0;
    mirror.iCalParam1 = frame.number(1);
    mirror.iCalParam2 = frame.number(2);
    mirror.bfCalibrated = flag(frame.number(3));
    if (m_context.state.gbfDeviceReady) {
        m_dialog->showApplyCal(mirror.bfApplyCal);
        m_dialog->showCalibrated(mirror.bfCalibrated);
    }
    Q_EMIT m_events.changed(MirrorPart::Calibration);
    return true;
}

bool DeviceModule::period(const Frame& frame)
{
    InstrumentMirror& mirror = m_context.mirror;
    m_panels.ShowTestPeriod(frame.number(2));
    mirror.iTestParam2 = frame.number(3);
    mirror.iTestParam3 = frame.number(4);
    Q_EMIT m_events.periodReported(frame.number(2));
    return true;
}

bool DeviceModule::notice(const Frame& frame)
{
    std::int32_t severity = 0;
    if (!frame.ParseF(severity))
        return false;
    const InstrumentMirror& mirror = m_context.mirror;
    const QString text = frame.text();
    if (noticerules::isDiscarded(text, severity, mirror.dblFirmwareMajor, mirror.dblFirmwareMinor, MG_VERSION_MAJOR,
                                 MG_VERSION_MINOR))
        return true;
    if (severity == 1)
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Stop, tr("**Error"));
    else
        m_context.messages.systemBox(text, UserMessages::OkOnly | UserMessages::Information, tr("**Information"));
    return true;
}

bool DeviceModule::serialNumber(const Frame& frame)
{
    frame.ParseText(m_context.mirror.strDeviceSerial);
    if (m_context.state.gbfDeviceReady)
        m_dialog->showSerialNumber(m_context.mirror.strDeviceSerial);
    Q_EMIT m_events.changed(MirrorPart::SerialNumber);
    return true;
}

bool DeviceModule::completeState(const Frame& frame)
{
    std::int32_t mode = 0, parameter = 0;
    if (!frame.ParseF(mode) || !frame.ParseI(parameter))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    m_panels.ShowSweepMode(mode);
    m_panels.showFrequency(StatusPanels::StartFrequency, frame.number(1));
    m_panels.showFrequency(StatusPanels::EndFrequency, frame.number(2));
    mirror.iPointsInTest = values::roundToInt16(frame.number(3));
    showTestPoints();
    m_panels.ShowIdleFrequency(frame.number(4));
    mirror.iTestParam7 = parameter;

    // Behind the first answer the instrument is told what to do, and the user may be setting it: a second one is older
    // than that.
    if (m_settingsGivenTo != mirror.strDeviceSerial) {
        if (mode >= 0 && mode <= 2)
            mirror.iSweepMode = toInt16(mode);
        mirror.dblStartFrequency = frame.number(1);
        mirror.dblEndFrequency = frame.number(2);
        mirror.dblIdleFrequency = frame.number(4);
        m_settingsGivenTo = mirror.strDeviceSerial;
        m_context.state.gbfDeviceReady = true;
        DeviceLoadSettings();
        DeviceSendSettings();
        m_dialog->RefreshDialog();
    }
    Q_EMIT m_events.stateComplete();
    return true;
}

bool DeviceModule::pointsFinished(const Frame&)
{
    const QPointer<PenDocument> document = m_context.port.activeDocument();
    if (document == nullptr)
        return true;
    if (m_context.state.gbfPlotting)
        m_panels.showPoints(m_context.mirror.iPointsInTest);
    document->SetViewing();
    if (document != nullptr)
        document->SelectNextPen();
    return true;
}

bool DeviceModule::activePen(const Frame& frame)
{
    std::int32_t pen = 0;
    if (!frame.ParseF(pen))
        return false;
    if (pen >= 1 && pen <= PenDocument::kPens)
        m_context.port.penSetActive(pen);
    return true;
}

bool DeviceModule::extentsWanted(const Frame&)
{
    if (PenDocument* const document = m_context.port.activeDocument())
        document->gbfSendZoom = true;
    if (!m_context.state.gbfPlotting)
        m_plotState.GUISetViewing();
    return true;
}

bool DeviceModule::endOfProgram(const Frame&)
{
    m_context.port.mnuWindowCloseAll_Click();
    m_context.port.endProgram();
    return true;
}

bool DeviceModule::scriptState(const Frame& frame)
{
    std::int32_t running = 0;
    if (!frame.ParseF(running))
        return false;
    m_context.state.gbfScriptRunning = running != 0;
    if (running == 0)
        m_context.port.closeLoopView();
    return true;
}

bool DeviceModule::deviceInformation(const Frame& frame)
{
    std::int32_t slot = 0;
    if (!frame.ParseF(slot))
        return false;
    InstrumentMirror& mirror = m_context.mirror;
    if (slot >= 0 && slot < static_cast<std::int32_t>(mirror.strDeviceInfo.size())) {
        frame.ParseText(mirror.strDeviceInfo[static_cast<std::size_t>(slot)]);
    } else if (slot == static_cast<std::int32_t>(mirror.strDeviceInfo.size())) {
        frame.ParseText(mirror.strDeviceModel);
        m_context.device.SetDeviceType(deviceTypeOfModel(mirror.strDeviceModel));
    }
    Q_EMIT m_events.changed(MirrorPart::Information);
    return true;
}

bool DeviceModule::stateText(const Frame& frame)
{
    const QByteArray text = frame.text().toUtf8();
    m_panels.show(StatusPanels::State, {text.constData(), static_cast<std::size_t>(text.size())});
    return true;
}

bool DeviceModule::sweepRange(const Frame& frame)
{
    InstrumentMirror& mirror = m_context.mirror;
    m_panels.showFrequency(StatusPanels::StartFrequency, frame.number(2));
    m_panels.showFrequency(StatusPanels::EndFrequency, frame.number(3));
    if (!m_answers.late()) {
        mirror.dblStartFrequency = frame.number(2);
        mirror.dblEndFrequency = frame.number(3);
        m_dialog->showSweepRange(mirror.dblStartFrequency, mirror.dblEndFrequency);
    }
    Q_EMIT m_events.changed(MirrorPart::SweepRangeConfirmed);
    return true;
}

bool DeviceModule::frequencyCompensation(const Frame& frame)
{
    m_context.mirror.dblFreqComp = frame.number(1);
    if (m_context.state.gbfDeviceReady)
        m_dialog->showFreqComp(m_context.mirror.dblFreqComp);
    Q_EMIT m_events.changed(MirrorPart::FrequencyCompensation);
    return true;
}

bool DeviceModule::loopView(const Frame& frame)
{
    std::int32_t show = 0;
    if (!frame.ParseF(show))
        return false;
    if (show == 0) {
        m_context.port.closeLoopView();
        return true;
    }
    const PenDocument* const document = m_context.port.activeDocument();
    if (document != nullptr &&
        (document->pgiTestType == PenDocument::Impedance || document->pgiTestType == PenDocument::Reactance))
        m_context.port.showLoopView();
    return true;
}
