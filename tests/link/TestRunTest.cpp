// SPDX-License-Identifier: GPL-3.0-or-later
// Start, stop, repeat, the refusals and the questions.
#include "LinkFixture.h"

namespace {

using frametext::numbers;

const QString kTestSettings = QStringLiteral("idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|period 0|phase 1");

class TestRunTest : public LinkFixture
{
protected:
    void SetUp() override
    {
        setting("Prompts", "OpenSettings", 0);
        connectDevice();
        module.setSettingsDialog(&dialog);
        window.calls.clear();
    }
    std::unique_ptr<PenDocument> activeDocument(std::int16_t type)
    {
        auto document = makeDocument(type);
        activate(document);
        document->gbfSendZoom = false;
        written();
        return document;
    }
    QString startAndRead()
    {
        run.mnuTestStart_Click();
        return written().join(u'|');
    }
    void expectMessage(const char* title, const char* text, int style)
    {
        ASSERT_EQ(messages.shown.size(), 1U);
        EXPECT_EQ(messages.shown[0].title, QLatin1String(title));
        EXPECT_EQ(messages.shown[0].text, QLatin1String(text));
        EXPECT_EQ(messages.shown[0].style, style);
        EXPECT_FALSE(messages.shown[0].system);
    }
    static void lockAll(PenDocument& document)
    {
        for (int pen = 0; pen < PenDocument::kPens; ++pen)
            document.UpdatePenLock(pen, true);
    }
};

TEST_F(TestRunTest, StartSendsTheSettingsAndTheTestOfTheDocument)
{
    const auto amplitude = activeDocument(PenDocument::Amplitude);
    EXPECT_EQ(startAndRead(), kTestSettings + QStringLiteral("|setpin 21|y|amptest"));
    const auto impedance = activeDocument(PenDocument::Impedance);
    mirror.bfPhaseOn = false;
    mirror.dblIdleFrequency = 12000;
    mirror.iNumPoints = 24;
    mirror.iAttenuationCode = 2;
    mirror.bfRepeat = true;
    mirror.iSweepMode = 0;
    mirror.iTestPeriod = 5;
    EXPECT_EQ(
        startAndRead(),
        QStringLiteral("idlefreq 12000|points 24|atten 2|repeat 1|sweepmode 0|period 5|phase 0|setpin 11|y|imptest"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(TestRunTest, ReactanceDocumentForcesThePhase)
{
    const auto document = activeDocument(PenDocument::Reactance);
    mirror.bfPhaseOn = false;
    EXPECT_EQ(startAndRead(), QStringLiteral("idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|period 0|phase 0|"
                                             "setpin 11|phase 1|y|imptest"));
}

TEST_F(TestRunTest, StopAndStartOfATestAreOneWrite)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    QByteArrayList chunks;
    peer().onWritten = [&chunks](QByteArrayView chunk) { chunks << chunk.toByteArray(); };
    run.mnuTestStart_Click();
    peer().onWritten = nullptr;
    ASSERT_FALSE(chunks.isEmpty());
    EXPECT_EQ(chunks.constLast(), QByteArray("y\ramptest\r"));
}

TEST_F(TestRunTest, StartDoesNotChangeTheStateByItself)
{
    const auto document = activeDocument(PenDocument::Impedance);
    startAndRead();
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_TRUE(penBarEnabled);
}

TEST_F(TestRunTest, StartSavesTheSettings)
{
    const auto document = activeDocument(PenDocument::Impedance);
    mirror.strDeviceSerial = QStringLiteral("S1");
    state.gbfDeviceReady = true;
    mirror.iNumPoints = 42;
    startAndRead();
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("42"));
}

TEST_F(TestRunTest, StartWithoutALinkOffersTheChooserAndEndsWhenNoneWasOpened)
{
    module.DeviceReset();
    const auto document = activeDocument(PenDocument::Impedance);
    EXPECT_EQ(startAndRead(), QString());
    EXPECT_TRUE(window.calls.contains(QStringLiteral("mnuTestDevice_Click")));
    EXPECT_FALSE(window.calls.contains(QStringLiteral("fileNew")));
}

TEST_F(TestRunTest, StartGoesOnWithTheInstrumentThatTheChooserHasOpened)
{
    module.DeviceReset();
    const auto document = activeDocument(PenDocument::Impedance);
    window.onDeviceChooser = [this] { connectDevice(); };
    EXPECT_EQ(startAndRead(), kTestSettings + QStringLiteral("|setpin 11|y|imptest"));
}

TEST_F(TestRunTest, AnswerToTheEnquiryLandsBeforeTheSettingsAreSent)
{
    module.DeviceReset();
    const auto document = activeDocument(PenDocument::Impedance);
    setting("S9", "iNumPoints", 77);
    window.onDeviceChooser = [this] {
        connectDevice();
        peer().send(frametext::text('V', '0', "S9") + numbers('X', '2', 1000, 2000, 100, -1, 0));
    };
    EXPECT_TRUE(startAndRead().contains(QStringLiteral("idlefreq -1|points 77|atten")));
}

TEST_F(TestRunTest, StartGivesTheAnswerFiftyOneRounds)
{
    const auto document = activeDocument(PenDocument::Impedance);
    int rounds = 0;
    window.onProcessEvents = [&rounds] { ++rounds; };
    startAndRead();
    EXPECT_EQ(rounds, 51);
    // While plotting there is nothing to wait for.
    startPlotting();
    rounds = 0;
    startAndRead();
    EXPECT_EQ(rounds, 0);
}

TEST_F(TestRunTest, StartEndsTheWaitWhenTheLinkIsLost)
{
    const auto document = activeDocument(PenDocument::Impedance);
    int rounds = 0;
    window.onProcessEvents = [&] {
        if (++rounds == 3)
            peer().unplug();
    };
    EXPECT_EQ(startAndRead(), QString());
    EXPECT_LT(rounds, 10);
}

TEST_F(TestRunTest, StartWithoutADocumentOffersANewOneAndStops)
{
    EXPECT_EQ(startAndRead(), QString());
    EXPECT_EQ(window.calls, QStringList{QStringLiteral("fileNew")});
}

TEST_F(TestRunTest, NewDocumentOfTheStartIsTheUsersToStart)
{
    std::unique_ptr<PenDocument> document;
    window.onFileNew = [&] {
        document = makeDocument(PenDocument::Impedance);
        activate(document);
    };
    const QString commands = startAndRead();
    EXPECT_FALSE(commands.contains(QStringLiteral("imptest")));
    ASSERT_NE(document, nullptr);
    document->gbfSendZoom = false;
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("y|imptest")));
}

