// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/DocumentActions.h"

#include "script/ScriptFixture.h"

#include <QFile>

namespace {

class DocumentActionsTest : public ScriptFixture
{};

// "U" -----------------------------------------------------------------------------------------------------------------

TEST_F(DocumentActionsTest, NewGraphMakesADocumentOfEachTypeWithItsTitleAndGoesOn)
{
    for (const auto& [kind, type] : {std::pair{'0', 1}, std::pair{'1', 2}, std::pair{'2', 3}}) {
        EXPECT_EQ(act(frametext::text('U', kind, "Batch 12")), " ") << kind;
        ASSERT_NE(window.active.get(), nullptr);
        EXPECT_EQ(state.giNewDocType, type);
        EXPECT_EQ(window.active->pgiTestType(), type);
        EXPECT_EQ(window.active->peGraph().MainTitle(), QStringLiteral("Batch 12"));
    }
    EXPECT_EQ(documents.count(), 3);
    EXPECT_EQ(ports.calls, QStringList({"clear name", "clear name", "clear name"}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DocumentActionsTest, NewGraphOfKind3ShowsTheDialogAndStillOpensADocumentOfNoType)
{
    EXPECT_EQ(act(frametext::text('U', '3', "Ageing")), " ");
    EXPECT_EQ(said(), QStringList{"Graph type currently unsupported | Impedance Vs Time | 0"});
    EXPECT_EQ(state.giNewDocType, 0);
    ASSERT_EQ(documents.count(), 1);
    EXPECT_EQ(window.active->peGraph().MainTitle(), QStringLiteral("Ageing"));
}

TEST_F(DocumentActionsTest, NewGraphOfAnyOtherKindKeepsTheTypeThereWas)
{
    state.giNewDocType = 3;
    EXPECT_EQ(act(frametext::text('U', '7', "x")), " ");
    EXPECT_EQ(state.giNewDocType, 3);
    EXPECT_EQ(window.active->pgiTestType(), PenDocument::Reactance);
}

TEST_F(DocumentActionsTest, NewGraphWhoseKindIsNoNumberEndsTheReadPassWithoutReply)
{
    sendBroken(frametext::text('U', 'x', "x"));
    EXPECT_EQ(act({}), QByteArray());
    EXPECT_EQ(documents.count(), 0);
}

// "Z" -----------------------------------------------------------------------------------------------------------------

TEST_F(DocumentActionsTest, TitleTakesTheTextAndIsNotAnswered)
{
    PenDocument* document = newDocument('1');
    EXPECT_EQ(act(frametext::text('Z', 'A', "New title")), QByteArray());
    EXPECT_EQ(document->peGraph().MainTitle(), QStringLiteral("New title"));
}

TEST_F(DocumentActionsTest, AnEmptyTitleIsAskedForAndCancelGivesNone)
{
    PenDocument* document = newDocument('1');
    ports.line = QStringLiteral("Typed");
    EXPECT_EQ(act(frametext::text('Z', 'A', "")), QByteArray());
    EXPECT_EQ(document->peGraph().MainTitle(), QStringLiteral("Typed"));
    EXPECT_EQ(ports.calls, QStringList{"input? Graph Title Text | Enter Title:"});
    ports.line.reset();
    act(frametext::text('Z', 'A', ""));
    EXPECT_EQ(document->peGraph().MainTitle(), QString());
}

TEST_F(DocumentActionsTest, TheDocumentMayCloseWhileItsTitleIsAsked)
{
    newDocument('1');
    ports.whileAsking = [this] {
        documents.discardAll();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    ports.line = QStringLiteral("late");
    EXPECT_EQ(act(frametext::text('Z', 'A', "")), QByteArray());
    EXPECT_EQ(documents.count(), 0);
}

TEST_F(DocumentActionsTest, LabelBNamesTheCurrentPen)
{
    PenDocument* document = newDocument('1');
    document->setCurrentPen(4);
    EXPECT_EQ(act(frametext::text('Z', 'B', "Sample 5")), QByteArray());
    EXPECT_EQ(document->peGraph().SubsetLabels(4), QStringLiteral("Sample 5"));
    EXPECT_EQ(document->peGraph().SubsetLabels(14), QStringLiteral("Sample 5"));
}

TEST_F(DocumentActionsTest, LabelWithSelector3NamesSubsets3And13)
{
    PenDocument* document = newDocument('1');
    EXPECT_EQ(act(frametext::text('Z', '3', "Third")), QByteArray());
    EXPECT_EQ(document->peGraph().SubsetLabels(3), QStringLiteral("Third"));
    EXPECT_EQ(document->peGraph().SubsetLabels(13), QStringLiteral("Third"));
    EXPECT_EQ(document->peGraph().SubsetLabels(0), QStringLiteral("Pen 1"));
}

TEST_F(DocumentActionsTest, TitleWithoutADocumentDoesNothing)
{
    EXPECT_EQ(act(frametext::text('Z', 'A', "")), QByteArray());
    EXPECT_TRUE(ports.calls.isEmpty());
}

TEST_F(DocumentActionsTest, TheGraphIsRebuiltBehindATitleOrLabel)
{
    PenDocument* document = newDocument('1');
    int rebuilt = 0;
    QObject::connect(&document->peGraph(), &GraphModel::reinitialised, [&rebuilt] { ++rebuilt; });
    act(frametext::text('Z', '3', "Third"));
    EXPECT_GE(rebuilt, 1);
}

// "b" -----------------------------------------------------------------------------------------------------------------

TEST_F(DocumentActionsTest, SaveStampsTheNameWithDateTimeAndSerialNumberAndGoesOn)
{
    PenDocument* document = newDocument('1');
    addPoints(*document, 0, 3);
    EXPECT_EQ(act(frametext::text('b', '0', "part")), " ");
    const QString name = inPlots(QStringLiteral("part_20260304_050607_SN7.gzd"));
    EXPECT_TRUE(QFile::exists(name));
    EXPECT_EQ(document->caption(), name);
    EXPECT_EQ(document->GetFileName(), name);
    EXPECT_EQ(used, QStringList{name});
    EXPECT_FALSE(document->gbfModified());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DocumentActionsTest, SaveWithoutStampGivesEachTypeItsExtension)
{
    act(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
    newDocument('0');
    EXPECT_EQ(act(frametext::text('b', '0', "amplitude")), " ");
    EXPECT_TRUE(QFile::exists(inPlots(QStringLiteral("amplitude.gad"))));
    newDocument('1');
    EXPECT_EQ(act(frametext::text('b', '0', "impedance")), " ");
    EXPECT_TRUE(QFile::exists(inPlots(QStringLiteral("impedance.gzd"))));
}

TEST_F(DocumentActionsTest, SaveOfAReactanceDocumentWritesANameWithoutExtension)
{
    act(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
    PenDocument* document = newDocument('2');
    EXPECT_EQ(act(frametext::text('b', '0', "reactance")), " ");
    EXPECT_TRUE(QFile::exists(inPlots(QStringLiteral("reactance"))));
    EXPECT_EQ(document->caption(), inPlots(QStringLiteral("reactance")));
}

TEST_F(DocumentActionsTest, SaveReplacesAnExistingFileWithoutAWord)
{
    act(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
    newDocument('1');
    QFile old(inPlots(QStringLiteral("part.gzd")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    EXPECT_EQ(act(frametext::text('b', '0', "part")), " ");
    EXPECT_GT(QFileInfo(old.fileName()).size(), 100);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DocumentActionsTest, SaveWithoutADocumentGoesOnAtOnce)
{
    EXPECT_EQ(act(frametext::text('b', '0', "")), " ");
    EXPECT_TRUE(ports.calls.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DocumentActionsTest, SaveAsksForAMissingName)
{
    act(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
    newDocument('1');
    ports.name = QStringLiteral("typed");
    EXPECT_EQ(act(frametext::text('b', '0', "")), " ");
    EXPECT_EQ(ports.calls, QStringList{"name? Enter PLOT file name"});
    EXPECT_TRUE(QFile::exists(inPlots(QStringLiteral("typed.gzd"))));
}

TEST_F(DocumentActionsTest, SaveWithoutAnyNameIsSkippedWithAMessageAndGoesOn)
{
    newDocument('1');
    EXPECT_EQ(act(frametext::text('b', '0', "")), " ");
    EXPECT_EQ(said(), QStringList{"No file name provided | Skipping file save | 0"});
    EXPECT_TRUE(QDir(inPlots({})).isEmpty());
}

TEST_F(DocumentActionsTest, ASaveThatFailsIsToldAndGoesOn)
{
    PenDocument* document = newDocument('1');
    preferences.setValue(options::kPlotFiles.option, folder.filePath(QStringLiteral("missing")));
    document->SetModified();
    EXPECT_EQ(act(frametext::text('b', '0', "part")), " ");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Save File Error"));
    EXPECT_TRUE(document->gbfModified());
    EXPECT_TRUE(used.isEmpty());
}

// "g" -----------------------------------------------------------------------------------------------------------------

TEST_F(DocumentActionsTest, LoadOpensThePlotOfTheFolderAndGoesOn)
{
    act(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
    newDocument('1', "Kept");
    act(frametext::text('b', '0', "kept"));
    documents.CloseAll();
    ports.calls.clear();
    EXPECT_EQ(act(frametext::text('g', '0', "kept.gzd")), " ");
    ASSERT_EQ(documents.count(), 1);
    EXPECT_EQ(window.active->peGraph().MainTitle(), QStringLiteral("Kept"));
    EXPECT_EQ(ports.calls, QStringList{"clear name"});
}

TEST_F(DocumentActionsTest, LoadWithoutANameShowsTwoDialogsAndSendsTwoStopsAndAGoOn)
{
    EXPECT_EQ(act(frametext::text('g', '0', "")), " y\r y\r ");
    EXPECT_EQ(said(),
              QStringList({"No file name! | Script aborted | 48", "Missing or invalid file! | Script aborted | 48"}));
}

TEST_F(DocumentActionsTest, LoadOfANameWithoutPlotExtensionStopsAndGoesOn)
{
    EXPECT_EQ(act(frametext::text('g', '0', "part.txt")), " y\r ");
    EXPECT_EQ(said(), QStringList{"Missing or invalid file! | Script aborted | 48"});
}

TEST_F(DocumentActionsTest, LoadOfAMissingPlotStopsAndGoesOn)
{
    EXPECT_EQ(act(frametext::text('g', '0', "part.gad")), " y\r ");
    EXPECT_EQ(said(), QStringList({QStringLiteral("File not found %1 | Open Error | 64").arg(inPlots("part.gad")),
                                   QStringLiteral("Missing or invalid file! | Script aborted | 48")}));
    EXPECT_EQ(documents.count(), 0);
}

// "j" -----------------------------------------------------------------------------------------------------------------

TEST_F(DocumentActionsTest, CloseAsksNothingForUnsavedChangesAndGoesOn)
{
    PenDocument* document = newDocument('1');
    document->SetModified();
    bool unsaved = false;
    QObject::connect(document, &PenDocument::aboutToClose, [&unsaved](bool is) { unsaved = is; });
    EXPECT_EQ(act(frametext::text('j', '0', "")), " ");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(documents.count(), 0);
    EXPECT_EQ(window.active.get(), nullptr);
    EXPECT_TRUE(unsaved) << "the journal keeps what was in no file";
}

TEST_F(DocumentActionsTest, CloseEndsTheLoopViewFirst)
{
    newDocument('1');
    ports.loopShows = true;
    EXPECT_EQ(act(frametext::text('j', '0', "")), " ");
    EXPECT_EQ(ports.calls, QStringList{"close loop"});
    EXPECT_EQ(documents.count(), 0);
}

TEST_F(DocumentActionsTest, CloseWithoutADocumentGoesOnAtOnce)
{
    ports.loopShows = true;
    EXPECT_EQ(act(frametext::text('j', '0', "")), " ");
    EXPECT_TRUE(ports.calls.isEmpty());
}

TEST_F(DocumentActionsTest, CloseMakesTheDocumentBeforeItTheActiveOne)
{
    PenDocument* first = newDocument('1');
    newDocument('0');
    EXPECT_EQ(act(frametext::text('j', '0', "")), " ");
    EXPECT_EQ(window.active.get(), first);
}

} // namespace
