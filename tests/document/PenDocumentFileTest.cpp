// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"
#include "instrument/clsTestSettings.h"

#include <QDir>
#include <QFileInfo>

#include <bit>
#include <gtest/gtest.h>
#include <random>
#include <span>

namespace {

struct PenDocumentFile : ::testing::Test
{
    DocumentBench bench;

    std::unique_ptr<PenDocument> filled(std::int16_t type)
    {
        auto document = bench.document(type);
        for (int i = 0; i < 20; ++i) {
            if (type == PenDocument::Amplitude)
                document->AddAmplitudePoint(1000 + i, -i, 10, 1, i);
            else
                document->AddImpedancePoint(1000 + i, 50 + i, 10, -1, i);
        }
        document->SetModified();
        return document;
    }
    /// Files with a plot in them.
    int plots() const
    {
        int found = 0;
        for (const QFileInfo& file : QDir(bench.folder.path()).entryInfoList({"*.g?d"}, QDir::Files))
            found += file.size() > 0 ? 1 : 0;
        return found;
    }
    void touch(const QString& name)
    {
        QFile file(bench.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    void expectMessage(std::size_t index, const char* title, const QString& text, int style)
    {
        ASSERT_GT(bench.messages.shown.size(), index);
        EXPECT_EQ(bench.messages.shown[index].title, QLatin1String(title));
        EXPECT_EQ(bench.messages.shown[index].text, text);
        EXPECT_EQ(bench.messages.shown[index].style, style);
    }
};

TEST_F(PenDocumentFile, FirstSaveAsksForANameAndStampsTheDocument)
{
    const auto document = filled(PenDocument::Impedance);
    document->UpdatePenLock(1, true);
    bench.preferences.setValue(options::kPlotFiles.option, bench.folder.path());
    bench.picker.answer = bench.path("run");
    EXPECT_TRUE(document->fileSave(false, false));
    EXPECT_EQ(bench.picker.title, "Save As");
    EXPECT_EQ(bench.picker.filters, "Impedance files (*.gzd)|*.gzd");
    EXPECT_EQ(bench.picker.folder, bench.folder.path());
    EXPECT_EQ(bench.picker.name, "Document 1");
    const QString name = bench.path("run.gzd");
    EXPECT_TRUE(QFileInfo::exists(name));
    EXPECT_EQ(document->GetFileName(), name);
    EXPECT_EQ(document->caption(), name);
    EXPECT_EQ(document->peGraph().MainTitle(), name);
    EXPECT_EQ(document->peGraph().TXAxisLabel(), document->SetVersion());
    EXPECT_EQ(document->peGraph().MultiSubTitles(0), "0X00000000");
    EXPECT_EQ(bench.quickFiles, QStringList{name});
    EXPECT_FALSE(document->gbfModified());
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentFile, SecondSaveAsksNothingAndKeepsTheTitle)
{
    const auto document = filled(PenDocument::Amplitude);
    document->peGraph().setMainTitle("Filter 7");
    bench.picker.answer = bench.path("run");
    EXPECT_TRUE(document->fileSave(true, false));
    EXPECT_EQ(bench.picker.name, "Filter 7");
    EXPECT_EQ(document->peGraph().MainTitle(), "Filter 7");
    document->SetModified();
    EXPECT_TRUE(document->fileSave(false, false));
    EXPECT_EQ(bench.picker.asked, 1);
    EXPECT_FALSE(document->gbfModified());
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentFile, WithoutAStoredFolderThePickerStartsInTheProgramsOwn)
{
    const auto document = filled(PenDocument::Reactance);
    EXPECT_FALSE(document->fileSave(true, false));
    EXPECT_EQ(bench.picker.folder, QCoreApplication::applicationDirPath());
    EXPECT_EQ(bench.picker.filters, "");
}

TEST_F(PenDocumentFile, CancelledPickerLeavesEverythingSilently)
{
    const auto document = filled(PenDocument::Impedance);
    EXPECT_FALSE(document->fileSave(true, false));
    EXPECT_EQ(document->GetFileName(), "");
    EXPECT_TRUE(document->gbfModified());
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_EQ(plots(), 0);
}

TEST_F(PenDocumentFile, ExistingFileIsReplacedOnlyAfterAYes)
{
    const auto document = filled(PenDocument::Impedance);
    touch("run.gzd");
    bench.picker.answer = bench.path("run");
    bench.messages.replies = {UserMessages::ReplyNo};
    EXPECT_FALSE(document->fileSave(true, false));
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].style, UserMessages::YesNo | UserMessages::Question);
    EXPECT_EQ(document->GetFileName(), "");
    EXPECT_EQ(plots(), 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    EXPECT_TRUE(document->fileSave(true, false));
    EXPECT_EQ(plots(), 1);
    EXPECT_TRUE(document->fileSave(true, true));
    EXPECT_EQ(bench.messages.shown.size(), 2U);
}

TEST_F(PenDocumentFile, ADotInAFolderCutsThePathThere)
{
    QDir(bench.folder.path()).mkdir("data.v2");
    const auto document = filled(PenDocument::Impedance);
    QString name = bench.path("data.v2/run");
    EXPECT_TRUE(document->fileSavePlot(name));
    EXPECT_EQ(name, bench.path("data.gzd"));
    EXPECT_TRUE(QFileInfo::exists(bench.path("data.gzd")));
    EXPECT_EQ(document->GetFileName(), bench.path("data.v2/run"));
}

TEST_F(PenDocumentFile, ReactancePlotIsWrittenWithoutExtension)
{
    const auto document = filled(PenDocument::Reactance);
    QString name = bench.path("run.gxd");
    EXPECT_TRUE(document->fileSavePlot(name));
    EXPECT_EQ(name, bench.path("run"));
    EXPECT_TRUE(QFileInfo::exists(bench.path("run")));
}

TEST_F(PenDocumentFile, SubTitleOfTheActiveDocumentIsRewritten)
{
    const auto saved = filled(PenDocument::Impedance);
    const auto active = bench.document(PenDocument::Amplitude);
    active->peGraph().setTXAxisLabel("MarrowickGraph V1.2.3 | T46 V1.0.0 : 1 Jan 2020");
    active->peGraph().setSubTitle("old");
    saved->peGraph().setSubTitle("mine");
    QString name = bench.path("run");
    EXPECT_TRUE(saved->fileSavePlot(name));
    EXPECT_EQ(active->peGraph().SubTitle(), "MarrowickGraph V1.2.3  T46 V1.0.0 : 1 Jan 2020");
    EXPECT_EQ(saved->peGraph().SubTitle(), "mine");
    active->peGraph().setSubTitle("");
    EXPECT_TRUE(saved->fileSavePlot(name));
    EXPECT_EQ(active->peGraph().SubTitle(), "");
}

TEST_F(PenDocumentFile, FailedSaveTellsTheUserAndLosesNothing)
{
    const auto document = filled(PenDocument::Impedance);
    bench.picker.answer = bench.path("nowhere/run");
    EXPECT_FALSE(document->fileSave(true, false));
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Save File Error");
    EXPECT_TRUE(bench.messages.shown[0].text.contains("nowhere")) << bench.messages.shown[0].text.toStdString();
    EXPECT_EQ(bench.messages.shown[0].style, UserMessages::Stop);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(document->GetFileName(), "");
    EXPECT_EQ(document->caption(), "Document 1");
    EXPECT_EQ(document->peGraph().MainTitle(), "Title");
    EXPECT_EQ(document->peGraph().TXAxisLabel(), "");
    EXPECT_TRUE(bench.quickFiles.isEmpty());
}

TEST_F(PenDocumentFile, SavedDocumentComesBackWithAllItsState)
{
    const auto document = filled(PenDocument::Impedance);
    document->graphSetAlternateView(true);
    document->graphSetPhase(1);
    document->UpdatePenHide(5, true);
    document->UpdatePenLock(2, true);
    document->SetPenColour(0, 0x123456);
    document->peGraph().setSubsetLabels(0, "Part A");
    setMasks(*document, true);
    bench.picker.answer = bench.path("run");
    ASSERT_TRUE(document->fileSave(true, false));

    PenDocument loaded(bench.context);
    ASSERT_TRUE(loaded.fileLoadPlot(bench.path("run.gzd")));
    EXPECT_EQ(loaded.pgiTestType(), 2);
    EXPECT_TRUE(loaded.gbfAltSubset());
    EXPECT_EQ(loaded.graphGetPhaseView(), 1);
    EXPECT_EQ(loaded.GetPenDisplay(5), 1);
    EXPECT_EQ(loaded.GetPenDisplay(4), 0);
    EXPECT_EQ(loaded.GetPenLock(2), 1);
    EXPECT_EQ(loaded.peGraph().SubsetColors(30), 0x123456U);
    EXPECT_EQ(loaded.peGraph().SubsetLabels(0), "Part A");
    EXPECT_EQ(cellText(loaded, 1), "MASK");
    EXPECT_EQ(loaded.giDocumentVersion(), 1);
    EXPECT_FALSE(loaded.isViewOnly());
    EXPECT_FALSE(loaded.gbfModified());
    EXPECT_EQ(loaded.GetFileName(), bench.path("run.gzd"));
    EXPECT_EQ(loaded.caption(), bench.path("run.gzd"));
    EXPECT_EQ(bench.quickFiles.back(), bench.path("run.gzd"));
    for (int subset = 0; subset < 40; ++subset) {
        for (int point = 0; point < 1024; ++point)
            ASSERT_EQ(loaded.peGraph().YData(subset, point), document->peGraph().YData(subset, point));
    }
}

TEST_F(PenDocumentFile, EveryFeatureOfADocumentSurvivesSaveAndLoadBitForBit)
{
    const auto document = filled(PenDocument::Amplitude);
    GraphModel& graph = document->peGraph();
    std::mt19937 random(11);
    for (int subset = 0; subset < 40; ++subset) {
        for (int point = 0; point < 1024; ++point) {
            // Any bits: infinities, not-a-number, denormals and the null value among them.
            graph.setPoint(subset, point, std::bit_cast<float>(static_cast<std::uint32_t>(random())),
                           std::bit_cast<float>(static_cast<std::uint32_t>(random())));
        }
        graph.setSubsetLabels(subset, QString("name %1 \u00b5\u03a9\n|").arg(subset));
        graph.setSubsetLineTypes(subset, subset % 5);
    }
    for (int pen = 0; pen < 10; ++pen) {
        document->SetPenColour(pen, 0x010203U * static_cast<std::uint32_t>(pen));
        document->UpdatePenLock(pen, pen % 3 == 0);
        document->UpdatePenHide(pen, pen % 4 == 1);
    }
    document->graphSetAlternateView(true);
    document->graphSetPhase(1);
    document->graphSetFrequecyLinear(true);
    document->graphSetAmpScale(7, -33);
    document->setMarkDataPoints(true);
    setMasks(*document, true);
    graph.setMainTitle("All of it");
    graph.setSubTitle("info");
    graph.setGraphAnnotationText(100, "Test Settings");
    graph.setGraphAnnotationText(0, "5000,1000,False,True,77,0,0,0");
    graph.setLegendLocation(graph::LegendTop);
    graph.setViewingStyle(graph::StyleMonochromeSymbols);
    graph::ZoomLimits zoom;
    zoom.ZoomMinX = 1234.5;
    zoom.ZoomMaxX = 4321.75;
    zoom.ZoomMinY = -3;
    zoom.ZoomMaxY = 3;
    zoom.ZoomMinRY = -90;
    zoom.ZoomMaxRY = 90;
    graph.userZoom(zoom);
    QString name = bench.path("full");
    bench.picker.answer = name;
    ASSERT_TRUE(document->fileSave(true, false));

    PenDocument loaded(bench.context);
    ASSERT_TRUE(loaded.fileLoadPlot(bench.path("full.gad")));
    for (int subset = 0; subset < 40; ++subset) {
        const auto bytes = [](std::span<const float> values) {
            return QByteArray(reinterpret_cast<const char*>(values.data()),
                              static_cast<qsizetype>(values.size_bytes()));
        };
        ASSERT_EQ(bytes(loaded.peGraph().xArray(subset)), bytes(graph.xArray(subset)));
        ASSERT_EQ(bytes(loaded.peGraph().yArray(subset)), bytes(graph.yArray(subset)));
    }
    // The popup is built anew: it belongs to the program, not to the plot.
    graph::Properties before = graph.properties(), after = loaded.peGraph().properties();
    before.CustomMenu.clear();
    after.CustomMenu.clear();
    EXPECT_EQ(before, after);
    for (int pen = 0; pen < 10; ++pen) {
        EXPECT_EQ(loaded.GetPenLock(pen), document->GetPenLock(pen));
        EXPECT_EQ(loaded.GetPenDisplay(pen), document->GetPenDisplay(pen));
    }
    EXPECT_TRUE(loaded.gbfAltSubset());
    EXPECT_TRUE(loaded.graphGetFrequncyView());
    EXPECT_EQ(loaded.graphGetPhaseView(), 1);
    EXPECT_FALSE(loaded.gbfZoomExtents());
    EXPECT_EQ(loaded.gdblTestMinFreq(), 1234.5);
    EXPECT_EQ(loaded.gdblTestMaxFreq(), 4321.75);
    EXPECT_EQ(loaded.gclsTestSettings().lPoints, 77);
    EXPECT_TRUE(loaded.gclsTestSettings().boolInvertSweep);
}

TEST_F(PenDocumentFile, FileWithoutAVersionCellIsGivenVersionOneInMemory)
{
    const auto document = filled(PenDocument::Impedance);
    {
        const TableScope scope(document->peGraph(), 2);
        document->peGraph().setTARows(0);
        document->peGraph().setTAColumns(0);
    }
    QString name = bench.path("old");
    ASSERT_TRUE(document->fileSavePlot(name));
    PenDocument loaded(bench.context);
    ASSERT_TRUE(loaded.fileLoadPlot(name));
    EXPECT_EQ(cellText(loaded, 2), "1");
    {
        const TableScope scope(loaded.peGraph(), 2);
        EXPECT_EQ(loaded.peGraph().TARows(), 1);
        EXPECT_EQ(loaded.peGraph().TAColumns(), 2);
    }
    EXPECT_EQ(loaded.giDocumentVersion(), 1);
    EXPECT_FALSE(loaded.isViewOnly());
    EXPECT_EQ(loaded.peGraph().WorkingTable(), 1);
}

TEST_F(PenDocumentFile, NewerFormatIsViewOnly)
{
    const auto document = filled(PenDocument::Impedance);
    {
        const TableScope scope(document->peGraph(), 2);
        document->peGraph().setTAText(0, 0, "2");
    }
    QString name = bench.path("new");
    ASSERT_TRUE(document->fileSavePlot(name));
    PenDocument loaded(bench.context);
    ASSERT_TRUE(loaded.fileLoadPlot(name));
    EXPECT_EQ(loaded.giDocumentVersion(), 2);
    EXPECT_TRUE(loaded.isViewOnly());
    for (int item = 0; item < 16; ++item) {
        const bool greyed = QList<int>{1, 2, 3, 5, 6, 8, 9, 14, 10, 11, 12, 13}.contains(item);
        EXPECT_EQ(loaded.peGraph().CustomMenuState(item, 0), greyed ? 1 : 0) << item;
    }
}

TEST_F(PenDocumentFile, FileThatIsNoneLeavesTheDocumentAsItWas)
{
    const auto document = filled(PenDocument::Impedance);
    touch("junk.gzd");
    const auto before = document->peGraph().properties();
    EXPECT_FALSE(document->fileLoadPlot(bench.path("junk.gzd")));
    EXPECT_EQ(document->peGraph().properties(), before);
    EXPECT_EQ(document->peGraph().YData(0, 0), 50.0F);
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(document->caption(), "Document 1");
}

TEST_F(PenDocumentFile, AnUnchangedDocumentClosesWithoutAsking)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_TRUE(document->QueryClose());
    EXPECT_EQ(bench.events, QStringList{"closed"});
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentFile, UnsavedDocumentAsksBeforeClosing)
{
    const auto document = filled(PenDocument::Impedance);
    bench.events.clear();
    bench.messages.replies = {UserMessages::ReplyCancel};
    EXPECT_FALSE(document->QueryClose());
    expectMessage(0, "Save Document", "Save before closing Document 1?",
                  UserMessages::YesNoCancel | UserMessages::Question);
    EXPECT_TRUE(bench.events.isEmpty());
    bench.messages.replies = {UserMessages::ReplyNo};
    EXPECT_TRUE(document->QueryClose());
    EXPECT_EQ(plots(), 0);
    bench.messages.replies = {UserMessages::ReplyYes};
    bench.picker.answer = bench.path("run");
    EXPECT_TRUE(document->QueryClose());
    EXPECT_EQ(plots(), 1);
}

TEST_F(PenDocumentFile, UnsavedDocumentStaysOpenWhenItsSaveFailsOrIsCancelled)
{
    const auto document = filled(PenDocument::Impedance);
    bench.events.clear();
    bench.messages.replies = {UserMessages::ReplyYes};
    EXPECT_FALSE(document->QueryClose());
    bench.messages.replies = {UserMessages::ReplyYes};
    bench.picker.answer = bench.path("nowhere/run");
    EXPECT_FALSE(document->QueryClose());
    EXPECT_TRUE(bench.events.isEmpty());
    EXPECT_TRUE(document->gbfModified());
}

TEST_F(PenDocumentFile, NewerFormatClosesWithoutAsking)
{
    const auto document = filled(PenDocument::Impedance);
    setNewerFormat(*document);
    EXPECT_TRUE(document->QueryClose());
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentFile, AnswerThatIsNoneKeepsTheDocumentOpen)
{
    const auto document = filled(PenDocument::Impedance);
    bench.messages.replies = {UserMessages::ReplyNone};
    EXPECT_FALSE(document->QueryClose());
    expectMessage(1, "Save File Error", "Error in form unload", UserMessages::Stop);
}

TEST_F(PenDocumentFile, DocumentMayDieInItsOwnQuestion)
{
    auto document = filled(PenDocument::Impedance);
    bench.messages.whileShowing = [&] { document.reset(); };
    PenDocument* doomed = document.get();
    EXPECT_FALSE(doomed->QueryClose());
    EXPECT_EQ(document, nullptr);
}

} // namespace
