// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/ShowCommand.h"

#include "cli/plots/PlotSummary.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"
#include "document/content/GraphTexts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <limits>

using namespace cli;

namespace {

class ShowPlotsTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    /// A document of that type, as a sweep leaves it.
    PenDocument& newDocument(PenDocument::TestType type) { return m_workspace.newDocument(type, true); }

    QString save(PenDocument& document, const QByteArray& name)
    {
        const Outcome saved = GraphFile::PEsavetofile(document.peGraph(), path(name.constData()));
        EXPECT_TRUE(saved) << saved.sentence().toStdString();
        return path(name.constData());
    }

    /// An impedance plot with everything that can be shown.
    QString fullPlot()
    {
        PenDocument& document = newDocument(PenDocument::Impedance);
        GraphModel& graph = document.peGraph();
        document.setCurrentPen(1);
        document.AddImpedancePoint(38000, 1200, 80, -1, 0);
        document.AddImpedancePoint(39987, 24.125, 1.5, 1, 1);
        document.AddImpedancePoint(41250, 41700, 12, -1, 2);
        document.UpdatePenLock(1, true);
        document.UpdatePenHide(4, true);
        document.graphUpdateDisplayedPens();
        graph.setMultiSubTitles(0, QStringLiteral("0X00000000"));
        graph.setSubsetLabels(1, QStringLiteral("L\u00e4ngs"));
        graph.setSubsetColors(1, 0x00336699);
        graph.setMainTitle(QStringLiteral("Horn 7"));
        graph.setTXAxisLabel(QStringLiteral("MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026"));
        graph.setWorkingTable(graphtexts::kMaskTable);
        graph.setTAText(0, 0, graphtexts::kMask);
        graph.setGraphAnnotationText(graphtexts::kSettingsMarker, graphtexts::kTestSettings);
        graph.setGraphAnnotationText(graphtexts::kSettingsString, QStringLiteral("42000,38000,False,True,3,0,0,0"));
        graph.setManualScaleControlX(graph::ScaleManual);
        graph.setManualMinX(38000);
        graph.setManualMaxX(42000);
        graph::ZoomLimits zoom;
        zoom.ZoomMinX = zoom.ZoomMinTX = 4; // exponents: the axis is logarithmic
        zoom.ZoomMaxX = zoom.ZoomMaxTX = 5;
        zoom.ZoomMinY = 1;
        zoom.ZoomMaxY = 3;
        zoom.ZoomMinRY = -90;
        zoom.ZoomMaxRY = 90;
        graph.setZoomLimits(zoom);
        graph.setZoomed(true);
        graph.PEactions(graph::Reinitialise);
        return save(document, "full.gzd");
    }

    ExitCode show(const QStringList& files, int pen = 0, bool json = false, int jobs = 1)
    {
        m_results.clear();
        m_problems.clear();
        return showPlots({files, pen, json, jobs}, m_console);
    }

    std::string results() const { return m_results.toStdString(); }
    std::string problems() const { return m_problems.toStdString(); }
    QJsonObject object() const { return QJsonDocument::fromJson(m_results.toUtf8()).object(); }

    QTemporaryDir m_folder;
    QString m_results, m_problems;
    Console m_console{QStringLiteral("marrowick"), Console::into(m_results), Console::into(m_problems), false};
    ConsoleMessages m_messages{m_console};
    Workspace m_workspace{m_messages};
};

} // namespace

TEST_F(ShowPlotsTest, ThePlotIsToldInLines)
{
    const QString file = fullPlot();
    EXPECT_EQ(show({file}), ExitCode::Done);
    EXPECT_EQ(results(), file.toStdString() +
                             "\n"
                             "format    1\n"
                             "type      impedance\n"
                             "title     Horn 7\n"
                             "origin    MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026\n"
                             "view      Modulus of Impedance - Ohms, Phase - Degrees, logarithmic frequency axis from "
                             "38 kHz to 42 kHz, zoomed to 10 kHz to 100 kHz\n"
                             "masks     on\n"
                             "settings  42000,38000,False,True,3,0,0,0\n"
                             "pen 2     L\u00e4ngs, #996633, locked: 3 points from 38 kHz to 41.25 kHz, lowest "
                             "impedance 24.13 Ohm at 39.987 kHz, highest 41.7 kOhm at 41.25 kHz\n");
    EXPECT_EQ(problems(), "");
}

