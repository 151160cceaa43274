// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptHost.h"

#include "script/FerrolexChecker.h"
#include "script/ScriptFixture.h"
#include "script/ScriptWindows.h"

#include <QFile>

namespace {

class RecordingChecker : public ScriptChecker
{
public:
    std::int16_t CheckScript(const QString& fileName, double& firmwareVersion, QString& deviceModel) override
    {
        checked << QStringLiteral("%1 | %2 | %3").arg(fileName).arg(firmwareVersion).arg(deviceModel);
        return code;
    }
    void GetMessages(std::int32_t, QString& buffer) override { buffer = QStringLiteral("1:1: error: x"); }

    std::int16_t code = Clean;
    QStringList checked;
};

class RecordingWindows : public ScriptWindows
{
public:
    QString openFileName(const QString& title, const QString& wantedFilters, const QString& inFolder) override
    {
        calls << QStringLiteral("open %1").arg(title);
        filters = wantedFilters;
        folder = inFolder;
        return chosen;
    }
    void refresh() override { calls << QStringLiteral("refresh"); }
    void showMessages(ScriptChecker&) override { calls << QStringLiteral("messages"); }
    void showTransfer(ScriptTransfer& transfer) override
    {
        calls << QStringLiteral("transfer");
        if (onTransfer)
            onTransfer(transfer);
    }
    void unloadTransfer() override { calls << QStringLiteral("transfer gone"); }
    void unloadSettings() override { calls << QStringLiteral("settings gone"); }

