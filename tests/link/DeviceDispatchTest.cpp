// SPDX-License-Identifier: GPL-3.0-or-later
// The table of message codes: every field of every frame into the mirror, the panels and the events.
#include "LinkFixture.h"

#include "values/Conversions.h"

#include <limits>

namespace {

using frametext::numbers;
using frametext::text;

class DeviceDispatch : public LinkFixture
{
protected:
    void SetUp() override
    {
        connectDevice();
        window.calls.clear();
        window.panels.clear();
        const InstrumentEvents* const events = &module.events();
        QObject::connect(events, &InstrumentEvents::changed, events, [this](MirrorPart part) { told.push_back(part); });
        QObject::connect(events, &InstrumentEvents::levelMeasured, events,
                         [this](double level, double phase, bool measured) {
                             levels.push_back({level, phase, measured});
                         });
        QObject::connect(events, &InstrumentEvents::stateComplete, events, [this] { ++completed; });
    }
    /// The instrument is opened again: its next complete state counts as its first.
    void reconnect()
    {
        device.Close();
        connectDevice();
    }
    /// The parts of the mirror that were told as changed since the last call.
    std::vector<MirrorPart> changed() { return std::exchange(told, {}); }

    struct Level
    {
        double level = 0, phase = 0;
        bool measured = false;
        bool operator==(const Level&) const = default;
    };
    std::vector<MirrorPart> told;
    std::vector<Level> levels;
    int completed = 0;
};

using Parts = std::vector<MirrorPart>;

TEST_F(DeviceDispatch, AttenuationA)
{
    send(numbers('A', '1', 5, 6, 2.5, 3, 7));
    EXPECT_TRUE(mirror.bfAttenuationAvailable);
    EXPECT_EQ(mirror.dblAttenuationStep, 2.5);
    EXPECT_EQ(mirror.iAttenuationCode, 3);
    EXPECT_EQ(mirror.iAttenuationSteps, 7);
    EXPECT_EQ(panel(10), QStringLiteral("-7.5 dB"));
    send(numbers('A', '0', 0, 0, 10, 0, 0));
    EXPECT_FALSE(mirror.bfAttenuationAvailable);
    EXPECT_EQ(panel(10), QStringLiteral("0 dB"));
    send(numbers('A', '1', 0, 0, 0.1, 3, 7));
    EXPECT_EQ(panel(10), QStringLiteral("-0.3 dB"));
    EXPECT_EQ(changed(), Parts(3, MirrorPart::Attenuation));
}

TEST_F(DeviceDispatch, CalibrationSlopeBTakesTheOffsetOfN3)
{
    send(numbers('B', '1', 32000, 4, 5, 1.75));
    EXPECT_TRUE(mirror.bfLoopBack);
    EXPECT_EQ(mirror.dblOscFrequencyB, 32000);
    EXPECT_EQ(mirror.dblCalOffset, 5);
    EXPECT_EQ(mirror.dblCalSlope, 1.75);
    send(numbers('B', '0', 0, 0, 0, -2.5));
    EXPECT_FALSE(mirror.bfLoopBack);
    EXPECT_EQ(mirror.dblCalSlope, -2.5);
    EXPECT_EQ(changed(), (Parts{MirrorPart::CalibrationSlope, MirrorPart::LoopBack, MirrorPart::CalibrationSlope,
                                MirrorPart::LoopBack}));
}

TEST_F(DeviceDispatch, TrimCShowsPhaseOnOnlyForOne)
{
    send(numbers('C', '1', 1000, 0.5, 0.25, 12, 34));
    EXPECT_EQ(panel(6), QStringLiteral("On"));
    EXPECT_EQ(mirror.dblOscFrequencyC, 1000);
    EXPECT_EQ(mirror.dblVrefLevel, 0.5);
    EXPECT_EQ(mirror.dblVdutLevel, 0.25);
    EXPECT_EQ(mirror.iVrefCode, 12);
    EXPECT_EQ(mirror.iVdutCode, 34);
    EXPECT_EQ(changed(), Parts{MirrorPart::Trim});
    send(numbers('C', '2'));
    EXPECT_EQ(panel(6), QStringLiteral("Off"));
    send(numbers('C', '0', 0, 0, 0, 3, 4));
    EXPECT_EQ(panel(6), QStringLiteral("Off"));
}

TEST_F(DeviceDispatch, TestStartedDReadsTheStatusAndStartsThePlot)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(numbers('D', '0', 1, 20000, 60000, 1, 1));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(module.recorder().gstrPlotKey(), document->gstrKey);
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_EQ(mirror.dblEndFrequency, 60000);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
    EXPECT_EQ(panel(3), QStringLiteral("20000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("60000 Hz"));
    EXPECT_FALSE(penBarEnabled);
    // SetPlotting of the document has named the pen by the time of day.
    EXPECT_NE(document->peGraph().SubsetLabels(0), QStringLiteral("Pen 1"));
}

TEST_F(DeviceDispatch, TestStartedDWithoutADocumentDoesNothingAtAll)
{
    const InstrumentMirror before = mirror;
    send(numbers('D', '1', 1, 20000, 60000, 1, 1));
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(state.gbfSweepActive);
    EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency);
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_TRUE(window.panels.empty());
}

TEST_F(DeviceDispatch, TestEndedEReturnsToViewing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 200;
    send(numbers('E', '0', 0, 30000, 50000, 0, 0));
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(panel(3), QStringLiteral("30000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("50000 Hz"));
    EXPECT_EQ(panel(5), QStringLiteral("200 pts"));
    EXPECT_TRUE(penBarEnabled);
    EXPECT_FALSE(state.gbfSweepActive);
}

TEST_F(DeviceDispatch, TestEndedEWorksWithoutADocument)
{
    send(numbers('E', '0', 1, 100, 200, 1, 1));
    EXPECT_EQ(mirror.dblEndFrequency, 200);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(panel(5), QStringLiteral("0 pts"));
}

TEST_F(DeviceDispatch, ImpedancePointFLandsInTheCurrentPenAndMovesTheCursor)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 100;
    document->setCurrentPen(2);
    send(numbers('F', '1', 40000, 50, 30, -1, 7));
    const GraphModel& graph = document->peGraph();
    EXPECT_EQ(mirror.iCurrentPoint, 7);
    EXPECT_EQ(graph.XData(2, 7), 40000.0F);
    EXPECT_EQ(graph.YData(2, 7), 50.0F);
    EXPECT_EQ(graph.YData(12, 7), 0.02F);
    EXPECT_EQ(graph.YData(22, 7), -30.0F);
    EXPECT_EQ(graph.YData(32, 7), -30.0F);
    EXPECT_EQ(panel(5), QStringLiteral("8/100 pts"));
    EXPECT_EQ(graph.VertLineAnnotation(0), 40000);
    EXPECT_EQ(pointsShown, 1);
}

TEST_F(DeviceDispatch, PointWithoutTheMarkerIsStoredButShowsNothing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    window.panels.erase(5);
    const double cursor = document->peGraph().VertLineAnnotation(0);
    send(numbers('F', '0', 40000, 50, 30, 1, 7));
    EXPECT_EQ(document->peGraph().YData(0, 7), 50.0F);
    EXPECT_EQ(window.panels.count(5), 0U);
    EXPECT_EQ(document->peGraph().VertLineAnnotation(0), cursor);
    EXPECT_EQ(pointsShown, 0);
}

TEST_F(DeviceDispatch, ImpedancePointFOfZeroOhmStopsTheTest)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    written();
    send(numbers('F', '1', 40000, 0, 30, 1, 7));
    EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
    EXPECT_EQ(document->peGraph().XData(0, 7), 0.0F);
    EXPECT_EQ(mirror.iCurrentPoint, 7);
}

TEST_F(DeviceDispatch, AmplitudePointHOfZeroDbIsAPoint)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 50;
    written();
    send(numbers('H', '1', 40000, 0, 30, 1, 7));
    const GraphModel& graph = document->peGraph();
    EXPECT_EQ(graph.XData(0, 7), 40000.0F);
    EXPECT_EQ(graph.YData(0, 7), 0.0F);
    EXPECT_EQ(graph.YData(20, 7), -30.0F);
    EXPECT_EQ(graph.YData(30, 7), 30.0F);
    EXPECT_EQ(panel(5), QStringLiteral("8/50 pts"));
    EXPECT_EQ(graph.VertLineAnnotation(0), 40000);
    EXPECT_EQ(pointsShown, 1);
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(DeviceDispatch, PointsWithoutADocumentStopTheTest)
{
    send(numbers('F', '1', 40000, 50, 30, 1, 7) + numbers('H', '1', 40000, 50, 30, 1, 8));
    EXPECT_EQ(written(), (QStringList{QStringLiteral("y"), QStringLiteral("y")}));
}

TEST_F(DeviceDispatch, PointsGoOnlyToTheDocumentOnWhichTheTestWasStarted)
{
    for (const std::int16_t type : {PenDocument::Impedance, PenDocument::Amplitude}) {
        const char code = type == PenDocument::Impedance ? 'F' : 'H';
        const auto first = makeDocument(type);
        const auto second = makeDocument(type);
        activate(first);
        // A run of several rounds: a single sweep would be stopped by the change of document.
        send(numbers('D', '1', 1, 1000, 1000000, 1));
        ASSERT_TRUE(state.gbfPlotting);
        written();
        activate(second);
        send(numbers(code, '1', 40000, 50, 30, 1, 3));
        EXPECT_EQ(first->peGraph().XData(0, 3), 0.0F);
        EXPECT_EQ(second->peGraph().XData(0, 3), 0.0F);
        EXPECT_TRUE(written().isEmpty());
        EXPECT_TRUE(state.gbfPlotting);
        activate(first);
        send(numbers(code, '1', 41000, 50, 30, 1, 4));
        EXPECT_EQ(first->peGraph().XData(0, 4), 41000.0F);
        send(numbers('E', '0'));
    }
}

TEST_F(DeviceDispatch, RefusedPointsAreToldOncePerTest)
{
    struct Case
    {
        std::int16_t type;
        QByteArray point;
        const char* message;
    };
    const Case cases[] = {
        {PenDocument::Amplitude, numbers('F', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Impedance, numbers('H', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Reactance, numbers('H', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Amplitude, numbers('H', '1', 40000, 50, 30, 1, 1025), "Too many points!"},
    };
    for (const Case& refused : cases) {
        const auto document = makeDocument(refused.type);
        activate(document);
        for (int test = 0; test < 2; ++test) {
            messages.shown.clear();
            startPlotting();
            written();
            send(refused.point.repeated(1000));
            ASSERT_EQ(messages.shown.size(), 1U);
            EXPECT_EQ(messages.shown[0].title, QStringLiteral("Add Point Error"));
            EXPECT_EQ(messages.shown[0].text, QLatin1String(refused.message));
            EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
            EXPECT_TRUE(device.DataEventEnabled());
            EXPECT_EQ(document->peGraph().XData(0, 3), 0.0F);
        }
    }
}

TEST_F(DeviceDispatch, IdleLevelGIsToldWithItsSignedPhase)
{
    send(numbers('G', '0', 0, -12.5, 45, -1) + numbers('G', '0', 0, -3, -65536, 1));
    EXPECT_EQ(levels, (std::vector<Level>{{-12.5, -45, true}, {-3, -65536, false}}));
}

TEST_F(DeviceDispatch, IdleImpedanceIAlwaysHasAPhase)
{
    send(numbers('I', '0', 0, 50, 45, -1) + numbers('I', '0', 0, 50, -65536, 1));
    EXPECT_EQ(levels, (std::vector<Level>{{50, -45, true}, {50, -65536, true}}));
}

TEST_F(DeviceDispatch, OptionsJ)
{
    send(numbers('J', '1', 1, 0, 2, 0, 9));
    EXPECT_TRUE(mirror.bfLoopBack);
    EXPECT_TRUE(mirror.bfOption1);
    EXPECT_FALSE(mirror.bfOption2);
    EXPECT_TRUE(mirror.bfOption3);
    EXPECT_FALSE(mirror.bfOption4);
    EXPECT_EQ(changed(), (Parts{MirrorPart::LoopBack, MirrorPart::Options}));
}

TEST_F(DeviceDispatch, SweepKLeavesTheFrequencyPanelsAlone)
{
    send(numbers('K', '0', 12000, 5000, 9000));
    EXPECT_EQ(mirror.iSweepDirection, 0);
    EXPECT_EQ(mirror.dblIdleFrequency, 12000);
    EXPECT_EQ(mirror.dblStartFrequency, 5000);
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
    EXPECT_EQ(panel(9), QStringLiteral("A to B"));
    EXPECT_EQ(panel(8), QStringLiteral("12000 Hz"));
    EXPECT_EQ(window.panels.count(3), 0U);
    EXPECT_EQ(window.panels.count(4), 0U);
    send(numbers('K', '1', 0));
    EXPECT_EQ(panel(9), QStringLiteral("B to A"));
    EXPECT_EQ(panel(8), QStringLiteral("Off"));
    send(numbers('K', '2', -1));
    EXPECT_EQ(panel(9), QStringLiteral("Alternate"));
    EXPECT_EQ(panel(8), QStringLiteral("Start"));
    send(numbers('K', '3', -2));
    EXPECT_EQ(panel(9), QStringLiteral("Alternate"));
    EXPECT_EQ(panel(8), QStringLiteral("Start")) << "an idle frequency that none can have";
    EXPECT_EQ(mirror.dblIdleFrequency, -1);
}

TEST_F(DeviceDispatch, LimitsLMN)
{
    send(numbers('L', '1', 20, 4000000, -80, 5, 1));
    EXPECT_TRUE(mirror.bfAmplitudeTest);
    EXPECT_EQ(mirror.dblAmpMinFreq, 20);
    EXPECT_EQ(mirror.dblAmpMaxFreq, 4000000);
    EXPECT_EQ(mirror.dblAmpMinDb, -80);
    EXPECT_EQ(mirror.dblAmpMaxDb, 5);
    EXPECT_TRUE(mirror.bfIdleOutput);
    send(numbers('M', '1', 1, 2, -40000, 40000, 3));
    EXPECT_TRUE(mirror.bfReactanceTest);
    EXPECT_EQ(mirror.dblReactanceMin, -40000);
    EXPECT_EQ(mirror.dblReactanceMax, 40000);
    send(numbers('N', '1', 1, 2, 0.1, 1000000, 3));
    EXPECT_TRUE(mirror.bfImpedanceTest);
    EXPECT_EQ(mirror.dblImpMinOhms, 0.1);
    EXPECT_EQ(mirror.dblImpMaxOhms, 999999);
}

TEST_F(DeviceDispatch, FirmwareVersionO)
{
    send(numbers('O', '1', 1, 23, 456, 3));
    EXPECT_TRUE(mirror.bfDebugFirmware);
    EXPECT_EQ(mirror.dblFirmwareMajor, 1);
    EXPECT_EQ(mirror.dblFirmwareMinor, 23);
    EXPECT_EQ(mirror.dblFirmwareBuild, 456);
    EXPECT_EQ(mirror.dblFirmwareBoard, 3);
    EXPECT_DOUBLE_EQ(mirror.dblFirmwareVersion, 1.23);
}

TEST_F(DeviceDispatch, PointsPFillPanelFiveUnlessATestRuns)
{
    send(numbers('P', '1', 300, 2, 3, 4, 5));
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_EQ(mirror.iPointsInTest, 300);
    EXPECT_EQ(mirror.iTestParam1, 2);
    EXPECT_EQ(mirror.iTestParam2, 3);
    EXPECT_EQ(mirror.iTestParam3, 4);
    EXPECT_EQ(mirror.iTestParam4, 5);
    EXPECT_EQ(panel(5), QStringLiteral("300 pts"));
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    send(numbers('P', '1', 400));
    EXPECT_EQ(mirror.iPointsInTest, 400);
    EXPECT_EQ(panel(5), QStringLiteral("300 pts"));
}

TEST_F(DeviceDispatch, TestParametersQAndPeriodS)
{
    send(numbers('Q', '0', 5, 12, 6, 7));
    EXPECT_EQ(mirror.iTestParam5, 5);
    EXPECT_EQ(panel(7), QStringLiteral("12 mS"));
    EXPECT_EQ(mirror.iTestParam6, 6);
    EXPECT_EQ(mirror.iTestParam7, 7);
    send(numbers('S', '0', 1, 2.5, 8, 9));
    EXPECT_EQ(panel(7), QStringLiteral("2.5 mS"));
    EXPECT_EQ(mirror.iTestParam2, 8);
    EXPECT_EQ(mirror.iTestParam3, 9);
    EXPECT_EQ(mirror.iTestPeriod, 0);
}

TEST_F(DeviceDispatch, CalibrationR)
{
    send(numbers('R', '1', 4, 5, 1));
    EXPECT_TRUE(mirror.bfApplyCal);
    EXPECT_EQ(mirror.iCalParam1, 4);
    EXPECT_EQ(mirror.iCalParam2, 5);
    EXPECT_TRUE(mirror.bfCalibrated);
    send(numbers('R', '0', 4, 5, 0));
    EXPECT_FALSE(mirror.bfApplyCal);
    EXPECT_FALSE(mirror.bfCalibrated);
    EXPECT_EQ(changed(), Parts(2, MirrorPart::Calibration));
}

TEST_F(DeviceDispatch, NoticeTShowsAPlainBoxBySeverity)
{
    send(text('T', '1', "Overload at the input.") + text('T', '0', "Self test passed."));
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_TRUE(messages.shown[0].system);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("**Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Overload at the input."));
    EXPECT_EQ(messages.shown[0].style, 16);
    EXPECT_TRUE(messages.shown[1].system);
    EXPECT_EQ(messages.shown[1].title, QStringLiteral("**Information"));
    EXPECT_EQ(messages.shown[1].style, 64);
}

TEST_F(DeviceDispatch, MismatchNoticeTIsShownUnlessThePairIsKnownGood)
{
    const QByteArray mismatch = "Version number mismatch. The firmware may need upgrading.";
    send(text('T', '1', mismatch));
    EXPECT_EQ(messages.shown.size(), 1U);
    send(numbers('O', '0', 1, 23, 1, 1) + text('T', '1', mismatch));
    EXPECT_EQ(messages.shown.size(), 1U);
    send(text('T', '0', mismatch));
    EXPECT_EQ(messages.shown.size(), 2U);
}

TEST_F(DeviceDispatch, SerialNumberVNamesTheSectionOfTheSettings)
{
    send(text('V', '0', "T46-0815"));
    EXPECT_EQ(mirror.strDeviceSerial, QStringLiteral("T46-0815"));
    EXPECT_EQ(changed(), Parts{MirrorPart::SerialNumber});
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("T46-0815"), "iNumPoints"), QStringLiteral("(none)"))
        << "its answer is not complete";
    send(numbers('X', '2', 5000, 9000, 64, -1, 3));
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("T46-0815"), "iNumPoints"), QStringLiteral("100"));
}

