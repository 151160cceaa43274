// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"
#include "instrument/clsTestSettings.h"

#include <QRegularExpression>
#include <QTimer>

#include <cmath>
#include <gtest/gtest.h>

namespace {

struct PenDocumentState : ::testing::Test
{
    DocumentBench bench;

    /// A document that has read a graph with these titles.
    std::unique_ptr<PenDocument> read(const QString& first, const QString& second, const QString& third = "X",
                                      const QString& fourth = "X")
    {
        auto document = std::make_unique<PenDocument>(bench.context);
        setYTitle(*document, 0, first);
        setYTitle(*document, 1, second);
        setYTitle(*document, 2, third);
        setYTitle(*document, 3, fourth);
        document->InitialiseSettings("caption", "file");
        return document;
    }
};

TEST_F(PenDocumentState, TypeIsToldByTheFirstTitle)
{
    EXPECT_EQ(read("Amplitude Gain - dB", "X")->pgiTestType(), 1);
    EXPECT_EQ(read("Modulus of Impedance - Ohms", "X")->pgiTestType(), 2);
    EXPECT_EQ(read("Reactance X - Ohms", "X")->pgiTestType(), 3);
    EXPECT_FALSE(read("Reactance X - Ohms", "X")->gbfAltSubset());
}

TEST_F(PenDocumentState, FirstTitleSwitchedOffMeansTheAlternateView)
{
    const auto loss = read("X", "Amplitude Loss - dB");
    EXPECT_EQ(loss->pgiTestType(), 1);
    EXPECT_TRUE(loss->gbfAltSubset());
    const auto admittance = read("X", "Modulus of Admittance - Siemens");
    EXPECT_EQ(admittance->pgiTestType(), 2);
    EXPECT_TRUE(admittance->gbfAltSubset());
    const auto susceptance = read("X", "Susceptance B - Siemens");
    EXPECT_EQ(susceptance->pgiTestType(), 3);
    EXPECT_TRUE(susceptance->gbfAltSubset());
    EXPECT_EQ(read("X", "anything else")->pgiTestType(), 3);
}

TEST_F(PenDocumentState, UnknownTitleLeavesTheTypeAsItWas)
{
    EXPECT_EQ(read("Voltage", "X")->pgiTestType(), 0);
    const auto document = bench.document(PenDocument::Impedance);
    setYTitle(*document, 0, "Voltage");
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->pgiTestType(), 2);
}

TEST_F(PenDocumentState, PhaseViewIsToldByTheRightTitlesAndTheFourthWins)
{
    const QString phase = "Phase - Degrees";
    EXPECT_EQ(read("Amplitude Gain - dB", "X")->graphGetPhaseView(), 0);
    EXPECT_EQ(read("Amplitude Gain - dB", "X", phase)->graphGetPhaseView(), 1);
    EXPECT_EQ(read("Amplitude Gain - dB", "X", "X", phase)->graphGetPhaseView(), 2);
    EXPECT_EQ(read("Amplitude Gain - dB", "X", phase, phase)->graphGetPhaseView(), 2);
}

TEST_F(PenDocumentState, ReactanceViewIsToldByTheFourthTitle)
{
    EXPECT_EQ(read("Reactance X - Ohms", "X", "X", "Resistance R - Ohms")->giDisplayRG(), 1);
    EXPECT_EQ(read("Reactance X - Ohms", "X", "Conductance G - Siemens", "X")->giDisplayRG(), 2);
}

TEST_F(PenDocumentState, LinearOnlyWhenTheScaleControlReadsOne)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->peGraph().setXAxisScaleControl(1);
    document->InitialiseSettings("c", "f");
    EXPECT_TRUE(document->graphGetFrequncyView());
    document->peGraph().setXAxisScaleControl(2);
    document->InitialiseSettings("c", "f");
    EXPECT_FALSE(document->graphGetFrequncyView());
}

TEST_F(PenDocumentState, HiddenPensAreReadBackInBothViews)
{
    for (const bool alternate : {false, true}) {
        const auto document = bench.document(PenDocument::Impedance);
        document->graphSetAlternateView(alternate);
        document->UpdatePenHide(0, true);
        document->UpdatePenHide(3, true);
        document->InitialiseSettings("c", "f");
        EXPECT_EQ(document->gbfAltSubset(), alternate);
        for (int pen = 0; pen < 10; ++pen)
            EXPECT_EQ(document->GetPenDisplay(pen), pen == 0 || pen == 3 ? 1 : 0) << pen << alternate;
    }
}

TEST_F(PenDocumentState, ListOfShownSubsetsEndsAtAZeroBehindTheFirstEntry)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->peGraph().setRandomSubsetsToGraph(2, 0);
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->GetPenDisplay(0), 0);
    EXPECT_EQ(document->GetPenDisplay(1), 0);
    for (int pen = 2; pen < 10; ++pen)
        EXPECT_EQ(document->GetPenDisplay(pen), 1) << pen;
}

