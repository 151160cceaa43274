// SPDX-License-Identifier: GPL-3.0-or-later
// Appearance, popup menu and cursor read-out.
#include "document/GraphScope.h"
#include "document/GraphTexts.h"
#include "document/PenDocument.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "values/Conversions.h"

#include <algorithm>

using namespace graphtexts;

namespace {

constexpr int kPopupItems = PenDocument::PopupProperties + 1;
constexpr std::uint32_t kTransparent = 1;
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;

} // namespace

void PenDocument::graphSetDefaultApperance()
{
    const Preferences& preferences = m_context.preferences;
    m_graph.setMainTitle(kNoTitle);
    m_graph.setSubTitle(QString());

    const QString font = preferences.value(options::kDefaultFont);
    m_graph.setMainTitleFont(font);
    m_graph.setSubTitleFont(font);
    m_graph.setLabelFont(font);
    m_graph.setFontSize(graph::FontMedium);
    m_graph.setFontSizeGlobalCntl(1.0);
    m_graph.setTickColor(preferences.value(options::kGraticuleShade));

    m_graph.setViewingStyle(graph::StyleColour);
    m_graph.setMarkDataPoints(false);
    m_graph.setShowLegend(true);
    m_graph.setLegendStyle(graph::LegendOutside);
    m_graph.setLegendLocation(graph::LegendRight);
    m_graph.setLineWidth(1.0);

    // The program's colours, or the stored ones where no window has loaded them yet.
    const auto& programColours = m_context.state.glPenColour;
    const bool loaded = std::any_of(programColours.begin(), programColours.end(), [](auto c) { return c != 0; });
    for (int pen = 0; pen < kPens; ++pen) {
        const auto index = static_cast<std::size_t>(pen);
        const std::uint32_t colour = loaded ? programColours[index] : preferences.value(options::kPens[index]);
        for (int subset = pen; subset < m_graph.Subsets(); subset += kPens) {
            m_graph.setSubsetColors(subset, colour);
            m_graph.setSubsetLineTypes(subset, graph::LineSolid);
        }
    }

    {
        const TableScope scope(m_graph, kCreditTable);
        m_graph.setTARows(1);
        m_graph.setTAColumns(1);
        m_graph.setTAText(0, 0, kCredit);
        m_graph.setTAJustification(0, 0, 2);
        m_graph.setTALocation(5);
        m_graph.setTATextSize(70);
        m_graph.setTAFonts(font);
        m_graph.setTABorder(0);
        m_graph.setTABackColor(kTransparent);
        m_graph.setShowTableAnnotation(true);
    }
    {
        const TableScope scope(m_graph, kMaskTable);
        m_graph.setTARows(1);
        m_graph.setTAColumns(1);
        m_graph.setTAText(0, 0, QString());
        m_graph.setShowTableAnnotation(false);
    }
    {
        const TableScope scope(m_graph, kFormatTable);
        m_graph.setTARows(1);
        m_graph.setTAColumns(2);
        m_graph.setTAText(0, 0, kCurrentFormat);
        m_graph.setShowTableAnnotation(false);
    }
    m_graph.setWorkingTable(kMaskTable);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetTickColour(std::uint32_t lColour)
{
    m_graph.setTickColor(lColour);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphUpdateStyle()
{
    m_graph.setAxisUnitPrefixes(kUnitPrefixes);
    for (int axis = 0; axis < graph::kYAxes; ++axis) {
        const AxisScope scope(m_graph, axis);
        m_graph.setNullDataValueY(graph::kNullValue);
        m_graph.setPlottingMode(false);
    }
    // A cursor saved in the middle of a plot does not come back.
    m_graph.setVertLineAnnotationType(0, graph::kLineVanished);
    m_graph.setMonoGraphForeColor(kBlack);
    m_graph.setMonoTextColor(kBlack);
    m_graph.setMonoGraphBackColor(kWhite);
    m_graph.setMonoDeskColor(kWhite);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::setMarkDataPoints(bool on)
{
    m_graph.setMarkDataPoints(on);
    m_graph.PEactions(graph::Reinitialise);
    SetModified();
    updateZoomButtons();
}

void PenDocument::ToggleMarkDataPoints()
{
    setMarkDataPoints(!m_graph.MarkDataPoints());
}

void PenDocument::buildPopup()
{
    const QString impedanceViews = tr("Impedance/Admittance|Impedance|Admittance");
    QString view = tr("I'm gone!");
    QString phase = impedanceViews;
    if (pgiTestType == Impedance) {
        view = impedanceViews;
        phase = tr("Phase|360|Off");
    } else if (pgiTestType == Amplitude) {
        view = tr("Amplitude|Gain|Loss");
        phase = tr("Phase|180|360|Off");
    }
    const std::array<QString, kPopupItems> texts{tr("Test Settings"),
                                                 tr("Graph View Options"),
                                                 tr("Add Text"),
                                                 tr("PZT Analysis"),
                                                 tr("Admittance loop"),
                                                 view,
                                                 phase,
                                                 tr("Mark Data Points"),
                                                 tr("Cut"),
                                                 tr("Copy"),
                                                 tr("Paste"),
                                                 tr("Zoom Extents"),
                                                 tr("Undo Zoom"),
                                                 tr("Redo Zoom"),
                                                 tr("Export"),
                                                 tr("Properties")};
    for (int item = 0; item < kPopupItems; ++item) {
        m_graph.setCustomMenu(item, texts[static_cast<std::size_t>(item)]);
        m_graph.setCustomMenuState(item, 0, graph::MenuNormal);
    }
    // Resonance analysis and its loop are for impedance and reactance.
    if (pgiTestType != Impedance && pgiTestType != Reactance) {
        m_graph.setCustomMenuState(PopupAnalysis, 0, graph::MenuHidden);
        m_graph.setCustomMenuState(PopupLoop, 0, graph::MenuHidden);
    }
    if (pgiTestType != Impedance && pgiTestType != Amplitude)
        m_graph.setCustomMenuState(PopupView, 0, graph::MenuHidden);
    if (pgiTestType == NoTest)
        m_graph.setCustomMenuState(PopupPhase, 0, graph::MenuHidden);
    m_graph.setCustomMenuState(PopupPaste, 0, graph::MenuGreyed);
    m_graph.setCustomMenuState(PopupUndoZoom, 0, graph::MenuGreyed);
    m_graph.setCustomMenuState(PopupRedoZoom, 0, graph::MenuGreyed);
    updatePopupChecks();
}

void PenDocument::updatePopupChecks()
{
    const auto check = [this](int item, std::initializer_list<bool> marks) {
        int sub = 0;
        for (const bool mark : marks)
            m_graph.setCustomMenuChecked(item, ++sub, mark);
    };
    switch (pgiTestType) {
    case Amplitude:
        check(PopupView, {!gbfAltSubset, gbfAltSubset});
        check(PopupPhase, {giPhaseView == 1, giPhaseView == 2, giPhaseView == 0});
        break;
    case Impedance:
        check(PopupView, {!gbfAltSubset, gbfAltSubset});
        check(PopupPhase, {giPhaseView == 2, giPhaseView == 0});
        break;
    case Reactance:
        check(PopupPhase, {!gbfAltSubset, gbfAltSubset});
        break;
    default:
        break;
    }
    m_graph.setCustomMenuChecked(PopupMarkPoints, 0, m_graph.MarkDataPoints());
}

void PenDocument::popupClicked(int item, int sub)
{
    if (m_graph.CustomMenuState(item, 0) != graph::MenuNormal ||
        m_graph.CustomMenuState(item, sub) != graph::MenuNormal)
        return;
    if (item != PopupView && item != PopupPhase) {
        Q_EMIT popupCommand(item, sub);
        return;
    }
    if (sub < 1)
        return;
    SetModified();
    if (item == PopupView) {
        graphSetAlternateView(sub == 2);
    } else if (pgiTestType == Reactance) {
        graphSetRG(sub == 2 ? 2 : 1);
        graphSetAlternateView(sub == 2);
    } else if (pgiTestType == Amplitude) {
        graphSetPhase(static_cast<std::int16_t>(sub == 3 ? 0 : sub));
    } else {
        graphSetPhase(sub == 1 ? 2 : 0);
    }
}

PenDocument::CursorTexts PenDocument::cursorTexts(int subset, int point) const
{
    CursorTexts texts;
    texts.x = tr("X: %1").arg(values::decimalText(m_graph.XData(subset, point)));
    if (m_graph.XAxisLabel() == kFrequency)
        texts.x += tr(" Hz");
    QString unit;
    if (subset < 2 * kPens) {
        if (pgiTestType == Amplitude)
            unit = tr(" dB");
        else
            unit = subset < kPens ? tr(" Ohms") : tr(" Siemens");
    } else if (pgiTestType == Amplitude || pgiTestType == Impedance) {
        unit = tr(" Deg");
    } else if (pgiTestType == Reactance) {
        unit = giDisplayRG == 2 ? tr(" Siemens") : tr(" Ohms");
    }
    texts.y = tr("Y: %1").arg(values::decimalText(m_graph.YData(subset, point))) + unit;
    return texts;
}