TEST_F(DeviceDispatch, CompleteStateXMakesTheSettingsLiveAndSendsTheSavedOnes)
{
    send(text('V', '0', "S1"));
    setting("S1", "iNumPoints", 256);
    setting("S1", "bfRepeat", true);
    written();
    send(numbers('X', '1', 5000, 9000, 64, -1, 3));
    EXPECT_TRUE(state.gbfDeviceReady);
    EXPECT_EQ(panel(9), QStringLiteral("B to A"));
    EXPECT_EQ(panel(3), QStringLiteral("5000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("9000 Hz"));
    EXPECT_EQ(panel(5), QStringLiteral("64 pts"));
    EXPECT_EQ(panel(8), QStringLiteral("Start"));
    EXPECT_EQ(mirror.iSweepMode, 1);
    EXPECT_EQ(mirror.dblStartFrequency, 5000);
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
    EXPECT_EQ(mirror.iPointsInTest, 64);
    EXPECT_EQ(mirror.iTestParam7, 3);
    EXPECT_EQ(mirror.iNumPoints, 256);
    EXPECT_TRUE(repeatStatus);
    EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 256|atten 0|repeat 1|sweepmode 1|"
                                                   "period 0|startfreq 5000|endfreq 9000"));
    EXPECT_EQ(completed, 1);
}