TEST_F(PenDocumentState, AlternateSubsetsInTheFirstTenEntriesNameTheirPens)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->graphSetAlternateView(true);
    for (int i = 0; i < 40; ++i)
        document->peGraph().setRandomSubsetsToGraph(i, -1);
    document->peGraph().setRandomSubsetsToGraph(0, 14);
    document->InitialiseSettings("c", "f");
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_EQ(document->GetPenDisplay(pen), pen == 4 ? 0 : 1) << pen;
}

TEST_F(PenDocumentState, InitialiseSetsCaptionFileAndStartState)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->setModified(true);
    document->setCurrentPen(5);
    document->gbfSendZoom = false;
    document->InitialiseSettings("My caption", "/plots/a.gad");
    EXPECT_EQ(document->caption(), "My caption");
    EXPECT_EQ(document->GetFileName(), "/plots/a.gad");
    EXPECT_FALSE(document->gbfModified());
    EXPECT_EQ(document->gCurrentPen(), 0);
    EXPECT_TRUE(document->gbfSendZoom);
    EXPECT_TRUE(document->gbfInitialised());
    EXPECT_TRUE(document->gbfZoomExtents());
    EXPECT_EQ(document->gdblTestMinFreq(), document->peGraph().ManualMinX());
    EXPECT_EQ(document->gdblTestMaxFreq(), document->peGraph().ManualMaxX());
}

TEST_F(PenDocumentState, NewDocumentStartsClean)
{
    const PenDocument document(bench.context);
    EXPECT_EQ(document.GetFileName(), "");
    EXPECT_FALSE(document.gbfModified());
    EXPECT_FALSE(document.gbfInitialised());
    EXPECT_EQ(document.giDocumentVersion(), 1);
    EXPECT_EQ(document.pgiTestType(), 0);
    EXPECT_EQ(document.zoomHistory().count(), 0);
    EXPECT_EQ(document.zoomHistory().giZoomIndex(), 0);
}

TEST_F(PenDocumentState, ZoomedGraphGivesItsExtentInHertz)
{
    const auto document = bench.document(PenDocument::Amplitude);
    GraphModel& graph = document->peGraph();
    graph.setXAxisScaleControl(2);
    graph.setZoomMinX(3);
    graph.setZoomMaxX(5);
    graph.setZoomed(true);
    document->InitialiseSettings("c", "f");
    EXPECT_FALSE(document->gbfZoomExtents());
    EXPECT_EQ(document->gdblTestMinFreq(), 1000);
    EXPECT_EQ(document->gdblTestMaxFreq(), 100000);

    graph.setXAxisScaleControl(1);
    graph.setZoomMinX(2500);
    graph.setZoomMaxX(7500);
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->gdblTestMinFreq(), 2500);
    EXPECT_EQ(document->gdblTestMaxFreq(), 7500);

    graph.setXAxisScaleControl(2);
    graph.setXAxisLabel("Time - s");
    graph.setZoomMinX(1);
    graph.setZoomMaxX(2);
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->gdblTestMinFreq(), 1);
    EXPECT_EQ(document->gdblTestMaxFreq(), 2);
}

TEST_F(PenDocumentState, SettingsStringIsReadWhereItsMarkerStands)
{
    clsTestSettings settings;
    settings.lPoints = 321;
    settings.dblUpperFrequency = 98765.5;
    const auto document = bench.document(PenDocument::Amplitude);
    document->peGraph().setGraphAnnotationText(0, settings.SaveToString());
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->gclsTestSettings(), clsTestSettings());
    document->peGraph().setGraphAnnotationText(100, "Test Settings");
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->gclsTestSettings(), settings);
}

TEST_F(PenDocumentState, LocksComeFromTheLockText)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->peGraph().setMultiSubTitles(0, "0X00000X0X");
    document->InitialiseSettings("c", "f");
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_EQ(document->GetPenLock(pen), pen == 1 || pen == 7 || pen == 9 ? 1 : 0) << pen;
    document->peGraph().setMultiSubTitles(0, "X");
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document->GetPenLock(0), 1);
    EXPECT_EQ(document->GetPenLock(1), 0);
}

TEST_F(PenDocumentState, DocumentMayDieWhileItsEventsRun)
{
    auto document = bench.document(PenDocument::Amplitude);
    QTimer::singleShot(0, [&] { document.reset(); });
    document->InitialiseSettings("c", "f");
    EXPECT_EQ(document, nullptr);
}