TEST_F(ShowPlotsTest, TheObjectHoldsThePlotAndAllTenPens)
{
    const QString file = fullPlot();
    EXPECT_EQ(show({file}, 0, true), ExitCode::Done);
    const QJsonArray plots = object()[QStringLiteral("plots")].toArray();
    ASSERT_EQ(plots.size(), 1);
    const QJsonObject plot = plots[0].toObject();
    EXPECT_EQ(plot[QStringLiteral("file")], file);
    EXPECT_EQ(plot[QStringLiteral("format")], QStringLiteral("1"));
    EXPECT_EQ(plot[QStringLiteral("type")], QStringLiteral("impedance"));
    EXPECT_EQ(plot[QStringLiteral("unit")], QStringLiteral("Ohm"));
    EXPECT_EQ(plot[QStringLiteral("title")], QStringLiteral("Horn 7"));
    EXPECT_EQ(plot[QStringLiteral("origin")], QStringLiteral("MarrowickGraph V1.28.0 | T46 V1.2.3 : 21/11/2026"));
    EXPECT_EQ(plot[QStringLiteral("masks")], true);
    EXPECT_EQ(plot[QStringLiteral("settings")], QStringLiteral("42000,38000,False,True,3,0,0,0"));
    const QJsonObject view = plot[QStringLiteral("view")].toObject();
    EXPECT_EQ(view[QStringLiteral("axes")],
              (QJsonArray{QStringLiteral("Modulus of Impedance - Ohms"), QStringLiteral("Phase - Degrees")}));
    EXPECT_EQ(view[QStringLiteral("linear")], false);
    EXPECT_EQ(view[QStringLiteral("from")], 38000);
    EXPECT_EQ(view[QStringLiteral("to")], 42000);
    const QJsonObject zoom = view[QStringLiteral("zoom")].toObject();
    EXPECT_DOUBLE_EQ(zoom[QStringLiteral("from")].toDouble(), 1e4);
    EXPECT_DOUBLE_EQ(zoom[QStringLiteral("to")].toDouble(), 1e5);
    EXPECT_EQ(zoom[QStringLiteral("left")], (QJsonArray{10, 1000}));
    EXPECT_EQ(zoom[QStringLiteral("right")], (QJsonArray{-90, 90}));

    const QJsonArray pens = plot[QStringLiteral("pens")].toArray();
    ASSERT_EQ(pens.size(), 10);
    const QJsonObject second = pens[1].toObject();
    EXPECT_EQ(second[QStringLiteral("pen")], 2);
    EXPECT_EQ(second[QStringLiteral("name")], QStringLiteral("L\u00e4ngs"));
    EXPECT_EQ(second[QStringLiteral("colour")], QStringLiteral("#996633"));
    EXPECT_EQ(second[QStringLiteral("locked")], true);
    EXPECT_EQ(second[QStringLiteral("hidden")], false);
    EXPECT_EQ(second[QStringLiteral("points")], 3);
    EXPECT_EQ(second[QStringLiteral("from")], 38000);
    EXPECT_EQ(second[QStringLiteral("to")], 41250);
    EXPECT_EQ(second[QStringLiteral("lowest")],
              (QJsonObject{{QStringLiteral("frequency"), 39987}, {QStringLiteral("value"), 24.125}}));
    EXPECT_EQ(second[QStringLiteral("highest")],
              (QJsonObject{{QStringLiteral("frequency"), 41250}, {QStringLiteral("value"), 41700}}));
    const QJsonObject fifth = pens[4].toObject();
    EXPECT_EQ(fifth[QStringLiteral("hidden")], true);
    EXPECT_EQ(fifth[QStringLiteral("points")], 0);
    EXPECT_FALSE(fifth.contains(QStringLiteral("lowest")));
}

