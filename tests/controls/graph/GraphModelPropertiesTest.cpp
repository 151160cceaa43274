// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphModel.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(GraphModelProperties, TitlesAreKept)
{
    GraphModel model;
    model.setMainTitle(QStringLiteral("main"));
    model.setSubTitle(QStringLiteral("sub"));
    model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
    model.setTXAxisLabel(QStringLiteral("carrier | here"));
    model.setAxisUnitPrefixes(QStringLiteral("p n u m k M G T "));
    EXPECT_EQ(model.MainTitle(), QStringLiteral("main"));
    EXPECT_EQ(model.SubTitle(), QStringLiteral("sub"));
    EXPECT_EQ(model.XAxisLabel(), QStringLiteral("Frequency - Hz"));
    EXPECT_EQ(model.TXAxisLabel(), QStringLiteral("carrier | here"));
    EXPECT_EQ(model.AxisUnitPrefixes(), QStringLiteral("p n u m k M G T "));
}

TEST(GraphModelProperties, YPropertiesAddressTheWorkingAxis)
{
    GraphModel model;
    for (int axis = 0; axis < 4; ++axis) {
        ASSERT_TRUE(model.setWorkingAxis(axis));
        EXPECT_EQ(model.WorkingAxis(), axis);
        EXPECT_EQ(model.YAxisLabel(), QStringLiteral("X"));
        EXPECT_EQ(model.NullDataValueY(), -65536.0F);
        model.setYAxisLabel(QString::number(axis));
        model.setYAxisScaleControl(axis % 2 + 1);
        model.setManualScaleControlY(axis % 2 == 0 ? 3 : 0);
        model.setManualMinY(-axis);
        model.setManualMaxY(10 + axis);
        model.setNullDataValueY(static_cast<float>(axis));
        model.setPlottingMode(axis == 1);
    }
    for (int axis = 0; axis < 4; ++axis) {
        model.setWorkingAxis(axis);
        EXPECT_EQ(model.YAxisLabel(), QString::number(axis));
        EXPECT_EQ(model.YAxisScaleControl(), axis % 2 + 1);
        EXPECT_EQ(model.ManualScaleControlY(), axis % 2 == 0 ? 3 : 0);
        EXPECT_EQ(model.ManualMinY(), -axis);
        EXPECT_EQ(model.ManualMaxY(), 10 + axis);
        EXPECT_EQ(model.NullDataValueY(), static_cast<float>(axis));
        EXPECT_EQ(model.PlottingMode(), axis == 1);
    }
}

TEST(GraphModelProperties, AnAxisTheGraphDoesNotHaveIsRefused)
{
    GraphModel model;
    model.setWorkingAxis(3);
    EXPECT_FALSE(model.setWorkingAxis(4));
    EXPECT_FALSE(model.setWorkingAxis(-1));
    EXPECT_EQ(model.WorkingAxis(), 3);
    EXPECT_FALSE(model.setWorkingTable(3));
    EXPECT_FALSE(model.setWorkingTable(-1));
    EXPECT_EQ(model.WorkingTable(), 0);
}

