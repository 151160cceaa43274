// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ExportActions.h"

#include "script/ScriptFixture.h"
#include "script/ScriptNames.h"

#include <QFile>

namespace {

class ExportActionsTest : public ScriptFixture
{
protected:
    /// Names without stamp; header, comma and line end as told.
    void setOptions(int flags, char pen = '0') { act(frametext::numbers('m', pen, 0, 0, 0, 1, flags)); }

    static QByteArray contentOf(const QString& name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
    }
};

// "m" -----------------------------------------------------------------------------------------------------------------

TEST_F(ExportActionsTest, OptionsStartAtZeroAndFalse)
{
    EXPECT_EQ(actions.exportOptions(), ScriptExportOptions());
}

TEST_F(ExportActionsTest, OptionsAreTakenFromTheirFieldsAndNotAnswered)
{
    EXPECT_EQ(act(frametext::numbers('m', 'A', 1, -2, 6, 1, 5)), QByteArray());
    EXPECT_EQ(actions.exportOptions(), (ScriptExportOptions{10, true, true, 6, true, true, false, true}));
    act(frametext::numbers('m', '3', 0, 0, 2.4, 0, 2));
    EXPECT_EQ(actions.exportOptions(), (ScriptExportOptions{3, false, false, 2, false, false, true, false}));
}

TEST_F(ExportActionsTest, EachOfTheEightFlagNumbersSetsItsBits)
{
    for (int flags = 0; flags <= 7; ++flags) {
        setOptions(flags);
        EXPECT_EQ(actions.exportOptions().bfExportHeader, (flags & 1) != 0) << flags;
        EXPECT_EQ(actions.exportOptions().bfExportComma, (flags & 2) != 0) << flags;
        EXPECT_EQ(actions.exportOptions().bfExportUnix, (flags & 4) != 0) << flags;
    }
}

TEST_F(ExportActionsTest, FlagsOutside0To7StayAsTheyWereAndTheRestIsTaken)
{
    setOptions(7);
    for (const int outside : {8, -1, 15}) {
        act(frametext::numbers('m', '4', 0, 0, 0, 0, outside));
        EXPECT_EQ(actions.exportOptions(), (ScriptExportOptions{4, false, false, 0, false, true, true, true}));
    }
}

TEST_F(ExportActionsTest, OptionsWithAFieldThatIsNoNumberChangeNothing)
{
    setOptions(3, '2');
    const ScriptExportOptions before = actions.exportOptions();
    sendBroken(frametext::raw('m', '5', "1", "1", "1", "1", "no"));
    act({});
    EXPECT_EQ(actions.exportOptions(), before);
}

// "o" and "x" ---------------------------------------------------------------------------------------------------------

TEST_F(ExportActionsTest, TextExportWritesThePenOfTheOptionsAndGoesOn)
{
    PenDocument* document = newDocument('1');
    addPoints(*document, 0, 4);
    addPoints(*document, 2, 2);
    setOptions(2 | 4, '2');
    EXPECT_EQ(act(frametext::text('o', '0', "part")), " ");
    const QByteArray text = contentOf(inExports(QStringLiteral("part.txt")));
    EXPECT_EQ(text.count("50, 30\n"), 1) << text.toStdString();
    EXPECT_FALSE(text.contains("53, 30"));
    EXPECT_FALSE(text.contains('\r'));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ExportActionsTest, SecondTextExportWritesAllPensWhateverTheOptionsSay)
{
    PenDocument* document = newDocument('1');
    addPoints(*document, 0, 4);
    addPoints(*document, 2, 2);
    setOptions(2, '2');
    EXPECT_EQ(act(frametext::text('x', '0', "part")), " ");
    const QByteArray text = contentOf(inExports(QStringLiteral("part.txt")));
    EXPECT_EQ(text.count("50, 30\r\n"), 2) << text.toStdString();
    EXPECT_TRUE(text.contains("53, 30"));
}

TEST_F(ExportActionsTest, AHeaderIsWrittenWhenItsFlagIsSet)
{
    newDocument('1', "Batch 12");
    setOptions(0);
    act(frametext::text('o', '0', "without"));
    setOptions(1);
    act(frametext::text('o', '0', "with"));
    EXPECT_FALSE(contentOf(inExports(QStringLiteral("without.txt"))).contains("Batch 12"));
    EXPECT_TRUE(contentOf(inExports(QStringLiteral("with.txt"))).contains("Batch 12"));
}

TEST_F(ExportActionsTest, WithoutStampAnExtensionIsReplacedByTxt)
{
    newDocument('1');
    setOptions(0);
    EXPECT_EQ(act(frametext::text('o', '0', "part.csv")), " ");
    EXPECT_TRUE(QFile::exists(inExports(QStringLiteral("part.txt"))));
    EXPECT_FALSE(QFile::exists(inExports(QStringLiteral("part.csv"))));
}

TEST_F(ExportActionsTest, TheStampStandsBehindTheCutNameAndAheadOfTheExtension)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('x', '0', "part.csv")), " ");
    EXPECT_TRUE(QFile::exists(inExports(QStringLiteral("part_20260304_050607_SN7.txt"))));
}