TEST_F(DeviceDispatch, CompleteStateXClampsTheCountOfPoints)
{
    send(numbers('X', '2', 0, 0, 40000, 0, 0));
    EXPECT_EQ(mirror.iPointsInTest, 32767);
    EXPECT_EQ(panel(5), QStringLiteral("32767 pts"));
}

TEST_F(DeviceDispatch, CompleteStateXDuringATestShowsTheProgress)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    send(numbers('F', '0', 40000, 50, 30, 1, 4) + numbers('X', '2', 0, 0, 10, 0, 0));
    EXPECT_EQ(panel(5), QStringLiteral("5/10 pts"));
}

TEST_F(DeviceDispatch, PointsFinishedYGoesToTheNextFreePen)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 128;
    document->UpdatePenLock(1, true);
    send(numbers('Y', 'x'));
    EXPECT_EQ(document->gCurrentPen(), 2);
    EXPECT_EQ(panel(5), QStringLiteral("128 pts"));
    EXPECT_TRUE(state.gbfPlotting);
    send(numbers('E', '0'));
    window.panels.erase(5);
    send(numbers('Y', '0'));
    EXPECT_EQ(window.panels.count(5), 0U);
    EXPECT_EQ(document->gCurrentPen(), 3);
}

TEST_F(DeviceDispatch, ActivePenAIsTheUsersNumber)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    QList<int> pens;
    QObject::connect(document.get(), &PenDocument::currentPenChanged, [&](int pen) { pens << pen; });
    send(numbers('a', '1') + numbers('a', 'A') + numbers('a', '0'));
    EXPECT_EQ(pens, (QList<int>{0, 9}));
}