    QString chosen, filters, folder;
    QStringList calls;
    std::function<void(ScriptTransfer&)> onTransfer;
};

class ScriptHostTest : public ScriptFixture
{
protected:
    ScriptHostTest()
    {
        setFolder(options::kScriptFiles, QStringLiteral("scripts"));
        QFile file(windows.chosen = folder.filePath(QStringLiteral("scripts/job.mgs")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kScript);
        window.onProcessEvents = [this] { drain(); };
        window.onCloseAll = [this] { documents.CloseAll(); };
        mirror.dblFirmwareVersion = 1.25;
        mirror.strDeviceModel = QStringLiteral("T46");
    }

    static inline const QByteArray kScript{"measure\n"};
    static inline const QByteArray kSent{"loadscript 8\rmeasure\n"};

    RecordingChecker checker;
    RecordingWindows windows;
    ScriptHost host{module, run, checker, windows};
};

// Run -----------------------------------------------------------------------------------------------------------------

TEST_F(ScriptHostTest, ACleanScriptIsChosenCheckedSentAndRun)
{
    newDocument('1');
    farEnd();
    host.mnuRunTestScript_Click();
    EXPECT_EQ(checker.checked, QStringList{windows.chosen + QStringLiteral(" | 1.25 | T46")});
    EXPECT_EQ(windows.calls,
              QStringList({"open Run Script", "refresh", "transfer", "refresh", "transfer gone", "settings gone"}));
    EXPECT_EQ(windows.filters, QStringLiteral("MarrowickGraph script files(*.mgs)|*.mgs|All files(*.*)|*.*"));
    EXPECT_EQ(windows.folder, folder.filePath(QStringLiteral("scripts")));
    EXPECT_EQ(farEnd(), kSent + "run\r");
    EXPECT_TRUE(state.gbfScriptRunning);
    EXPECT_EQ(documents.count(), 0);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ScriptHostTest, ScriptRunningIsSetBeforeRunGoesOut)
{
    bool wasSet = false;
    // The last that is written is "run".
    windows.onTransfer = [&](ScriptTransfer&) { EXPECT_FALSE(state.gbfScriptRunning); };
    host.mnuRunTestScript_Click();
    wasSet = state.gbfScriptRunning;
    EXPECT_TRUE(wasSet);
    act(frametext::text('k', '0', ""));
    EXPECT_FALSE(state.gbfScriptRunning);
}

TEST_F(ScriptHostTest, CancelOfTheFileDialogDoesNothing)
{
    newDocument('1');
    farEnd();
    windows.chosen.clear();
    host.mnuRunTestScript_Click();
    EXPECT_EQ(windows.calls, QStringList{"open Run Script"});
    EXPECT_TRUE(checker.checked.isEmpty());
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_EQ(documents.count(), 1);
}

TEST_F(ScriptHostTest, WarningsAndOkRunTheScriptAndCloseAllDocuments)
{
    newDocument('1');
    farEnd();
    checker.code = ScriptChecker::Warnings;
    host.mnuRunTestScript_Click();
    EXPECT_EQ(said(), QStringList{"Warnings encountered, do you wish to procede? | Script warning messages | 49"});
    EXPECT_EQ(farEnd(), kSent + "run\r");
    EXPECT_EQ(documents.count(), 0);
    EXPECT_FALSE(windows.calls.contains(QStringLiteral("messages")));
}

TEST_F(ScriptHostTest, WarningsAndCancelShowTheMessagesAndLeaveDocumentsOpen)
{
    newDocument('1');
    farEnd();
    checker.code = ScriptChecker::Warnings;
    messages.replies = {UserMessages::ReplyCancel};
    host.mnuRunTestScript_Click();
    EXPECT_EQ(windows.calls, QStringList({"open Run Script", "refresh", "messages"}));
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_EQ(documents.count(), 1);
    EXPECT_FALSE(state.gbfScriptRunning);
}

TEST_F(ScriptHostTest, AScriptWithErrorsNeverReachesTheInstrument)
{
    for (const std::int16_t code : {ScriptChecker::Errors, ScriptChecker::SevereErrors}) {
        messages.shown.clear();
        windows.calls.clear();
        checker.code = code;
        host.mnuRunTestScript_Click();
        EXPECT_EQ(said(),
                  QStringList{"Errors found in script, click OK to view messages | Script Error messages | 16"});
        EXPECT_EQ(windows.calls, QStringList({"open Run Script", "refresh", "messages"}));
        EXPECT_EQ(farEnd(), QByteArray());
    }
}

TEST_F(ScriptHostTest, AnyOtherCodeDoesNothingFurther)
{
    for (const std::int16_t code : {std::int16_t(4), std::int16_t(-1)}) {
        checker.code = code;
        host.checkAndRun(windows.chosen);
    }
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(farEnd(), QByteArray());
}

TEST_F(ScriptHostTest, ARunningScriptOrTestIsAskedAboutFirst)
{
    state.gbfScriptRunning = true;
    messages.replies = {UserMessages::ReplyCancel};
    host.mnuRunTestScript_Click();
    EXPECT_EQ(said(),
              QStringList{"This action will stop the test, click Cancel to continue testing | Abort test? | 33"});
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_TRUE(state.gbfScriptRunning);
    messages.replies = {UserMessages::ReplyOk};
    windows.chosen.clear();
    host.mnuRunTestScript_Click();
    EXPECT_EQ(farEnd(), "y\r");
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_EQ(windows.calls, QStringList{"open Run Script"});
}

TEST_F(ScriptHostTest, WithoutAnInstrumentTheChooserIsOfferedAndNothingElseHappens)
{
    device.Close();
    newDocumentWithoutInstrument();
    host.mnuRunTestScript_Click();
    EXPECT_EQ(window.calls.count(QStringLiteral("mnuTestDevice_Click")), 1);
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_EQ(documents.count(), 1);
}

TEST_F(ScriptHostTest, AnInstrumentThatIsChosenIsGivenTheScriptBehindItsAnswers)
{
    device.Close();
    farEnd();
    window.onDeviceChooser = [this] {
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(pty.slavePath()), QStringLiteral("PTY")));
    };
    host.mnuRunTestScript_Click();
    const QByteArray bytes = farEnd();
    EXPECT_TRUE(bytes.endsWith(kSent + "run\r")) << bytes.toStdString();
    EXPECT_EQ(bytes.count("enquire "), 2);
}

// The road from the transfer to "run" ---------------------------------------------------------------------------------