TEST_F(ExportActionsTest, ADottedExportFolderLosesEverythingFromItsFirstDotSoThatTheFileLandsBesideIt)
{
    newDocument('1');
    setOptions(0);
    setFolder(options::kExportFiles, QStringLiteral("data.v2"));
    EXPECT_EQ(act(frametext::text('o', '0', "part")), " ");
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("data.txt"))));
}

TEST_F(ExportActionsTest, TextExportAsksForAMissingName)
{
    newDocument('1');
    setOptions(0);
    ports.name = QStringLiteral("typed");
    EXPECT_EQ(act(frametext::text('o', '0', "") + frametext::text('x', '0', "")), "  ");
    EXPECT_EQ(ports.calls, QStringList({"name? Enter text file name", "name? Enter text file name"}));
    EXPECT_TRUE(QFile::exists(inExports(QStringLiteral("typed.txt"))));
}

TEST_F(ExportActionsTest, TextExportWithoutAnyNameIsSkippedWithAMessageAndGoesOn)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('x', '0', "")), " ");
    EXPECT_EQ(said(), QStringList{"No file name provided | Skipping file save | 0"});
}

TEST_F(ExportActionsTest, ATextThatCannotBeWrittenIsToldAndGoesOn)
{
    newDocument('1');
    setOptions(0);
    preferences.setValue(options::kExportFiles.option, folder.filePath(QStringLiteral("missing")));
    EXPECT_EQ(act(frametext::text('o', '0', "part")), " ");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Export Graph"));
    EXPECT_TRUE(messages.shown[0].text.startsWith(
        QStringLiteral("The text %1 is not written. ").arg(folder.filePath(QStringLiteral("missing/part.txt")))));
}

TEST_F(ExportActionsTest, WithoutADocumentEveryExportAndPrintGoesOnAtOnce)
{
    for (const char code : {'i', 'o', 'x', 'n'})
        EXPECT_EQ(act(frametext::text(code, '0', "")), " ") << code;
    EXPECT_TRUE(ports.calls.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

// "i" -----------------------------------------------------------------------------------------------------------------

TEST_F(ExportActionsTest, ImageExportHandsOverFormatAndStampedNameAndGoesOn)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('i', '0', "part")), " ");
    EXPECT_EQ(act(frametext::text('i', '1', "part")), " ");
    EXPECT_EQ(act(frametext::text('i', '2', "part")), " ");
    const QString name = inExports(QStringLiteral("part_20260304_050607_SN7"));
    EXPECT_EQ(ports.calls, QStringList({"picture 0 " + name, "picture 1 " + name, "picture 2 " + name}));
}

TEST_F(ExportActionsTest, ImageExportAddsNoExtensionOfItsOwn)
{
    newDocument('1');
    setOptions(0);
    act(frametext::text('i', '2', "part.png"));
    EXPECT_EQ(ports.calls, QStringList{"picture 2 " + inExports(QStringLiteral("part.png"))});
}

TEST_F(ExportActionsTest, ImageExportWhileTheLoopShowsExportsTheLoopNotTheDocument)
{
    newDocument('1');
    setOptions(0);
    ports.loopShows = true;
    EXPECT_EQ(act(frametext::text('i', '0', "part")), " ");
    EXPECT_EQ(ports.calls, QStringList{"loop picture 0 " + inExports(QStringLiteral("part"))});
}

TEST_F(ExportActionsTest, ImageExportAsksForAMissingNameByItsFormat)
{
    newDocument('1');
    for (const char format : {'0', '1', '2', '5'})
        EXPECT_EQ(act(frametext::text('i', format, "")), " ");
    EXPECT_EQ(ports.calls,
              QStringList({"name? Enter JPEG file name [.jpg]", "name? Enter Windows Meta File file name [.wmf]",
                           "name? Enter bitmap file name [.bmp]", "name? "}));
    EXPECT_EQ(messages.shown.size(), 4U);
}