TEST_F(DeviceDispatch, ExtentsWantedCSetsTheFlagAndReturnsToViewing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    document->gbfSendZoom = false;
    send(numbers('c', 'x'));
    EXPECT_TRUE(document->gbfSendZoom);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    startPlotting();
    send(numbers('c', '0'));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
}

TEST_F(DeviceDispatch, EndOfProgramHClosesTheDocumentsFirst)
{
    send(numbers('h', '0'));
    EXPECT_EQ(window.calls, (QStringList{QStringLiteral("mnuWindowCloseAll_Click"), QStringLiteral("endProgram")}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DeviceDispatch, ScriptStateK)
{
    send(numbers('k', '1'));
    EXPECT_TRUE(state.gbfScriptRunning);
    QList<bool> states;
    QObject::connect(&module.events(), &InstrumentEvents::scriptRunning, [&](bool running) { states << running; });
    send(numbers('k', '0'));
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_EQ(states, QList<bool>{false});
}

TEST_F(DeviceDispatch, DeviceInformationLFillsItsSlots)
{
    for (int slot = 0; slot < 6; ++slot)
        send(text('l', static_cast<char>('0' + slot), QByteArray("Info ") + QByteArray::number(slot)));
    for (std::size_t slot = 0; slot < 6; ++slot)
        EXPECT_EQ(mirror.strDeviceInfo[slot], QStringLiteral("Info %1").arg(slot));
    send(text('l', '6', "T46"));
    EXPECT_EQ(mirror.strDeviceModel, QStringLiteral("T46"));
    EXPECT_EQ(device.DeviceType(), 1);
    send(text('l', '6', "PELLFERN"));
    EXPECT_EQ(device.DeviceType(), 2);
    EXPECT_TRUE(device.SamplingDevice());
    send(text('l', '7', "nowhere") + text('l', 'A', "nowhere"));
    EXPECT_EQ(mirror.strDeviceModel, QStringLiteral("PELLFERN"));
}

TEST_F(DeviceDispatch, StateTextRFillsPanelOne)
{
    send(text('r', '0', " Calibrating "));
    EXPECT_EQ(panel(1), QStringLiteral("Calibrating"));
    send(text('r', '0', "\xb5V"));
    EXPECT_EQ(panel(1), QStringLiteral(u"\u00b5V"));
}

TEST_F(DeviceDispatch, SweepRangeSConfirmsTheRange)
{
    send(numbers('s', '0', 1, 2500.5, 7000));
    EXPECT_EQ(mirror.dblStartFrequency, 2500.5);
    EXPECT_EQ(mirror.dblEndFrequency, 7000);
    EXPECT_EQ(panel(3), QStringLiteral("2500.5 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("7000 Hz"));
    EXPECT_EQ(changed(), Parts{MirrorPart::SweepRangeConfirmed});
}

TEST_F(DeviceDispatch, FrequencyCompensationT)
{
    send(numbers('t', '0', 1000123));
    EXPECT_EQ(mirror.dblFreqComp, 1000123);
    EXPECT_EQ(changed(), Parts{MirrorPart::FrequencyCompensation});
}

TEST_F(DeviceDispatch, LoopViewUIsForImpedanceAndReactance)
{
    send(numbers('u', '1'));
    EXPECT_TRUE(window.calls.isEmpty());
    for (const std::int16_t type : {PenDocument::Amplitude, PenDocument::Impedance, PenDocument::Reactance}) {
        const auto document = makeDocument(type);
        activate(document);
        window.calls.clear();
        send(numbers('u', '1'));
        EXPECT_EQ(window.calls.contains(QStringLiteral("loop view wanted")), type != PenDocument::Amplitude) << type;
    }
    window.calls.clear();
    send(numbers('u', '0'));
    EXPECT_EQ(window.calls, QStringList{QStringLiteral("loop view ended")});
}

TEST_F(DeviceDispatch, FlagsReadFromNumbersAreTrueUnlessExactlyZero)
{
    send(numbers('E', '0', 1e-12, 1, 2, -0.5, -1));
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    send(frametext::raw('E', '0', "-0", "1", "2", "", "0"));
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_FALSE(state.gbfSweepActive);
}

TEST_F(DeviceDispatch, FieldThatFailsLeavesTheMirrorAsItWas)
{
    for (const char code : QByteArray("ACEJLPX")) {
        const InstrumentMirror before = mirror;
        for (const QByteArray& frame :
             {frametext::raw(code, 'x', "7", "7", "7", "7", "7"), frametext::raw(code, '1', "7", "7", "7", "7", "x")}) {
            send(frame);
            EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency) << code;
            EXPECT_EQ(mirror.bfAttenuationAvailable, before.bfAttenuationAvailable) << code;
            EXPECT_EQ(mirror.iPointsInTest, before.iPointsInTest) << code;
            EXPECT_EQ(mirror.dblAmpMinFreq, before.dblAmpMinFreq) << code;
            EXPECT_EQ(mirror.iVdutCode, before.iVdutCode) << code;
        }
    }
    EXPECT_TRUE(window.panels.empty());
    EXPECT_FALSE(state.gbfDeviceReady);
}

TEST_F(DeviceDispatch, HugeNumbersAreClampedToTheTypeOfTheVariable)
{
    send(frametext::raw('A', '1', "0", "0", "1", "1e30", "99999") +
         frametext::raw('P', '1', "-1e30", "0", "0", "0", "0"));
    EXPECT_EQ(mirror.iAttenuationCode, 32767);
    EXPECT_EQ(mirror.iAttenuationSteps, 32767);
    EXPECT_EQ(mirror.iPointsInTest, -32768);
}

TEST_F(DeviceDispatch, DamagedNumbersOfTheStateAreNeverSent)
{
    send(numbers('L', '1', 20, 4000000, -80, 5));
    written();
    for (const char* damaged : {"1e999", "-1e999", "0", "9e9", "5", "x"}) {
        reconnect();
        const InstrumentMirror before = mirror;
        send(frametext::raw('X', '9', damaged, damaged, "64",
                            qAbs(values::tolerantNumber(damaged)) > 0 ? damaged : "-7", "0"));
        EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|"
                                                       "period 0|startfreq 1000|endfreq 1000000"))
            << damaged;
        send(frametext::raw('s', '0', "0", damaged, damaged, "0", "0") +
             frametext::raw('K', '9', "inf", damaged, damaged, "0", "0") +
             frametext::raw('L', '1', damaged, damaged, damaged, damaged, "0"));
        EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency) << damaged;
        EXPECT_EQ(mirror.dblEndFrequency, before.dblEndFrequency) << damaged;
        EXPECT_EQ(mirror.dblAmpMinFreq, 20) << damaged;
        EXPECT_EQ(mirror.dblAmpMaxFreq, 4000000) << damaged;
        EXPECT_EQ(mirror.dblAmpMinDb, -80) << damaged;
        mirror.dblIdleFrequency = -1;
    }
    EXPECT_EQ(panel(3), QStringLiteral("1000 Hz"));
}