TEST_F(ShowPlotsTest, WhatAPlotDoesNotHaveIsTold)
{
    PenDocument& document = newDocument(PenDocument::Amplitude);
    document.peGraph().setMainTitle(graphtexts::kNoTitle);
    document.peGraph().setTXAxisLabel(QString());
    document.graphSetPhase(0);
    document.graphSetAlternateView(true);
    document.graphSetFrequecyLinear(true);
    document.peGraph().setManualScaleControlX(graph::ScaleAutomatic);
    const QString file = save(document, "bare.gad");
    EXPECT_EQ(show({file}), ExitCode::Done);
    EXPECT_EQ(results(), file.toStdString() +
                             "\nformat    1\ntype      amplitude\ntitle     none\norigin    not known\n"
                             "view      Amplitude Loss - dB, linear frequency axis\n"
                             "masks     off\nsettings  none\n");
    show({file}, 0, true);
    const QJsonObject plot = object()[QStringLiteral("plots")].toArray()[0].toObject();
    EXPECT_TRUE(plot[QStringLiteral("title")].isNull());
    EXPECT_TRUE(plot[QStringLiteral("settings")].isNull());
    EXPECT_TRUE(plot[QStringLiteral("view")].toObject()[QStringLiteral("zoom")].isNull());
    EXPECT_TRUE(plot[QStringLiteral("view")].toObject()[QStringLiteral("from")].isNull());
    EXPECT_EQ(plot[QStringLiteral("unit")], QStringLiteral("dB"));
}

TEST_F(ShowPlotsTest, APlotOfANewerFormatIsShownAsViewOnly)
{
    PenDocument& document = newDocument(PenDocument::Impedance);
    GraphModel& graph = document.peGraph();
    graph.setWorkingTable(graphtexts::kFormatTable);
    graph.setTARows(1);
    graph.setTAColumns(2);
    graph.setTAText(0, 0, QStringLiteral("2"));
    EXPECT_EQ(show({save(document, "newer.gzd")}), ExitCode::Done);
    EXPECT_NE(results().find("\nformat    2, may only be viewed\n"), std::string::npos) << results();
}

TEST_F(ShowPlotsTest, APlotWithoutAKnownAxisTitleIsOfUnknownType)
{
    PenDocument& document = newDocument(PenDocument::Impedance);
    document.AddImpedancePoint(1000, 5, 0, 1, 0);
    document.peGraph().setWorkingAxis(0);
    document.peGraph().setYAxisLabel(QStringLiteral("Volts"));
    const QString file = save(document, "strange.gzd");
    EXPECT_EQ(show({file}), ExitCode::Done);
    EXPECT_NE(results().find("\ntype      unknown\n"), std::string::npos) << results();
    EXPECT_NE(results().find("lowest value 5 at 1 kHz"), std::string::npos) << results();
    show({file}, 1);
    EXPECT_EQ(results(), "frequency_Hz,value\n1000,5\n");
}

TEST_F(ShowPlotsTest, ThePointsOfAPenAreATableThatEndsWhereThePenEnds)
{
    const QString file = fullPlot();
    EXPECT_EQ(show({file}, 2), ExitCode::Done);
    EXPECT_EQ(results(), "frequency_Hz,impedance_Ohm,phase_deg\n38000,1200,-80\n39987,24.125,1.5\n41250,41700,-12\n");
    EXPECT_EQ(show({file}, 1), ExitCode::Done);
    EXPECT_EQ(results(), "frequency_Hz,impedance_Ohm\n");

    PenDocument& reactance = newDocument(PenDocument::Reactance);
    reactance.AddReactancePoint(1000, -4, 3, 0.25, 0.125, 0);
    reactance.AddReactancePoint(3000, -4, 3, 0.25, 0.125, 2); // behind the end mark
    EXPECT_EQ(show({save(reactance, "reactance")}, 1), ExitCode::Done);
    EXPECT_EQ(results(),
              "frequency_Hz,reactance_Ohm,resistance_Ohm,susceptance_S,conductance_S\n1000,-4,3,0.25,0.125\n");
}

TEST_F(ShowPlotsTest, AnUnmeasuredPhaseIsNoColumn)
{
    PenDocument& document = newDocument(PenDocument::Impedance);
    document.AddImpedancePoint(1000, 5, 65536, 1, 0);
    show({save(document, "magnitude.gzd")}, 1);
    EXPECT_EQ(results(), "frequency_Hz,impedance_Ohm\n1000,5\n");
}