TEST_F(ExportActionsTest, ImageExportInAFormatThatThereIsNotWritesAndSaysNothingAndGoesOn)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('i', '9', "-")), " ");
    actions.ports() = {};
    EXPECT_EQ(act(frametext::text('i', '9', "-")), " ");
    EXPECT_TRUE(ports.calls.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ExportActionsTest, AFailingImageExportIsToldAndGoesOn)
{
    newDocument('1');
    setOptions(0);
    ports.outcome = Outcome::failure(QStringLiteral("The disk is full."));
    EXPECT_EQ(act(frametext::text('i', '0', "part")), " ");
    EXPECT_EQ(said(), QStringList{QStringLiteral("The picture %1 is not written. The disk is full. | Export Graph | 48")
                                      .arg(inExports(QStringLiteral("part")))});
}

TEST_F(ExportActionsTest, WithoutPicturesASentenceIsToldAndTheScriptGoesOn)
{
    newDocument('1');
    setOptions(0);
    actions.ports() = {};
    EXPECT_EQ(act(frametext::text('i', '0', "part")), " ");
    EXPECT_EQ(said(), QStringList{QStringLiteral("The picture %1 is not written. Pictures cannot be made here. | "
                                                 "Export Graph | 48")
                                      .arg(inExports(QStringLiteral("part")))});
}

TEST_F(ExportActionsTest, TheDocumentMayCloseWhileANameIsAsked)
{
    newDocument('1');
    ports.name = QStringLiteral("late");
    ports.whileAsking = [this] {
        documents.discardAll();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    for (const char code : {'b', 'i', 'o', 'x'}) {
        newDocument('1');
        EXPECT_EQ(act(frametext::text(code, '0', "")), " ") << code;
    }
    EXPECT_TRUE(QDir(inExports({})).isEmpty());
    EXPECT_TRUE(QDir(inPlots({})).isEmpty());
}

// "n" -----------------------------------------------------------------------------------------------------------------

TEST_F(ExportActionsTest, PrintChoosesTheOrientationAndGoesOn)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('n', '0', "")), " ");
    EXPECT_EQ(act(frametext::text('n', '1', "")), " ");
    EXPECT_EQ(ports.calls, QStringList({"print portrait", "print landscape"}));
}

TEST_F(ExportActionsTest, PrintWhileTheLoopShowsPrintsTheLoop)
{
    newDocument('1');
    ports.loopShows = true;
    EXPECT_EQ(act(frametext::text('n', '1', "")), " ");
    EXPECT_EQ(ports.calls, QStringList{"print loop landscape"});
}

TEST_F(ExportActionsTest, PrintWhilePlottingIsRefusedAndGoesOn)
{
    newDocument('1');
    act(frametext::numbers('D', '1', 1, 1000, 2000, 0, 0));
    ASSERT_TRUE(state.gbfPlotting);
    EXPECT_EQ(act(frametext::text('n', '0', "")), " ");
    EXPECT_EQ(said(), QStringList{"Can't print when plotting! | File Print | 48"});
    EXPECT_TRUE(ports.calls.isEmpty());
}

TEST_F(ExportActionsTest, WithoutAPrinterASentenceIsToldAndTheScriptGoesOn)
{
    newDocument('1');
    actions.ports() = {};
    EXPECT_EQ(act(frametext::text('n', '0', "")), " ");
    EXPECT_EQ(said(), QStringList{"Nothing can be printed here. | File Print | 48"});
}

// Names ---------------------------------------------------------------------------------------------------------------

TEST(ScriptNamesTest, AnUnsetFolderIsTheProgramsOwn)
{
    EXPECT_EQ(scriptnames::inFolder({}, QStringLiteral("a")),
              QCoreApplication::applicationDirPath() + QStringLiteral("/a"));
    EXPECT_EQ(scriptnames::inFolder(QStringLiteral("/x/"), QStringLiteral("a")), QStringLiteral("/x/a"));
}

TEST(ScriptNamesTest, TxtIsAddedUnlessTheNameHoldsItInAnyCase)
{
    EXPECT_EQ(scriptnames::withTextExtension(QStringLiteral("a_SN.TXT1")), QStringLiteral("a_SN.TXT1"));
    EXPECT_EQ(scriptnames::withTextExtension(QStringLiteral("a")), QStringLiteral("a.txt"));
}

} // namespace