TEST_F(DeviceDispatch, DamagedRangesOfATestAreNotBelieved)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(numbers('L', '1', 20, 4000000, -80, 5));
    for (const char code : {'D', 'E'}) {
        for (const char* damaged : {"1e999", "-1e999", "0", "9e9", "5", "x"}) {
            send(frametext::raw(code, '1', "1", damaged, "60000", "0", "0"));
            EXPECT_EQ(mirror.dblStartFrequency, 1000) << code << damaged;
            EXPECT_EQ(mirror.dblEndFrequency, 60000) << code << damaged;
            send(frametext::raw(code, '1', "1", "1000", damaged, "0", "0"));
            EXPECT_EQ(mirror.dblEndFrequency, 60000) << code << damaged;
            EXPECT_EQ(panel(3), QStringLiteral("1000 Hz")) << code << damaged;
            EXPECT_EQ(panel(4), QStringLiteral("60000 Hz")) << code << damaged;
        }
    }
}

TEST_F(DeviceDispatch, StoredSettingsThatNoInstrumentHasAreNeverSent)
{
    const std::pair<const char*, const char*> wild[] = {
        {"iNumPoints", "0"},         {"iNumPoints", "-5"},       {"iNumPoints", "1025"},
        {"iTestPeriod", "-1"},       {"iTestPeriod", "40000"},   {"iAttenuationCode", "4"},
        {"iAttenuationCode", "-1"},  {"iSweepMode", "3"},        {"dblStartFrequency", "0"},
        {"dblEndFrequency", "1e30"}, {"dblIdleFrequency", "-2"}, {"dblStartFrequency", "-1000"},
    };
    for (const auto& [key, value] : wild) {
        reconnect();
        setting("S1", key, QLatin1String(value));
        send(text('V', '0', "S1") + numbers('A', '1', 0, 0, 10, 0, 3) + numbers('X', '2', 5000, 9000, 64, -1, 3));
        EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|"
                                                       "period 0|startfreq 5000|endfreq 9000"))
            << key << ' ' << value;
    }
}