TEST_F(ShowPlotsTest, NumbersThatAreNotFiniteDoNotCountAsExtremes)
{
    PenDocument& document = newDocument(PenDocument::Impedance);
    GraphModel& graph = document.peGraph();
    const float infinite = std::numeric_limits<float>::infinity();
    graph.setPoint(0, 0, 1000, std::numeric_limits<float>::quiet_NaN());
    graph.setPoint(0, 1, 2000, 7);
    graph.setPoint(0, 2, 3000, infinite);
    graph.setPoint(1, 0, 1000, infinite);
    EXPECT_EQ(show({save(document, "wild.gzd")}), ExitCode::Done);
    EXPECT_NE(results().find("3 points from 1 kHz to 3 kHz, lowest impedance 7 Ohm at 2 kHz, highest 7 Ohm at 2 kHz\n"),
              std::string::npos)
        << results();
    EXPECT_NE(results().find("1 points, none of them a finite number\n"), std::string::npos) << results();
}

TEST_F(ShowPlotsTest, ControlCharactersOfAFileDoNotReachTheTerminal)
{
    PenDocument& document = newDocument(PenDocument::Impedance);
    document.peGraph().setMainTitle(QStringLiteral("a\x1b[2Jb\nc"));
    document.peGraph().setSubsetLabels(0, QStringLiteral("\x07"
                                                         "bell"));
    show({save(document, "rude.gzd")});
    EXPECT_NE(results().find("\ntitle     a [2Jb c\n"), std::string::npos) << results();
    EXPECT_NE(results().find("\npen 1      bell, "), std::string::npos) << results();
}

TEST_F(ShowPlotsTest, AFileThatCannotBeReadIsToldAndTheOthersAreShown)
{
    const QString good = fullPlot();
    QFile damaged(path("damaged.gzd"));
    ASSERT_TRUE(damaged.open(QFile::WriteOnly));
    damaged.write("no plot at all");
    damaged.close();
    EXPECT_EQ(show({path("missing.gzd"), good, path("damaged.gzd"), good}), ExitCode::FileError);
    EXPECT_NE(problems().find(path("missing.gzd").toStdString()), std::string::npos) << problems();
    EXPECT_NE(problems().find(path("damaged.gzd").toStdString()), std::string::npos) << problems();
    EXPECT_EQ(m_results.count(QStringLiteral("title     Horn 7")), 2);
    EXPECT_EQ(m_results.count(QStringLiteral("\n\n")), 1);

    EXPECT_EQ(show({path("missing.gzd")}, 0, true), ExitCode::FileError);
    EXPECT_EQ(results(), "{\"plots\":[]}\n");
}

TEST_F(ShowPlotsTest, ThePlotFileStaysAsItWas)
{
    const QString name = fullPlot();
    QFile file(name);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    show({name});
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
}

TEST_F(ShowPlotsTest, ManyFilesReadAtOnceAreShownInTheirOrder)
{
    QStringList files;
    constexpr int kFiles = 40;
    for (int number = 0; number < kFiles; ++number) {
        PenDocument& document = newDocument(number % 2 == 0 ? PenDocument::Impedance : PenDocument::Amplitude);
        document.peGraph().setMainTitle(QString::number(number));
        files += save(document, QByteArray::number(number) + ".plot");
        if (number % 10 == 3)
            files += path((QByteArray::number(number) + ".none").constData());
    }
    EXPECT_EQ(show(files), ExitCode::FileError);
    const QString results = m_results, problems = m_problems;
    EXPECT_EQ(results.count(QStringLiteral("\ntitle ")), kFiles);
    EXPECT_EQ(problems.count(u'\n'), 4);
    EXPECT_EQ(show(files, 0, false, 8), ExitCode::FileError);
    EXPECT_EQ(m_results, results);
    EXPECT_EQ(m_problems, problems);
}

TEST_F(ShowPlotsTest, AMistypedFileNameIsToldWithTheNearestInItsFolder)
{
    fullPlot();
    EXPECT_EQ(show({path("fall.gzd")}), ExitCode::FileError);
    EXPECT_EQ(problems(), "marrowick: " + path("fall.gzd").toStdString() + ": there is no such file; did you mean " +
                              path("full.gzd").toStdString() + "?\n");
    EXPECT_EQ(show({path("other")}), ExitCode::FileError);
    EXPECT_EQ(problems(), "marrowick: " + path("other").toStdString() + ": there is no such file.\n");
}