TEST_F(PenDocumentState, SetPlottingErasesThePenAndPlacesTheCursor)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 10, 1, 0);
    document->SetPenColour(0, 0x123456);
    EXPECT_TRUE(document->SetPlotting({.frequency = 1234}));
    const GraphModel& graph = document->peGraph();
    for (int subset = 0; subset < 40; subset += 10)
        EXPECT_EQ(graph.YData(subset, 0), -65536.0F);
    EXPECT_EQ(graph.XData(0, 0), 1000.0F);
    EXPECT_EQ(graph.VertLineAnnotation(0), 1234);
    EXPECT_EQ(graph.VertLineAnnotationType(0), 0);
    EXPECT_EQ(graph.VertLineAnnotationColor(0), 0x123456U);
}

TEST_F(PenDocumentState, UnnamedPenIsNamedByTheTimeAndANamedOneKeepsItsName)
{
    const auto document = bench.document(PenDocument::Impedance);
    GraphModel& graph = document->peGraph();
    document->setCurrentPen(2);
    document->SetPlotting({});
    EXPECT_TRUE(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d$").match(graph.SubsetLabels(2)).hasMatch());
    EXPECT_EQ(graph.SubsetLabels(12), graph.SubsetLabels(2));

    graph.setSubsetLabels(3, "Transducer 7");
    graph.setSubsetLabels(13, "Transducer 7");
    document->setCurrentPen(3);
    document->SetPlotting({});
    EXPECT_EQ(graph.SubsetLabels(3), "Transducer 7");
    EXPECT_EQ(graph.SubsetLabels(13), "Transducer 7");
}

TEST_F(PenDocumentState, TheTimeOfTheRoundBeforeGivesWayToThatOfTheNext)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->setPenName(0, "01:02:03");
    document->SetPlotting({});
    EXPECT_NE(document->peGraph().SubsetLabels(0), "01:02:03");
    EXPECT_EQ(document->peGraph().SubsetLabels(10), document->peGraph().SubsetLabels(0));
}

TEST_F(PenDocumentState, TheCursorReadOutGoesWithItsPoints)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 10, 1, 0);
    QStringList read;
    QObject::connect(document.get(), &PenDocument::cursorRead, [&](const QString& x, const QString&) { read << x; });
    Q_EMIT document->peGraph().CursorMoved(0, 0);
    document->graphEraseLine(1);
    EXPECT_EQ(read, QStringList{"X: 1000 Hz"});
    document->SetPlotting({});
    EXPECT_EQ(read, (QStringList{"X: 1000 Hz", QString()}));
}

TEST_F(PenDocumentState, ALockedPenTakesNoSweep)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 10, 1, 0);
    document->UpdatePenLock(0, true);
    EXPECT_FALSE(document->SetPlotting({}));
    EXPECT_EQ(document->gCurrentPen(), 0);
    EXPECT_EQ(document->peGraph().YData(0, 0), 50.0F);
    EXPECT_EQ(document->peGraph().SubsetLabels(0), "Pen 1");
}

TEST_F(PenDocumentState, LockedPenInAMultiPenRunGoesToTheNextFreeOne)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->UpdatePenLock(0, true);
    document->UpdatePenLock(1, true);
    EXPECT_TRUE(document->SetPlotting({.multiPen = true}));
    EXPECT_EQ(document->gCurrentPen(), 2);
    document->LockAllPens();
    EXPECT_FALSE(document->SetPlotting({.multiPen = true}));
}

TEST_F(PenDocumentState, SamplingInstrumentJoinsPointsWhilePlotting)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->SetPlotting({.sampling = true});
    for (int subset = 0; subset < 40; ++subset)
        EXPECT_EQ(document->peGraph().SubsetLineTypes(subset), subset % 10 == 0 ? 5 : 0) << subset;
    document->SetViewing();
    for (int subset = 0; subset < 40; ++subset)
        EXPECT_EQ(document->peGraph().SubsetLineTypes(subset), 0) << subset;
}

TEST_F(PenDocumentState, SetViewingTakesTheCursorAwayAndLooksAtTheClipboard)
{
    const auto document = bench.document(PenDocument::Impedance);
    GraphModel& graph = document->peGraph();
    document->SetPlotting({});
    for (const int axis : {0, 1}) {
        const AxisScope scope(graph, axis);
        graph.setPlottingMode(true);
    }
    bench.clipboard.content = "Frequency - Hz\tPen 1\t2\r\n";
    document->SetViewing();
    EXPECT_EQ(graph.VertLineAnnotationType(0), 1000);
    EXPECT_EQ(graph.VertLineAnnotation(0), 0);
    for (const int axis : {0, 1}) {
        const AxisScope scope(graph, axis);
        EXPECT_FALSE(graph.PlottingMode());
    }
    EXPECT_TRUE(document->canPaste());
}

} // namespace