TEST_F(TestRunTest, GraphThatIsNoFrequencyGraphIsRefusedWithoutACommand)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setXAxisLabel(QStringLiteral("Phase trim"));
    EXPECT_EQ(startAndRead(), QString());
    expectMessage("Wrong graph type!", "Graph not suitable for data!", 48);
}

TEST_F(TestRunTest, AxisLabelIsComparedWithoutRegardToCase)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setXAxisLabel(QStringLiteral("FREQUENCY - hz"));
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
}

TEST_F(TestRunTest, StartOnALockedPenGoesToTheNextFreeOne)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->UpdatePenLock(0, true);
    document->UpdatePenLock(1, true);
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
    EXPECT_EQ(document->gCurrentPen(), 2);
}

TEST_F(TestRunTest, AllPensLockedIsRefusedAndNothingIsSent)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    lockAll(*document);
    EXPECT_EQ(startAndRead(), QString());
    expectMessage("Information", "All pens are locked!", 64);
}

TEST_F(TestRunTest, DocumentOfANewerFormatIsRefused)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    setNewerFormat(*document);
    EXPECT_EQ(startAndRead(), QString());
    expectMessage("Data acquisition not possible", "New data format. Please check for updates.", 64);
}

TEST_F(TestRunTest, RefusalsComeInTheirOrder)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setXAxisLabel(QStringLiteral("Phase trim"));
    lockAll(*document);
    setNewerFormat(*document);
    dialog.monitor = true;
    startAndRead();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Wrong graph type!"));
    document->peGraph().setXAxisLabel(QStringLiteral("Frequency - Hz"));
    startAndRead();
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown[1].text, QStringLiteral("All pens are locked!"));
    EXPECT_TRUE(dialog.monitor);
    document->UnlockAllPens();
    startAndRead();
    ASSERT_EQ(messages.shown.size(), 3U);
    EXPECT_EQ(messages.shown[2].title, QStringLiteral("Data acquisition not possible"));
    // The monitor ends before the version is looked at.
    EXPECT_FALSE(dialog.monitor);
}

TEST_F(TestRunTest, MonitorEndsBeforeTheSweep)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    dialog.monitor = true;
    startAndRead();
    EXPECT_FALSE(dialog.monitor);
    EXPECT_EQ(dialog.unchecked, 1);
    startAndRead();
    EXPECT_EQ(dialog.unchecked, 1);
}

TEST_F(TestRunTest, OverwriteQuestionIsAskedForOneRealPointOnly)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(document->pens().hasData(0));
    document->peGraph().setYData(0, 1023, -3.0F);
    EXPECT_TRUE(document->pens().hasData(0));
    EXPECT_FALSE(document->pens().hasData(1));
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
    expectMessage("Overwrite existing?", "Do you want to overwrite this pen?", 33);
}

