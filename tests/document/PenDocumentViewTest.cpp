// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"

#include <gtest/gtest.h>

namespace {

struct Axis
{
    double minimum, maximum;
    int scale, control;
    float null;
};

Axis axisOf(PenDocument& document, int axis)
{
    const AxisScope scope(document.peGraph(), axis);
    const GraphModel& graph = document.peGraph();
    return {graph.ManualMinY(), graph.ManualMaxY(), graph.YAxisScaleControl(), graph.ManualScaleControlY(),
            graph.NullDataValueY()};
}

struct PenDocumentView : ::testing::Test
{
    DocumentBench bench;

    void expectTitles(PenDocument& document, const QStringList& titles)
    {
        for (int axis = 0; axis < 4; ++axis)
            EXPECT_EQ(yTitle(document, axis), titles[axis]) << axis;
    }
    static int slot(const PenDocument& document, int i) { return document.peGraph().RandomSubsetsToGraph(i); }
};

TEST_F(PenDocumentView, TitlesOfANewAmplitudeDocument)
{
    const auto document = bench.document(PenDocument::Amplitude);
    expectTitles(*document, {"Amplitude Gain - dB", "X", "X", "X"});
    EXPECT_EQ(document->peGraph().XAxisLabel(), "Frequency - Hz");
    document->graphSetDefaultView();
    expectTitles(*document, {"Amplitude Gain - dB", "X", "X", "Phase - Degrees"});
    document->graphSetAlternateView(true);
    expectTitles(*document, {"X", "Amplitude Loss - dB", "X", "Phase - Degrees"});
    EXPECT_EQ(document->pgiTestType(), 1);
}

TEST_F(PenDocumentView, TitlesOfANewImpedanceDocument)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->graphSetDefaultView();
    expectTitles(*document, {"Modulus of Impedance - Ohms", "X", "X", "Phase - Degrees"});
    document->graphSetPhase(1);
    expectTitles(*document, {"Modulus of Impedance - Ohms", "X", "Phase - Degrees", "X"});
    document->graphSetPhase(0);
    document->graphSetAlternateView(true);
    expectTitles(*document, {"X", "Modulus of Admittance - Siemens", "X", "X"});
}

TEST_F(PenDocumentView, TitlesOfANewReactanceDocumentFollowThePreference)
{
    const auto document = bench.document(PenDocument::Reactance);
    document->graphSetDefaultView();
    expectTitles(*document, {"X", "Susceptance B - Siemens", "Conductance G - Siemens", "X"});
    EXPECT_EQ(document->giDisplayRG(), 2);
    EXPECT_TRUE(document->gbfAltSubset());

    bench.preferences.setValue(options::kReactanceImpedance, true);
    document->graphSetDefaultView();
    expectTitles(*document, {"Reactance X - Ohms", "X", "X", "Resistance R - Ohms"});
    EXPECT_EQ(document->giDisplayRG(), 1);
    EXPECT_FALSE(document->gbfAltSubset());
}

TEST_F(PenDocumentView, TitlesAreReadBackAsTheViewThatWroteThem)
{
    for (std::int16_t type : {1, 2, 3}) {
        for (const bool alternate : {false, true}) {
            for (std::int16_t right : {1, 2}) {
                const auto document = bench.document(type);
                document->graphSetAlternateView(alternate);
                document->graphSetPhase(right);
                document->graphSetRG(right);
                Presentation read(document->peGraph());
                read.readTitles();
                EXPECT_EQ(read.testType(), type);
                EXPECT_EQ(read.isAlternate(), alternate);
                EXPECT_EQ(type == 3 ? read.rgView() : read.phaseView(), right);
            }
        }
    }
}

TEST_F(PenDocumentView, EachAxisHasTheNullValue)
{
    const auto document = bench.document(PenDocument::Reactance);
    for (int axis = 0; axis < 4; ++axis)
        EXPECT_EQ(axisOf(*document, axis).null, -65536.0F);
}

