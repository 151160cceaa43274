// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentList.h"

#include "document/DocumentBench.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

struct DocumentListTest : ::testing::Test, DocumentWindows
{
    DocumentBench bench;
    DocumentList list{bench.context, bench.state, *this};
    std::vector<std::unique_ptr<PenDocument>> windows;
    bool room = true;
    QStringList shown;
    QString refuses;

    PenDocument* createDocument() override
    {
        if (!room)
            return nullptr;
        windows.push_back(std::make_unique<PenDocument>(bench.context));
        bench.listen(*windows.back());
        return windows.back().get();
    }
    void showDocument(PenDocument& document) override
    {
        shown << document.gstrKey;
        bench.active.set(&document);
    }
    bool unloadDocument(PenDocument& document) override
    {
        if (document.gstrKey == refuses || !document.QueryClose())
            return false;
        std::erase_if(windows, [&](const auto& window) { return window.get() == &document; });
        return true;
    }
    void discardDocument(PenDocument& document) override
    {
        document.closeUnasked();
        unloadDocument(document);
    }
    QString savedPlot(const QString& name)
    {
        bench.state.giNewDocType = PenDocument::Impedance;
        auto document = bench.document(PenDocument::Impedance);
        document->AddImpedancePoint(1000, 77, 10, 1, 0);
        QString path = bench.path(name);
        EXPECT_TRUE(document->fileSavePlot(path));
        return path;
    }
    /// The told sentence, and below it what the reader has found.
    void expectUnknownFormat()
    {
        ASSERT_FALSE(bench.messages.shown.empty());
        const QStringList lines = bench.messages.shown.back().text.split(u'\n');
        expectMessage("File Load Error", lines.join(u'\n'), UserMessages::Stop);
        EXPECT_EQ(lines.value(0), "File of unknown data format");
        EXPECT_TRUE(lines.value(1).endsWith(u'.')) << lines.value(1).toStdString();
    }
    void expectMessage(const char* title, const QString& text, int style)
    {
        ASSERT_FALSE(bench.messages.shown.empty());
        EXPECT_EQ(bench.messages.shown.back().title, QLatin1String(title));
        EXPECT_EQ(bench.messages.shown.back().text, text);
        EXPECT_EQ(bench.messages.shown.back().style, style);
    }
};

TEST_F(DocumentListTest, DiscardAllClosesEachAsByNoAndAsksNothing)
{
    QStringList order;
    for (int i = 0; i < 3; ++i) {
        PenDocument* document = list.LoadNewDoc();
        document->setModified(true);
        QObject::connect(document, &PenDocument::closed, document, [&order, document] {
            order << document->gstrKey + QLatin1String(document->gbfModified() ? "*" : "");
        });
    }
    list.discardAll();
    EXPECT_EQ(order, QString("Doc3* Doc2* Doc1*").split(u' '));
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.giDocumentCounter, 0);
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(DocumentListTest, NewDocumentsAreNumberedAndPrepared)
{
    bench.state.giNewDocType = PenDocument::Impedance;
    PenDocument* first = list.LoadNewDoc();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->caption(), "Document 1");
    EXPECT_EQ(first->gstrKey, "Doc1");
    EXPECT_EQ(first->pgiTestType(), 2);
    EXPECT_TRUE(first->gbfInitialised());
    PenDocument* second = list.LoadNewCleanDoc();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->caption(), "Document 2");
    EXPECT_EQ(second->gstrKey, "Doc2");
    EXPECT_EQ(second->pgiTestType(), 0);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.at(1), first);
    EXPECT_EQ(list.find("Doc2"), second);
    EXPECT_EQ(list.at(3), nullptr);
}

TEST_F(DocumentListTest, NoRoomForADocumentIsTold)
{
    room = false;
    EXPECT_EQ(list.LoadNewDoc(), nullptr);
    expectMessage("Out of memory!", "Please close some document windows and try again", UserMessages::Information);
    EXPECT_EQ(list.LoadNewCleanDoc(), nullptr);
    EXPECT_EQ(bench.messages.shown.size(), 2U);
    EXPECT_EQ(list.count(), 0);
}

TEST_F(DocumentListTest, DocumentOfNoTypeOpensAndRefusesPoints)
{
    bench.state.giNewDocType = 0;
    PenDocument* document = list.LoadNewDoc();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->pgiTestType(), 0);
    EXPECT_EQ(document->AddImpedancePoint(1000, 50, 10, 1, 0), PointAnswer::WrongType);
    EXPECT_EQ(document->peGraph().XData(0, 0), 0.0F);
}

TEST_F(DocumentListTest, RelativeNameIsKeptAsAFullPath)
{
    const QString path = savedPlot("run");
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(bench.folder.path()));
    const bool loaded = list.LoadExistingDocument("run.gzd");
    QDir::setCurrent(before);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(list.at(1)->GetFileName(), path);
    EXPECT_EQ(bench.quickFiles.back(), path);
}

TEST_F(DocumentListTest, IndexIsThatOfTheActiveDocument)
{
    EXPECT_EQ(list.GetCurrentDocumentIndex(), 0);
    list.LoadNewDoc();
    bench.active.set(list.LoadNewDoc());
    EXPECT_EQ(list.GetCurrentDocumentIndex(), 2);
    bench.active.set(list.at(1));
    EXPECT_EQ(list.GetCurrentDocumentIndex(), 1);
}