TEST(GraphModelProperties, ScalesAndLimitsTakeOnlyWhatTheyCanShow)
{
    GraphModel model;
    model.setXAxisScaleControl(2);
    model.setXAxisScaleControl(0);
    model.setXAxisScaleControl(3);
    EXPECT_EQ(model.XAxisScaleControl(), 2);
    model.setYAxisScaleControl(7);
    EXPECT_EQ(model.YAxisScaleControl(), 1);
    model.setManualScaleControlX(3);
    model.setManualScaleControlX(1);
    EXPECT_EQ(model.ManualScaleControlX(), 3);
    model.setManualScaleControlY(2);
    EXPECT_EQ(model.ManualScaleControlY(), 0);
    model.setManualMinX(10);
    model.setManualMinX(kInfinity);
    model.setManualMinX(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(model.ManualMinX(), 10);
    model.setManualMaxX(5e7);
    EXPECT_EQ(model.ManualMaxX(), 5e7);
    model.setManualMaxY(-kInfinity);
    EXPECT_EQ(model.ManualMaxY(), 1);
    model.setNullDataValueY(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(model.NullDataValueY(), -65536.0F);
}

TEST(GraphModelProperties, VerticalLinesAppearWhenWritten)
{
    GraphModel model;
    EXPECT_EQ(model.VertLineAnnotationType(0), graph::kLineVanished);
    model.setVertLineAnnotation(2, 1234.5);
    EXPECT_EQ(model.properties().verticalLines.size(), 3U);
    EXPECT_EQ(model.VertLineAnnotation(2), 1234.5);
    EXPECT_EQ(model.VertLineAnnotationType(2), graph::kLineVanished);
    model.setVertLineAnnotationType(2, 0);
    model.setVertLineAnnotationColor(2, 0x0000FF);
    EXPECT_EQ(model.VertLineAnnotationType(2), 0);
    EXPECT_EQ(model.VertLineAnnotationColor(2), 0x0000FFU);
    model.setVertLineAnnotation(2, kInfinity);
    EXPECT_EQ(model.VertLineAnnotation(2), 1234.5);
    for (const int outside : {-1, 100}) {
        model.setVertLineAnnotation(outside, 1);
        model.setVertLineAnnotationType(outside, 1);
        model.setVertLineAnnotationColor(outside, 1);
        EXPECT_EQ(model.VertLineAnnotation(outside), 0);
        EXPECT_EQ(model.VertLineAnnotationType(outside), graph::kLineVanished);
        EXPECT_EQ(model.VertLineAnnotationColor(outside), 0U);
    }
    EXPECT_EQ(model.properties().verticalLines.size(), 3U);
}

TEST(GraphModelProperties, TablePropertiesAddressTheWorkingTable)
{
    GraphModel model;
    for (int table = 0; table < 3; ++table) {
        ASSERT_TRUE(model.setWorkingTable(table));
        model.setTARows(1);
        model.setTAColumns(2);
        EXPECT_TRUE(model.setTAText(0, 1, QString::number(table)));
        EXPECT_TRUE(model.setTAJustification(0, 1, table));
        model.setTATextSize(100 + table);
        model.setTAFonts(QStringLiteral("Font %1").arg(table));
        model.setTALocation(table + 3);
        model.setTAHeaderColumn(table == 1);
        model.setTABorder(table);
        model.setTABackColor(static_cast<std::uint32_t>(table));
        model.setShowTableAnnotation(table == 2);
    }
    for (int table = 0; table < 3; ++table) {
        model.setWorkingTable(table);
        EXPECT_EQ(model.TARows(), 1);
        EXPECT_EQ(model.TAColumns(), 2);
        EXPECT_EQ(model.TAText(0, 1), QString::number(table));
        EXPECT_EQ(model.TAJustification(0, 1), table);
        EXPECT_EQ(model.TATextSize(), 100 + table);
        EXPECT_EQ(model.TAFonts(), QStringLiteral("Font %1").arg(table));
        EXPECT_EQ(model.TALocation(), table + 3);
        EXPECT_EQ(model.TAHeaderColumn(), table == 1);
        EXPECT_EQ(model.TABorder(), table);
        EXPECT_EQ(model.TABackColor(), static_cast<std::uint32_t>(table));
        EXPECT_EQ(model.ShowTableAnnotation(), table == 2);
    }
}

TEST(GraphModelProperties, AFreshTableHasOneCell)
{
    GraphModel model;
    model.setWorkingTable(1);
    EXPECT_TRUE(model.setTAText(0, 0, QStringLiteral("MASK")));
    EXPECT_EQ(model.TAText(0, 0), QStringLiteral("MASK"));
    EXPECT_FALSE(model.ShowTableAnnotation());
}

TEST(GraphModelProperties, CellsOutsideTheTableAreRefused)
{
    GraphModel model;
    model.setTARows(2);
    model.setTAColumns(2);
    for (const auto& [row, column] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}}) {
        EXPECT_FALSE(model.setTAText(row, column, QStringLiteral("no")));
        EXPECT_FALSE(model.setTAJustification(row, column, 1));
        EXPECT_TRUE(model.TAText(row, column).isEmpty());
        EXPECT_EQ(model.TAJustification(row, column), 0);
    }
    EXPECT_FALSE(model.setTAJustification(0, 0, 3));
    model.setTARows(1001);
    model.setTAColumns(-1);
    model.setTATextSize(0);
    model.setTALocation(6);
    model.setTABorder(-1);
    EXPECT_EQ(model.TARows(), 2);
    EXPECT_EQ(model.TAColumns(), 2);
    EXPECT_EQ(model.TATextSize(), 100);
    EXPECT_EQ(model.TALocation(), 4);
    EXPECT_EQ(model.TABorder(), 0);
}

