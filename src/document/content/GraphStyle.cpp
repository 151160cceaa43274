// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/GraphStyle.h"

#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"
#include "document/content/Pens.h"
#include "prefs/Preferences.h"

using namespace graphtexts;

namespace graphstyle {

namespace {

constexpr std::uint32_t kTransparent = 1;
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;

} // namespace

void setDefaults(GraphModel& model, const Preferences& preferences)
{
    model.setMainTitle(kNoTitle);
    model.setSubTitle(QString());

    const QString font = preferences.value(options::kDefaultFont);
    model.setMainTitleFont(font);
    model.setSubTitleFont(font);
    model.setLabelFont(font);
    model.setFontSize(graph::FontMedium);
    model.setFontSizeGlobalCntl(1.0);
    model.setTickColor(preferences.value(options::kGraticuleShade));

    model.setViewingStyle(graph::StyleColour);
    model.setMarkDataPoints(false);
    model.setShowLegend(true);
    model.setLegendStyle(graph::LegendOutside);
    model.setLegendLocation(graph::LegendRight);
    model.setLineWidth(1.0);

    Pens pens(model);
    for (int pen = 0; pen < plot::kPens; ++pen) {
        pens.setColour(pen, preferences.value(options::kPens[static_cast<std::size_t>(pen)]));
        pens.setLineType(pen, graph::LineSolid);
    }

    {
        const TableScope scope(model, kCreditTable);
        model.setTARows(1);
        model.setTAColumns(1);
        model.setTAText(0, 0, kCredit);
        model.setTAJustification(0, 0, 2);
        model.setTALocation(5);
        model.setTATextSize(70);
        model.setTAFonts(font);
        model.setTABorder(0);
        model.setTABackColor(kTransparent);
        model.setShowTableAnnotation(true);
    }
    {
        const TableScope scope(model, kMaskTable);
        model.setTARows(1);
        model.setTAColumns(1);
        model.setTAText(0, 0, QString());
        model.setShowTableAnnotation(false);
    }
    {
        const TableScope scope(model, kFormatTable);
        model.setTARows(1);
        model.setTAColumns(2);
        model.setTAText(0, 0, kCurrentFormat);
        model.setShowTableAnnotation(false);
    }
    model.setWorkingTable(kMaskTable);
}

void update(GraphModel& model)
{
    model.setAxisUnitPrefixes(kUnitPrefixes);
    for (int axis = 0; axis < graph::kYAxes; ++axis) {
        const AxisScope scope(model, axis);
        model.setNullDataValueY(graph::kNullValue);
        model.setPlottingMode(false);
    }
    // A cursor saved in the middle of a plot does not come back.
    model.setVertLineAnnotationType(0, graph::kLineVanished);
    model.setMonoGraphForeColor(kBlack);
    model.setMonoTextColor(kBlack);
    model.setMonoGraphBackColor(kWhite);
    model.setMonoDeskColor(kWhite);
}

} // namespace graphstyle