TEST_F(DocumentListTest, NextAndPreviousWrapRound)
{
    for (int i = 0; i < 3; ++i)
        list.LoadNewDoc();
    bench.active.set(list.at(3));
    EXPECT_EQ(list.nextDocument(), list.at(1));
    EXPECT_EQ(list.previousDocument(), list.at(2));
    bench.active.set(list.at(1));
    EXPECT_EQ(list.nextDocument(), list.at(2));
    EXPECT_EQ(list.previousDocument(), list.at(3));
}

TEST_F(DocumentListTest, WithOneDocumentNextAndPreviousDoNothing)
{
    EXPECT_EQ(list.nextDocument(), nullptr);
    bench.active.set(list.LoadNewDoc());
    EXPECT_EQ(list.nextDocument(), nullptr);
    EXPECT_EQ(list.previousDocument(), nullptr);
}

TEST_F(DocumentListTest, MissingFileIsTold)
{
    EXPECT_FALSE(list.LoadExistingDocument(bench.path("none.gad")));
    expectMessage("Open Error", "File not found " + bench.path("none.gad"), UserMessages::Information);
    EXPECT_EQ(list.count(), 0);
}

TEST_F(DocumentListTest, LoadedPlotIsShown)
{
    const QString path = savedPlot("run");
    EXPECT_TRUE(list.LoadExistingDocument(path));
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.at(1)->caption(), path);
    EXPECT_EQ(list.at(1)->peGraph().YData(0, 0), 77.0F);
    EXPECT_EQ(shown, QStringList{"Doc1"});
    EXPECT_EQ(list.findFile(path), list.at(1));
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(DocumentListTest, OpenFileAnsweredNoStaysUntouched)
{
    const QString path = savedPlot("run");
    ASSERT_TRUE(list.LoadExistingDocument(path));
    list.at(1)->AddImpedancePoint(1000, 5, 10, 1, 0);
    bench.messages.replies = {UserMessages::ReplyNo};
    EXPECT_FALSE(list.LoadExistingDocument(path));
    expectMessage("File already open", "Do you want to reload the file?", 68);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.at(1)->peGraph().YData(0, 0), 5.0F);
}

TEST_F(DocumentListTest, OpenFileAnsweredYesIsReadIntoItsDocument)
{
    const QString path = savedPlot("run");
    ASSERT_TRUE(list.LoadExistingDocument(path));
    list.at(1)->AddImpedancePoint(1000, 5, 10, 1, 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    EXPECT_TRUE(list.LoadExistingDocument(path));
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.at(1)->peGraph().YData(0, 0), 77.0F);
}

TEST_F(DocumentListTest, UnknownFormatRemovesTheNewDocumentAgain)
{
    QFile file(bench.path("junk.gad"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no plot");
    file.close();
    EXPECT_FALSE(list.LoadExistingDocument(bench.path("junk.gad")));
    expectUnknownFormat();
    EXPECT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(windows.empty());
    EXPECT_FALSE(list.gbfSuppressPrompts());
}

TEST_F(DocumentListTest, ReloadOfADamagedFileKeepsTheOpenDocument)
{
    const QString path = savedPlot("run");
    ASSERT_TRUE(list.LoadExistingDocument(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("damaged");
    file.close();
    bench.messages.replies = {UserMessages::ReplyYes};
    EXPECT_FALSE(list.LoadExistingDocument(path));
    expectUnknownFormat();
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.at(1)->peGraph().YData(0, 0), 77.0F);
}

TEST_F(DocumentListTest, NewerFormatIsShownAndToldToBeViewOnly)
{
    auto document = bench.document(PenDocument::Impedance);
    {
        const TableScope scope(document->peGraph(), 2);
        document->peGraph().setTAText(0, 0, "2");
    }
    QString path = bench.path("new");
    ASSERT_TRUE(document->fileSavePlot(path));
    EXPECT_TRUE(list.LoadExistingDocument(path));
    expectMessage("This document is of a different format", "You may only view this document",
                  UserMessages::Information);
    EXPECT_EQ(shown, QStringList{"Doc1"});
}

TEST_F(DocumentListTest, AfterCloseAllTheNextDocumentTakesTheNumberOne)
{
    list.LoadNewDoc();
    list.LoadNewDoc();
    EXPECT_TRUE(list.CloseAll());
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(windows.empty());
    EXPECT_FALSE(list.gbfSuppressPrompts());
    EXPECT_EQ(list.LoadNewDoc()->caption(), "Document 1");
}

TEST_F(DocumentListTest, CloseAllGoesFromTheLastAndStopsAtTheFirstThatRefuses)
{
    for (int i = 0; i < 3; ++i)
        list.LoadNewDoc();
    refuses = "Doc2";
    EXPECT_FALSE(list.CloseAll());
    EXPECT_EQ(list.count(), 2);
    EXPECT_FALSE(list.gbfSuppressPrompts());
    EXPECT_EQ(list.LoadNewDoc()->gstrKey, "Doc4");
}

TEST_F(DocumentListTest, CloseAllAsksForUnsavedDocuments)
{
    list.LoadNewDoc()->SetModified();
    bench.messages.replies = {UserMessages::ReplyCancel};
    EXPECT_FALSE(list.CloseAll());
    EXPECT_EQ(list.count(), 1);
    bench.messages.replies = {UserMessages::ReplyNo};
    EXPECT_TRUE(list.CloseAll());
}

TEST_F(DocumentListTest, DocumentsThatDiedCountNoMore)
{
    list.LoadNewDoc();
    list.LoadNewDoc();
    windows.erase(windows.begin());
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.at(1)->gstrKey, "Doc2");
    list.remove("Doc2");
    EXPECT_EQ(list.count(), 0);
}

} // namespace