TEST(GraphModelProperties, CellsThatStayKeepTheirTextWhenATableIsResized)
{
    GraphModel model;
    model.setTARows(2);
    model.setTAColumns(3);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column)
            model.setTAText(row, column, QStringLiteral("%1%2").arg(row).arg(column));
    }
    model.setTAColumns(2);
    model.setTARows(3);
    EXPECT_EQ(model.TAText(0, 1), QStringLiteral("01"));
    EXPECT_EQ(model.TAText(1, 0), QStringLiteral("10"));
    EXPECT_TRUE(model.TAText(2, 1).isEmpty());
    model.setTAColumns(3);
    EXPECT_TRUE(model.TAText(0, 2).isEmpty());
    model.setTARows(0);
    EXPECT_FALSE(model.setTAText(0, 0, QStringLiteral("no")));
}

TEST(GraphModelProperties, MenuItemsCarryTextStateAndMark)
{
    GraphModel model;
    model.setCustomMenu(5, QStringLiteral("Phase|360|Off"));
    model.setCustomMenuState(5, 0, graph::MenuGreyed);
    model.setCustomMenuState(5, 2, graph::MenuHidden);
    model.setCustomMenuChecked(5, 1, true);
    EXPECT_EQ(model.CustomMenu(5), QStringLiteral("Phase|360|Off"));
    EXPECT_TRUE(model.CustomMenu(4).isEmpty());
    EXPECT_EQ(model.CustomMenuState(5), graph::MenuGreyed);
    EXPECT_EQ(model.CustomMenuState(5, 1), graph::MenuNormal);
    EXPECT_EQ(model.CustomMenuState(5, 2), graph::MenuHidden);
    EXPECT_TRUE(model.CustomMenuChecked(5, 1));
    EXPECT_FALSE(model.CustomMenuChecked(5, 2));
    model.setCustomMenuState(5, 0, 3);
    model.setCustomMenuState(5, 64, graph::MenuHidden);
    model.setCustomMenuState(64, 0, graph::MenuHidden);
    model.setCustomMenuState(-1, 0, graph::MenuHidden);
    model.setCustomMenuChecked(5, -1, true);
    model.setCustomMenu(64, QStringLiteral("no"));
    EXPECT_EQ(model.CustomMenuState(5), graph::MenuGreyed);
    EXPECT_EQ(model.CustomMenuState(5, 64), graph::MenuNormal);
    EXPECT_EQ(model.CustomMenuState(64), graph::MenuNormal);
    EXPECT_FALSE(model.CustomMenuChecked(5, -1));
    EXPECT_EQ(model.properties().CustomMenu.size(), 6U);
}

TEST(GraphModelProperties, CarrierTextsAreKept)
{
    GraphModel model;
    model.setMultiSubTitles(0, QStringLiteral("0000X00000"));
    model.setMultiSubTitles(64, QStringLiteral("no"));
    model.setMultiSubTitles(-1, QStringLiteral("no"));
    EXPECT_EQ(model.MultiSubTitles(0), QStringLiteral("0000X00000"));
    EXPECT_TRUE(model.MultiSubTitles(1).isEmpty());
    EXPECT_TRUE(model.MultiSubTitles(-1).isEmpty());
    EXPECT_EQ(model.properties().MultiSubTitles.size(), 1);
    model.setGraphAnnotationText(100, QStringLiteral("Test Settings"));
    model.setGraphAnnotationText(4096, QStringLiteral("no"));
    EXPECT_EQ(model.GraphAnnotationText(100), QStringLiteral("Test Settings"));
    EXPECT_TRUE(model.GraphAnnotationText(0).isEmpty());
    EXPECT_TRUE(model.GraphAnnotationText(4096).isEmpty());
}