TEST_F(DeviceDispatch, StoredSamplesAreSentWithTheStateWhetherOrNotADialogIsOpen)
{
    const auto sentFor = [this](const char* model, bool scriptRuns = false) {
        reconnect();
        state.gbfScriptRunning = scriptRuns;
        send(text('V', '0', "S1") + text('l', '6', model) + numbers('X', '2', 5000, 9000, 64, -1, 3));
        return written().filter(QStringLiteral("samples")).join(u'|');
    };
    EXPECT_EQ(sentFor("PELLFERN"), QString()) << "none is known, none is forced";
    setting("S1", "Samples", 64);
    EXPECT_EQ(sentFor("PELLFERN"), QStringLiteral("samples 64"));
    for (const int wild : {0, -3, 5000}) {
        setting("S1", "Samples", wild);
        EXPECT_EQ(sentFor("PELLFERN"), QString()) << wild;
    }
    setting("S1", "Samples", 100);
    EXPECT_EQ(sentFor("PELLFERN"), QStringLiteral("samples 64"));
    EXPECT_EQ(sentFor("PELLFERN", true), QString());
    EXPECT_EQ(sentFor("T46"), QString());
}

TEST_F(DeviceDispatch, OwnersOfOtherCodesRegisterTheirHandlers)
{
    QStringList seen;
    for (const char code : QByteArray("UZbfgijmnopqvx"))
        module.registerHandler(code, [&seen](const Frame& frame) {
            seen << QString(QLatin1Char(frame.code())) + QLatin1Char(frame.selector()) + frame.text();
            return true;
        });
    send(text('U', '2', "title") + text('x', '0', "name"));
    EXPECT_EQ(seen, (QStringList{QStringLiteral("U2title"), QStringLiteral("x0name")}));
}

} // namespace