TEST_F(ScriptHostTest, ACancelledTransferGoesOnWithTheNextStepsButNeverRunsAnOlderScript)
{
    newDocument('1');
    farEnd();
    windows.onTransfer = [](ScriptTransfer& transfer) {
        QObject::connect(&transfer, &ScriptTransfer::begun, &transfer, &ScriptTransfer::cancel);
    };
    QFile file(windows.chosen);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(3000, '#'));
    file.close();
    host.RunScriptFile(windows.chosen);
    EXPECT_EQ(documents.count(), 0);
    EXPECT_TRUE(windows.calls.contains(QStringLiteral("settings gone")));
    EXPECT_FALSE(farEnd().contains("run\r"));
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_EQ(said(), QStringList{"The script is not run. The sending of the script was cancelled. | Run Script | 48"});
}

TEST_F(ScriptHostTest, AnEmptyScriptIsNotRunAndASentenceSaysSo)
{
    QFile::resize(windows.chosen, 0);
    host.RunScriptFile(windows.chosen);
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_EQ(
        said(),
        QStringList{
            QStringLiteral("The script is not run. The script %1 is empty. | Run Script | 48").arg(windows.chosen)});
}

TEST_F(ScriptHostTest, AScriptThatCannotBeReadIsNotRunAndASentenceSaysSo)
{
    host.RunScriptFile(folder.filePath(QStringLiteral("missing.mgs")));
    EXPECT_EQ(farEnd(), QByteArray());
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_TRUE(messages.shown[0].text.startsWith(QLatin1String("The script is not run. The script /")));
}

TEST_F(ScriptHostTest, AnInstrumentThatIsChosenBehindALostTransferIsNotToldToRun)
{
    window.onCloseAll = [this] { device.Close(); };
    window.onDeviceChooser = [this] {
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(pty.slavePath()), QStringLiteral("PTY")));
    };
    host.RunScriptFile(windows.chosen);
    EXPECT_FALSE(farEnd().contains("run\r"));
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_EQ(said(), QStringList{"The script is not run. The link to the instrument that was sent the script has "
                                  "ended. | Run Script | 48"});
}

TEST_F(ScriptHostTest, WithoutAnInstrumentBehindTheTransferTheRunEndsSilently)
{
    window.onCloseAll = [this] { device.Close(); };
    host.RunScriptFile(windows.chosen);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_FALSE(windows.calls.contains(QStringLiteral("settings gone")));
}

TEST_F(ScriptHostTest, ASecondRunInTheMidstOfOneIsIgnored)
{
    windows.onTransfer = [this](ScriptTransfer&) {
        host.mnuRunTestScript_Click();
        host.mnuReRunLastTestScript_Click();
        host.mnuSendTestScript_Click();
        host.checkAndRun(windows.chosen);
        host.RunScriptFile(windows.chosen);
        host.runAtStart(windows.chosen);
    };
    host.mnuRunTestScript_Click();
    EXPECT_EQ(checker.checked.size(), 1);
    EXPECT_EQ(farEnd(), kSent + "run\r");
}

// Re-run --------------------------------------------------------------------------------------------------------------

TEST_F(ScriptHostTest, ReRunSendsOneStringAndNoScript)
{
    newDocument('1');
    farEnd();
    host.mnuReRunLastTestScript_Click();
    EXPECT_EQ(farEnd(), "y\rrun\r");
    EXPECT_EQ(windows.calls, QStringList{"settings gone"});
    EXPECT_EQ(documents.count(), 0);
    EXPECT_TRUE(state.gbfScriptRunning);
}

TEST_F(ScriptHostTest, ReRunWithoutConnectionAndInstrumentLeavesDocumentsUntouched)
{
    device.Close();
    newDocumentWithoutInstrument();
    host.mnuReRunLastTestScript_Click();
    EXPECT_EQ(window.calls.count(QStringLiteral("mnuTestDevice_Click")), 1);
    EXPECT_EQ(documents.count(), 1);
    EXPECT_TRUE(windows.calls.isEmpty());
    EXPECT_FALSE(state.gbfScriptRunning);
}