TEST_F(TestRunTest, RefusedOverwriteLeavesTheSettingsInForce)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setYData(0, 0, -3.0F);
    messages.replies = {UserMessages::ReplyCancel};
    EXPECT_EQ(startAndRead(), kTestSettings);
    EXPECT_EQ(document->peGraph().YData(0, 0), -3.0F);
}

TEST_F(TestRunTest, OverwriteIsNotAskedIfThePreferencesSaySo)
{
    setting("Prompts", "PromptOverwrite", 0);
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setYData(0, 0, -3.0F);
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(TestRunTest, AnswerOtherThanCancelOverwrites)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setYData(0, 0, -3.0F);
    messages.replies = {UserMessages::ReplyNone};
    EXPECT_TRUE(startAndRead().endsWith(QStringLiteral("amptest")));
}

TEST_F(TestRunTest, StartWhilePlottingRestartsAfterTheSameChecks)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    startPlotting();
    written();
    window.calls.clear();
    mirror.strDeviceSerial = QStringLiteral("S1");
    EXPECT_EQ(startAndRead(), kTestSettings + QStringLiteral("|setpin 21|y|amptest"));
    // The first step is skipped: nothing is saved.
    EXPECT_EQ(saved(QStringLiteral("S1"), "iNumPoints"), QStringLiteral("(none)"));
    lockAll(*document);
    EXPECT_EQ(startAndRead(), QString());
    expectMessage("Information", "All pens are locked!", 64);
}

TEST_F(TestRunTest, StartSendsTheExtentsOfADocumentThatWantsIt)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    mirror.bfGraphExtents = true;
    document->gbfSendZoom = true;
    document->UpdateTestExtents(2000, 3000);
    document->peGraph().setManualMinX(2000);
    document->peGraph().setManualMaxX(3000);
    written();
    const QString commands = startAndRead();
    EXPECT_TRUE(commands.contains(QStringLiteral("startfreq 2000|endfreq 3000"))) << commands.toStdString();
    document->gbfSendZoom = false;
    EXPECT_FALSE(startAndRead().contains(QStringLiteral("startfreq 2000")));
}

TEST_F(TestRunTest, SweepRangeOfTheDialogIsSentWhereItDiffers)
{
    dialog.low = QStringLiteral("4k7");
    dialog.high = QStringLiteral("1000000");
    run.SendSweepRange();
    EXPECT_TRUE(written().isEmpty());
    mirror.bfGraphExtents = true;
    run.SendSweepRange();
    EXPECT_EQ(written(), QStringList{QStringLiteral("startfreq 4700")});
    dialog.high = QStringLiteral("2M");
    mirror.dblStartFrequency = 4700;
    run.SendSweepRange();
    EXPECT_EQ(written(), QStringList{QStringLiteral("endfreq 2000000")});
    module.setSettingsDialog(nullptr);
    run.SendSweepRange();
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(TestRunTest, PlottingStampsTheGraphWithTheVersion)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    document->peGraph().setTXAxisLabel({});
    document->peGraph().setSubTitle(QStringLiteral("old"));
    module.recorder().GUISetPlotting(document.get());
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(module.recorder().gstrPlotKey(), document->gstrKey);
    EXPECT_FALSE(penBarEnabled);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
    const QString version = document->peGraph().TXAxisLabel();
    const qsizetype at = version.indexOf(QStringLiteral(" | "));
    ASSERT_GT(at, 0);
    EXPECT_EQ(document->peGraph().SubTitle(), version.left(at) + QStringLiteral("  ") + version.mid(at + 3));
    document->peGraph().setSubTitle({});
    module.recorder().GUISetPlotting(document.get());
    EXPECT_EQ(document->peGraph().SubTitle(), QString());
}

TEST_F(TestRunTest, PlottingNeedsADocumentAndViewingDoesNot)
{
    module.recorder().GUISetPlotting(nullptr);
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_TRUE(penBarEnabled);
    state.gbfPlotting = true;
    penBarEnabled = false;
    module.recorder().GUISetViewing();
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_TRUE(penBarEnabled);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
}

TEST_F(TestRunTest, StopWritesTheStopAndChangesNoState)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    startPlotting();
    written();
    state.gbfScriptRunning = true;
    dialog.monitor = true;
    document->gbfSendZoom = false;
    run.mnuTestStopTest_Click();
    EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_FALSE(dialog.monitor);
    EXPECT_EQ(dialog.unchecked, 1);
    EXPECT_TRUE(document->gbfSendZoom);
}