TEST_F(PenDocumentView, DefaultLimitsComeFromTheInstrument)
{
    bench.source.ranges.lowestLevel = -80;
    bench.source.ranges.highestLevel = 20;
    const auto amplitude = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(axisOf(*amplitude, 0).minimum, -80);
    EXPECT_EQ(axisOf(*amplitude, 0).maximum, 20);
    EXPECT_EQ(axisOf(*amplitude, 1).minimum, -20);
    EXPECT_EQ(axisOf(*amplitude, 1).maximum, 80);
    EXPECT_EQ(axisOf(*amplitude, 0).scale, 1);
    EXPECT_EQ(axisOf(*amplitude, 0).control, 3);

    const auto impedance = bench.document(PenDocument::Impedance);
    EXPECT_EQ(axisOf(*impedance, 0).minimum, 0.01);
    EXPECT_EQ(axisOf(*impedance, 0).maximum, 999999);
    EXPECT_EQ(axisOf(*impedance, 1).minimum, 1.0 / 999999);
    EXPECT_EQ(axisOf(*impedance, 1).maximum, 100);
    EXPECT_EQ(axisOf(*impedance, 0).scale, 2);
    EXPECT_EQ(axisOf(*impedance, 1).scale, 2);

    const auto reactance = bench.document(PenDocument::Reactance);
    EXPECT_EQ(axisOf(*reactance, 0).minimum, -50000);
    EXPECT_EQ(axisOf(*reactance, 0).maximum, 50000);
    EXPECT_EQ(axisOf(*reactance, 1).minimum, -500);
    EXPECT_EQ(axisOf(*reactance, 1).maximum, 500);
    EXPECT_EQ(axisOf(*reactance, 2).minimum, 0);
    EXPECT_EQ(axisOf(*reactance, 2).maximum, 100);
    EXPECT_EQ(axisOf(*reactance, 3).minimum, 0);
    EXPECT_EQ(axisOf(*reactance, 3).maximum, 500000);
}

TEST_F(PenDocumentView, PhaseAxesCoverWhatTheirSubsetsCarry)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 180, 1, 0);
    document->AddImpedancePoint(1000, 50, 180, -1, 1);
    document->AddImpedancePoint(1000, 50, 0, -1, 2);
    for (const int axis : {2, 3}) {
        for (int point = 0; point < 3; ++point) {
            const float phase = document->peGraph().YData(axis * 10, point);
            EXPECT_LE(axisOf(*document, axis).minimum, phase);
            EXPECT_GE(axisOf(*document, axis).maximum, phase);
        }
    }
    EXPECT_EQ(axisOf(*document, 2).maximum - axisOf(*document, 2).minimum, 180);
    EXPECT_EQ(axisOf(*document, 3).maximum - axisOf(*document, 3).minimum, 360);
}

TEST_F(PenDocumentView, SweepFillsTheFrequencyAxis)
{
    bench.source.ranges.sweepStart = 30000;
    bench.source.ranges.sweepEnd = 50000;
    const auto document = bench.document(PenDocument::Impedance);
    EXPECT_EQ(document->peGraph().ManualScaleControlX(), 3);
    EXPECT_EQ(document->peGraph().ManualMinX(), 30000);
    EXPECT_EQ(document->peGraph().ManualMaxX(), 50000);
    EXPECT_EQ(document->peGraph().XAxisScaleControl(), 2);
}

TEST_F(PenDocumentView, WithoutASweepTheAxisCoversTheInstrumentsRange)
{
    bench.source.ranges.sweepStart = 1000;
    bench.source.ranges.sweepEnd = 1000;
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->peGraph().ManualMinX(), 10);
    EXPECT_EQ(document->peGraph().ManualMaxX(), 50000000);
}