TEST_F(ScriptHostTest, ReRunWhilePlottingAsksFirst)
{
    newDocument('1');
    act(frametext::numbers('D', '1', 1, 1000, 2000, 0, 0));
    ASSERT_TRUE(state.gbfPlotting);
    messages.replies = {UserMessages::ReplyCancel};
    host.mnuReRunLastTestScript_Click();
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_EQ(documents.count(), 1);
}

// Send only -----------------------------------------------------------------------------------------------------------

TEST_F(ScriptHostTest, SendOnlySendsWithoutCheckAndRunAndKeepsDocuments)
{
    newDocument('1');
    farEnd();
    host.mnuSendTestScript_Click();
    EXPECT_EQ(windows.calls, QStringList({"open ", "transfer", "refresh", "transfer gone"}));
    EXPECT_TRUE(checker.checked.isEmpty());
    EXPECT_EQ(farEnd(), kSent);
    EXPECT_EQ(documents.count(), 1);
    EXPECT_FALSE(state.gbfScriptRunning);
}

TEST_F(ScriptHostTest, SendOnlyIsSilentAboutACancelAndTellsWhatTheUserCannotSee)
{
    windows.onTransfer = [](ScriptTransfer& transfer) {
        QObject::connect(&transfer, &ScriptTransfer::begun, &transfer, &ScriptTransfer::cancel);
    };
    host.mnuSendTestScript_Click();
    EXPECT_TRUE(messages.shown.empty());
    QFile::resize(windows.chosen, 0);
    host.mnuSendTestScript_Click();
    EXPECT_EQ(said(),
              QStringList{QStringLiteral("The script %1 is empty. | Send Test Script | 48").arg(windows.chosen)});
}

// Start of the program ------------------------------------------------------------------------------------------------

TEST_F(ScriptHostTest, AScriptOfTheCommandLineEndsWhatRunsThenIsCheckedAndRun)
{
    host.runAtStart(windows.chosen);
    EXPECT_EQ(farEnd(), "y\r" + kSent + "run\r");
    EXPECT_EQ(checker.checked.size(), 1);
}

TEST_F(ScriptHostTest, AScriptOfTheCommandLineIsPassedOverWithoutAnInstrument)
{
    device.Close();
    host.runAtStart(windows.chosen);
    EXPECT_EQ(window.calls.count(QStringLiteral("mnuTestDevice_Click")), 1);
    EXPECT_TRUE(checker.checked.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

// The checker of the program ------------------------------------------------------------------------------------------

TEST_F(ScriptHostTest, TheMeasuresOfTheScriptLastCheckedOutliveTheChecker)
{
    double firmware = 0;
    QString model;
    {
        FerrolexChecker first(preferences);
        EXPECT_EQ(first.ShowQ(), 1) << "all of them before the first check";
        QFile file(windows.chosen);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("graph impedance \"A\"\n");
        file.close();
        first.CheckScript(windows.chosen, firmware, model);
    }
    const FerrolexChecker second(preferences);
    EXPECT_EQ(second.ShowF1(), 0);
    EXPECT_EQ(second.ShowF2(), 0);
    EXPECT_EQ(second.ShowFr(), 0);
    EXPECT_EQ(second.ShowZr(), 0);
    EXPECT_EQ(second.ShowQ(), 0);
}

TEST_F(ScriptHostTest, AFileThatCannotBeReadLeavesTheMeasuresAsTheyWere)
{
    double firmware = 0;
    QString model, text;
    FerrolexChecker real(preferences);
    EXPECT_EQ(real.CheckScript(folder.filePath(QStringLiteral("missing.mgs")), firmware, model),
              ScriptChecker::SevereErrors);
    EXPECT_EQ(real.ShowQ(), 1);
    real.GetMessages(ScriptChecker::kLongestMessages, text);
    EXPECT_TRUE(text.contains(QLatin1String("missing.mgs"))) << text.toStdString();
}

} // namespace