TEST_F(TestRunTest, StopWithoutALinkOpensTheFirstInstrumentFound)
{
    module.DeviceReset();
    run.mnuTestStopTest_Click();
    EXPECT_TRUE(device.Connected());
    EXPECT_EQ(written().constLast(), QStringLiteral("y"));
}

TEST_F(TestRunTest, RepeatTogglesSavesAndShows)
{
    mirror.strDeviceSerial = QStringLiteral("S1");
    state.gbfDeviceReady = true;
    run.mnuTestRepeat_Click(false);
    EXPECT_EQ(written(), QStringList{QStringLiteral("repeat 1")});
    EXPECT_TRUE(mirror.bfRepeat);
    EXPECT_TRUE(repeatStatus);
    EXPECT_EQ(saved(QStringLiteral("S1"), "bfRepeat"), QStringLiteral("True"));
    run.mnuTestRepeat_Click(true);
    EXPECT_EQ(written(), QStringList{QStringLiteral("repeat 0")});
    EXPECT_FALSE(mirror.bfRepeat);
    EXPECT_FALSE(repeatStatus);
    EXPECT_EQ(saved(QStringLiteral("S1"), "bfRepeat"), QStringLiteral("False"));
}

TEST_F(TestRunTest, CancelQuestionAnsweredOkStopsTheTest)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    startPlotting();
    written();
    messages.replies = {UserMessages::ReplyOk};
    EXPECT_FALSE(run.QuestionTestCancel());
    expectMessage("Abort test?", "This action will stop the test, click Cancel to continue testing", 33);
    EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
    EXPECT_FALSE(state.gbfPlotting);
}

TEST_F(TestRunTest, CancelQuestionAnsweredCancelLetsTheTestGoOn)
{
    const auto document = activeDocument(PenDocument::Amplitude);
    startPlotting();
    written();
    device.DisableDataEvent();
    messages.replies = {UserMessages::ReplyCancel};
    EXPECT_TRUE(run.QuestionTestCancel());
    EXPECT_TRUE(written().isEmpty());
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_TRUE(device.DataEventEnabled());
}

TEST_F(TestRunTest, SearchTriesTenIndicesAndEndsSilently)
{
    module.DeviceReset();
    m_entries->clear();
    window.calls.clear();
    window.panels.clear();
    EXPECT_FALSE(run.OpenFirstDeviceFound());
    EXPECT_FALSE(device.Connected());
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(window.panels.empty());
}

TEST_F(TestRunTest, SearchGoesOnBehindAnInstrumentThatCannotBeOpened)
{
    module.DeviceReset();
    for (int i = 0; i < 11; ++i)
        plug();
    for (std::size_t i = 0; i < 9; ++i)
        peer(i).failOpen(QStringLiteral("busy"));
    *m_opened = 0;
    EXPECT_TRUE(run.OpenFirstDeviceFound());
    EXPECT_EQ(*m_opened, 10);
    EXPECT_TRUE(peer(9).isOpen());
    module.DeviceReset();
    peer(9).failOpen(QStringLiteral("busy"));
    *m_opened = 0;
    EXPECT_FALSE(run.OpenFirstDeviceFound());
    EXPECT_EQ(*m_opened, 10);
}

TEST_F(TestRunTest, ThePinIsSaidWheneverDocumentPenOrInstrumentChange)
{
    const auto amplitude = makeDocument(PenDocument::Amplitude);
    activate(amplitude);
    EXPECT_EQ(written(), QStringList{QStringLiteral("setpin 21")});
    amplitude->setCurrentPen(2);
    EXPECT_EQ(written(), QStringList{QStringLiteral("setpin 23")});
    const auto impedance = makeDocument(PenDocument::Impedance);
    activate(impedance);
    EXPECT_EQ(written(), QStringList{QStringLiteral("setpin 11")});
    impedance->setCurrentPen(9);
    EXPECT_EQ(written(), QStringList{QStringLiteral("setpin 110")});
    amplitude->setCurrentPen(5);
    EXPECT_TRUE(written().isEmpty());
    send(frametext::numbers('X', '0', 1000, 2000, 100, -1));
    EXPECT_TRUE(written().contains(QStringLiteral("setpin 110")));
    state.gbfScriptRunning = true;
    impedance->setCurrentPen(3);
    EXPECT_TRUE(written().isEmpty());
    state.gbfScriptRunning = false;
    module.DeviceReset();
    impedance->setCurrentPen(4);
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(TestRunTest, PenBarIsInStepWithThePlottingState)
{
    const auto document = activeDocument(PenDocument::Impedance);
    startPlotting();
    EXPECT_FALSE(penBarEnabled);
    send(numbers('E', '0'));
    EXPECT_TRUE(penBarEnabled);
}

} // namespace