TEST(GraphModelProperties, StyleTakesOnlyKnownValues)
{
    GraphModel model;
    model.setMarkDataPoints(true);
    model.setShowLegend(false);
    model.setLegendStyle(graph::LegendInsideAxis);
    model.setLegendStyle(2);
    model.setLegendLocation(graph::LegendTop);
    model.setLegendLocation(4);
    model.setViewingStyle(graph::StyleMonochromeSymbols);
    model.setViewingStyle(-1);
    model.setFontSize(graph::FontSmall);
    model.setFontSize(3);
    model.setFontSizeGlobalCntl(1.5);
    model.setFontSizeGlobalCntl(0);
    model.setFontSizeGlobalCntl(std::numeric_limits<double>::quiet_NaN());
    model.setLineWidth(2);
    model.setLineWidth(-1);
    model.setMainTitleFont(QStringLiteral("A"));
    model.setSubTitleFont(QStringLiteral("B"));
    model.setLabelFont(QStringLiteral("C"));
    model.setMonoGraphForeColor(0x1111111);
    model.setMonoGraphBackColor(0x222222);
    model.setMonoTextColor(0x333333);
    model.setMonoDeskColor(0x444444);
    model.setTickColor(0x555555);
    EXPECT_TRUE(model.MarkDataPoints());
    EXPECT_FALSE(model.ShowLegend());
    EXPECT_EQ(model.LegendStyle(), graph::LegendInsideAxis);
    EXPECT_EQ(model.LegendLocation(), graph::LegendTop);
    EXPECT_EQ(model.ViewingStyle(), graph::StyleMonochromeSymbols);
    EXPECT_EQ(model.FontSize(), graph::FontSmall);
    EXPECT_EQ(model.FontSizeGlobalCntl(), 1.5);
    EXPECT_EQ(model.LineWidth(), 2);
    EXPECT_EQ(model.MainTitleFont(), QStringLiteral("A"));
    EXPECT_EQ(model.SubTitleFont(), QStringLiteral("B"));
    EXPECT_EQ(model.LabelFont(), QStringLiteral("C"));
    EXPECT_EQ(model.MonoGraphForeColor(), 0x111111U);
    EXPECT_EQ(model.MonoGraphBackColor(), 0x222222U);
    EXPECT_EQ(model.MonoTextColor(), 0x333333U);
    EXPECT_EQ(model.MonoDeskColor(), 0x444444U);
    EXPECT_EQ(model.TickColor(), 0x555555U);
}

TEST(GraphModelProperties, WhatTheSettersTookIsValidAndWhatTheyRefuseIsNamed)
{
    GraphModel model;
    EXPECT_EQ(graph::firstInvalid(model.properties(), 40), nullptr);
    EXPECT_STREQ(graph::firstInvalid(model.properties(), 39), "SubsetLabels");
    graph::Properties p = model.properties();
    p.yAxes[3].ManualMaxY = kInfinity;
    EXPECT_STREQ(graph::firstInvalid(p, 40), "YAxes");
    p = model.properties();
    p.RandomSubsetsToGraph = {40};
    EXPECT_STREQ(graph::firstInvalid(p, 40), "RandomSubsetsToGraph");
    p = model.properties();
    p.GraphAnnotationText[-1] = QStringLiteral("no");
    EXPECT_STREQ(graph::firstInvalid(p, 40), "GraphAnnotationText");
    p = model.properties();
    p.verticalLines.resize(101);
    EXPECT_STREQ(graph::firstInvalid(p, 40), "VerticalLines");
    p = model.properties();
    p.SubsetColors[7] = 0x1000000;
    EXPECT_STREQ(graph::firstInvalid(p, 40), "SubsetColors");
    p = model.properties();
    p.tables[2].cells[0].TAText = QString(graph::kLongestText + 1, QLatin1Char('x'));
    EXPECT_STREQ(graph::firstInvalid(p, 40), "Tables");
}