TEST_F(PenDocumentView, DefaultViewTakesThePreferences)
{
    const auto amplitude = bench.document(PenDocument::Amplitude);
    amplitude->graphSetDefaultView();
    EXPECT_EQ(axisOf(*amplitude, 0).control, 3);
    EXPECT_EQ(amplitude->graphGetPhaseView(), 2);
    EXPECT_FALSE(amplitude->graphGetFrequncyView());
    bench.preferences.setValue(options::kAmplitudeAxisScaleAuto, true);
    bench.preferences.setValue(options::kAmplitudePhaseGraph, 1);
    bench.preferences.setValue(options::kAmplitudeAxisScaleLin, true);
    amplitude->graphSetDefaultView();
    EXPECT_EQ(axisOf(*amplitude, 0).control, 0);
    EXPECT_EQ(axisOf(*amplitude, 1).control, 0);
    EXPECT_EQ(amplitude->graphGetPhaseView(), 1);
    EXPECT_TRUE(amplitude->graphGetFrequncyView());
    EXPECT_EQ(amplitude->peGraph().XAxisScaleControl(), 1);

    const auto impedance = bench.document(PenDocument::Impedance);
    impedance->graphSetDefaultView();
    EXPECT_EQ(axisOf(*impedance, 0).control, 3);
    bench.preferences.setValue(options::kImpedanceDisplayLimits, QString("Auto"));
    bench.preferences.setValue(options::kImpedancePhaseGraph, 0);
    impedance->graphSetDefaultView();
    EXPECT_EQ(axisOf(*impedance, 0).control, 0);
    EXPECT_EQ(impedance->graphGetPhaseView(), 0);

    const auto reactance = bench.document(PenDocument::Reactance);
    reactance->graphSetDefaultView();
    EXPECT_FALSE(reactance->graphGetFrequncyView());
    for (int axis = 0; axis < 4; ++axis)
        EXPECT_EQ(axisOf(*reactance, axis).control, 0);
    bench.preferences.setValue(options::kReactanceReactAuto, false);
    bench.preferences.setValue(options::kReactanceFreqLog, false);
    reactance->graphSetDefaultView();
    EXPECT_EQ(axisOf(*reactance, 0).control, 3);
    EXPECT_EQ(axisOf(*reactance, 1).control, 3);
    EXPECT_EQ(axisOf(*reactance, 2).control, 0);
    EXPECT_TRUE(reactance->graphGetFrequncyView());
}

TEST_F(PenDocumentView, ShownPensFillTheListByViewAndPhase)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->UpdatePenHide(4, true);
    const auto expectSlots = [&](int pen, bool own, bool alternate, bool third, bool fourth) {
        EXPECT_EQ(slot(*document, pen), own ? pen : -1);
        EXPECT_EQ(slot(*document, pen + 10), alternate ? pen + 10 : -1);
        EXPECT_EQ(slot(*document, pen + 20), third ? pen + 20 : -1);
        EXPECT_EQ(slot(*document, pen + 30), fourth ? pen + 30 : -1);
    };
    document->graphSetPhase(0);
    expectSlots(2, true, false, false, false);
    expectSlots(4, false, false, false, false);
    document->graphSetPhase(1);
    expectSlots(2, true, false, true, false);
    document->graphSetPhase(2);
    expectSlots(2, true, false, false, true);
    expectSlots(4, false, false, false, false);
    document->graphSetAlternateView(true);
    expectSlots(2, false, true, false, true);
}

TEST_F(PenDocumentView, ReactanceShowsResistanceOrConductance)
{
    const auto document = bench.document(PenDocument::Reactance);
    document->graphSetRG(0);
    EXPECT_EQ(slot(*document, 20), -1);
    EXPECT_EQ(slot(*document, 30), -1);
    document->graphSetRG(1);
    EXPECT_EQ(slot(*document, 20), -1);
    EXPECT_EQ(slot(*document, 30), 30);
    document->graphSetRG(2);
    EXPECT_EQ(slot(*document, 20), 20);
    EXPECT_EQ(slot(*document, 30), -1);
}

TEST_F(PenDocumentView, AmplitudeScaleSetsBothViews)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->graphSetAmpScale(5, -45);
    EXPECT_EQ(axisOf(*document, 0).minimum, -45);
    EXPECT_EQ(axisOf(*document, 0).maximum, 5);
    EXPECT_EQ(axisOf(*document, 1).minimum, -5);
    EXPECT_EQ(axisOf(*document, 1).maximum, 45);
    EXPECT_EQ(axisOf(*document, 0).control, 3);
}

TEST_F(PenDocumentView, ImpedanceLinearSetsBothAxes)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->ImpedanceLinear(true);
    EXPECT_EQ(axisOf(*document, 0).scale, 1);
    EXPECT_EQ(axisOf(*document, 1).scale, 1);
    document->ImpedanceLinear(false);
    EXPECT_EQ(axisOf(*document, 0).scale, 2);
    EXPECT_EQ(axisOf(*document, 1).scale, 2);
}

TEST_F(PenDocumentView, AppearanceTakesFontShadeAndPenColours)
{
    bench.preferences.setValue(options::kDefaultFont, QString("Cantarell"));
    bench.preferences.setValue(options::kGraticuleShade, 0x9A9A9A);
    const auto stored = bench.document(PenDocument::Amplitude);
    const GraphModel& graph = stored->peGraph();
    EXPECT_EQ(graph.MainTitle(), "Title");
    EXPECT_EQ(graph.MainTitleFont(), "Cantarell");
    EXPECT_EQ(graph.TickColor(), 0x9A9A9AU);
    EXPECT_EQ(graph.SubsetColors(2), 0x0000FFU);
    EXPECT_EQ(graph.SubsetColors(32), 0x0000FFU);
    EXPECT_EQ(graph.SubsetLabels(0), "Pen 1");
    EXPECT_EQ(graph.SubsetLabels(19), "Pen 10");
    EXPECT_EQ(graph.properties().AxisUnitPrefixes, "p n u m k M G T ");
    EXPECT_EQ(cellText(*stored, 0), "Produced by Marrowick Instruments");
    EXPECT_EQ(cellText(*stored, 2), "1");
    {
        const TableScope scope(stored->peGraph(), 2);
        EXPECT_EQ(graph.TARows(), 1);
        EXPECT_EQ(graph.TAColumns(), 2);
    }

    bench.preferences.setValue(options::kPens[2], std::uint32_t{0xABCDEF});
    EXPECT_EQ(bench.document(PenDocument::Amplitude)->peGraph().SubsetColors(12), 0xABCDEFU);
    stored->graphSetTickColour(0x7C7C7C);
    EXPECT_EQ(graph.TickColor(), 0x7C7C7CU);
}

TEST_F(PenDocumentView, PopupTextsByType)
{
    const QStringList common{"Test Settings", "Graph View Options", "Add Text", "PZT Analysis", "Admittance loop"};
    const QStringList end{"Mark Data Points", "Cut",       "Copy",   "Paste",     "Zoom Extents",
                          "Undo Zoom",        "Redo Zoom", "Export", "Properties"};
    const std::map<std::int16_t, QStringList> views{{1, {"Amplitude|Gain|Loss", "Phase|180|360|Off"}},
                                                    {2, {"Impedance/Admittance|Impedance|Admittance", "Phase|360|Off"}},
                                                    {3, {"I'm gone!", "Impedance/Admittance|Impedance|Admittance"}}};
    for (const auto& [type, items] : views) {
        const auto document = bench.document(type);
        const QStringList expected = common + items + end;
        ASSERT_EQ(expected.size(), 16);
        for (int item = 0; item < 16; ++item)
            EXPECT_EQ(document->peGraph().CustomMenu(item), expected[item]);
    }
}

TEST_F(PenDocumentView, PopupStatesByType)
{
    const auto hidden = [&](std::int16_t type) {
        const auto document = bench.document(type);
        QList<int> items;
        for (int item = 0; item < 16; ++item) {
            if (document->peGraph().CustomMenuState(item, 0) == 2)
                items << item;
        }
        for (const int item : {10, 12, 13})
            EXPECT_EQ(document->peGraph().CustomMenuState(item, 0), 1) << item;
        return items;
    };
    EXPECT_EQ(hidden(1), (QList<int>{3, 4}));
    EXPECT_EQ(hidden(2), QList<int>());
    EXPECT_EQ(hidden(3), QList<int>{5});
}

TEST_F(PenDocumentView, PopupViewEntriesSwitchTheViewAndCarryTheMark)
{
    const auto amplitude = bench.document(PenDocument::Amplitude);
    GraphModel& graph = amplitude->peGraph();
    const auto checked = [](GraphModel& of, int item) {
        QString marks;
        for (int sub = 1; sub <= 3; ++sub)
            marks += of.CustomMenuChecked(item, sub) ? 'x' : '-';
        return marks;
    };
    EXPECT_EQ(checked(graph, 5), "x--");
    EXPECT_EQ(checked(graph, 6), "--x");
    Q_EMIT graph.CustomMenuClicked(5, 2);
    EXPECT_TRUE(amplitude->gbfAltSubset());
    EXPECT_TRUE(amplitude->gbfModified());
    EXPECT_EQ(checked(graph, 5), "-x-");
    Q_EMIT graph.CustomMenuClicked(6, 1);
    EXPECT_EQ(amplitude->graphGetPhaseView(), 1);
    EXPECT_EQ(checked(graph, 6), "x--");
    Q_EMIT graph.CustomMenuClicked(6, 2);
    EXPECT_EQ(amplitude->graphGetPhaseView(), 2);
    Q_EMIT graph.CustomMenuClicked(6, 3);
    EXPECT_EQ(amplitude->graphGetPhaseView(), 0);

    const auto impedance = bench.document(PenDocument::Impedance);
    Q_EMIT impedance->peGraph().CustomMenuClicked(6, 1);
    EXPECT_EQ(impedance->graphGetPhaseView(), 2);
    EXPECT_EQ(checked(impedance->peGraph(), 6), "x--");
    Q_EMIT impedance->peGraph().CustomMenuClicked(6, 2);
    EXPECT_EQ(impedance->graphGetPhaseView(), 0);

    const auto reactance = bench.document(PenDocument::Reactance);
    Q_EMIT reactance->peGraph().CustomMenuClicked(6, 2);
    EXPECT_TRUE(reactance->gbfAltSubset());
    EXPECT_EQ(reactance->giDisplayRG(), 2);
    EXPECT_EQ(checked(reactance->peGraph(), 6), "-x-");
    Q_EMIT reactance->peGraph().CustomMenuClicked(6, 1);
    EXPECT_FALSE(reactance->gbfAltSubset());
    EXPECT_EQ(reactance->giDisplayRG(), 1);
}

TEST_F(PenDocumentView, OtherPopupEntriesGoToTheMainWindowUnlessGreyed)
{
    const auto document = bench.document(PenDocument::Impedance);
    QList<int> routed;
    QObject::connect(document.get(), &PenDocument::popupCommand, document.get(),
                     [&](int item, int) { routed << item; });
    for (int item = 0; item < 16; ++item)
        Q_EMIT document->peGraph().CustomMenuClicked(item, 0);
    EXPECT_EQ(routed, (QList<int>{0, 1, 2, 3, 4, 7, 8, 9, 14, 15}));
}

TEST_F(PenDocumentView, MarkDataPointsCarriesItsMark)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->ToggleMarkDataPoints();
    EXPECT_TRUE(document->peGraph().MarkDataPoints());
    EXPECT_TRUE(document->peGraph().CustomMenuChecked(7, 0));
    EXPECT_TRUE(document->gbfModified());
    document->ToggleMarkDataPoints();
    EXPECT_FALSE(document->peGraph().CustomMenuChecked(7, 0));
}

TEST_F(PenDocumentView, CursorReadOutHasUnitsByTypeAndSubset)
{
    const auto unit = [](PenDocument& document, int subset) {
        document.peGraph().setPoint(subset, 0, 1000.5F, -2.25F);
        const auto texts = document.cursorTexts(subset, 0);
        EXPECT_EQ(texts.x, "X: 1000.5 Hz");
        EXPECT_TRUE(texts.y.startsWith("Y: -2.25"));
        return texts.y.mid(8);
    };
    const auto amplitude = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(unit(*amplitude, 0), " dB");
    EXPECT_EQ(unit(*amplitude, 19), " dB");
    EXPECT_EQ(unit(*amplitude, 20), " Deg");
    EXPECT_EQ(unit(*amplitude, 39), " Deg");
    const auto impedance = bench.document(PenDocument::Impedance);
    EXPECT_EQ(unit(*impedance, 9), " Ohms");
    EXPECT_EQ(unit(*impedance, 10), " Siemens");
    EXPECT_EQ(unit(*impedance, 30), " Deg");
    const auto reactance = bench.document(PenDocument::Reactance);
    EXPECT_EQ(unit(*reactance, 0), " Ohms");
    EXPECT_EQ(unit(*reactance, 12), " Siemens");
    reactance->graphSetRG(1);
    EXPECT_EQ(unit(*reactance, 30), " Ohms");
    reactance->graphSetRG(2);
    EXPECT_EQ(unit(*reactance, 20), " Siemens");

    amplitude->peGraph().setXAxisLabel("Time");
    EXPECT_EQ(amplitude->cursorTexts(0, 0).x, "X: 1000.5");
}

TEST_F(PenDocumentView, CursorEventGivesTheReadOut)
{
    const auto document = bench.document(PenDocument::Amplitude);
    document->peGraph().setPoint(0, 3, 100.0F, -6.0F);
    QString x, y;
    QObject::connect(document.get(), &PenDocument::cursorRead, document.get(), [&](const QString& a, const QString& b) {
        x = a;
        y = b;
    });
    Q_EMIT document->peGraph().CursorMoved(0, 3);
    EXPECT_EQ(x, "X: 100 Hz");
    EXPECT_EQ(y, "Y: -6 dB");
}

} // namespace
