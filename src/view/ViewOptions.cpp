// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ViewOptions.h"

#include "document/VersionText.h"
#include "document/content/GraphScope.h"
#include "mask/MaskTest.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <array>
#include <cmath>

namespace {

// What can be measured.
constexpr double kLowestAmplitude = -90.0, kHighestAmplitude = 10.0;    // dB
constexpr double kLowestImpedance = 0.01, kHighestImpedance = 999999.0; // Ohm

/// By axis: reactance, susceptance, conductance, resistance.
struct ReactanceExtent
{
    double lower, upper;
};
constexpr std::array<ReactanceExtent, 4> kReactanceExtents = {
    {{-50000.0, 50000.0}, {-500.0, 500.0}, {0.0, 100.0}, {0.0, 500000.0}}};

const graph::YAxis& axisOf(const GraphModel& graph, int axis)
{
    return graph.properties().yAxes[static_cast<std::size_t>(axis)];
}

} // namespace

ViewOptions::ViewOptions(PenDocument& document, UserMessages& messages)
    : m_document(&document)
    , m_messages(messages)
{}

ViewOptions::Extent ViewOptions::extent(Quantity quantity) const
{
    if (!m_document)
        return {};
    const bool alternate = m_document->gbfAltSubset();
    if (quantity != Quantity::Main) {
        const int axis = quantity == Quantity::Reactance                 ? (alternate ? 1 : 0)
                         : m_document->giDisplayRG() == plot::Resistance ? 3
                                                                         : 2;
        const ReactanceExtent& whole = kReactanceExtents[static_cast<std::size_t>(axis)];
        // A reactance of 0 is one like any other.
        return {axis, whole.lower, whole.upper, quantity == Quantity::Resistance, axis == 1 || axis == 2};
    }
    if (m_document->pgiTestType() != PenDocument::Impedance)
        return alternate ? Extent{1, -kHighestAmplitude, -kLowestAmplitude, false, false}
                         : Extent{0, kLowestAmplitude, kHighestAmplitude, false, false};
    return alternate ? Extent{1, 1.0 / kHighestImpedance, 1.0 / kLowestImpedance, true, true}
                     : Extent{0, kLowestImpedance, kHighestImpedance, true, false};
}

// Limits --------------------------------------------------------------------------------------------------------------

void ViewOptions::showLimits()
{
    if (!m_document)
        return;
    m_document->RemoveStoredZooms(0);
    if (m_document)
        m_document->peGraph().PEactions(graph::UndoZoom);
    if (m_document) {
        m_document->peGraph().PEactions(graph::Reinitialise);
        m_document->SetModified();
    }
}

void ViewOptions::showStyle()
{
    graph().PEactions(graph::Reinitialise);
    m_document->SetModified();
}

bool ViewOptions::setFrequencyLimit(End end, QString text)
{
    if (!m_document)
        return false;
    const bool upper = end == End::Upper;
    if (text.trimmed().isEmpty())
        text = values::plainDecimalText(upper ? m_document->gdblTestMaxFreq() : m_document->gdblTestMinFreq());
    const auto entered = values::enteredNumber(text);
    if (!entered || *entered < 0)
        return false;
    double hertz = values::roundToInt32(*entered);
    if (hertz == 0)
        hertz = upper ? kHighestFrequency : kLowestFrequency;
    if (upper)
        graph().setManualMaxX(hertz);
    else
        graph().setManualMinX(hertz);
    showLimits();
    return true;
}

void ViewOptions::setWholeFrequencyRange()
{
    if (!m_document)
        return;
    graph().setManualMinX(kLowestFrequency);
    graph().setManualMaxX(kHighestFrequency);
    showLimits();
}

void ViewOptions::setFrequencyToZoom()
{
    if (!isZoomed())
        return;
    const graph::ZoomLimits zoom = graph().zoomLimits();
    // Limits of a logarithmic zoom are exponents.
    const Presentation view(graph());
    graph().setManualMinX(view.plainX(zoom.ZoomMinX));
    graph().setManualMaxX(view.plainX(zoom.ZoomMaxX));
    showLimits();
}

double ViewOptions::frequencyLimit(End end) const
{
    if (!m_document)
        return 0;
    return end == End::Upper ? graph().ManualMaxX() : graph().ManualMinX();
}

void ViewOptions::writeLimits(int axis, double lower, double upper)
{
    const AxisScope scope(graph(), axis);
    graph().setManualMinY(lower);
    graph().setManualMaxY(upper);
}

bool ViewOptions::setLimit(Quantity quantity, End end, const QString& text)
{
    if (!m_document)
        return false;
    const Extent whole = extent(quantity);
    const auto entered = values::enteredNumber(text);
    if (!entered)
        return false;
    double limit = *entered;
    if (limit == 0 && whole.replacesZero)
        limit = end == End::Upper ? whole.upper : whole.lower;
    if (limit <= 0 && axisOf(graph(), whole.axis).YAxisScaleControl == graph::ScaleLogarithmic)
        return false;
    {
        const AxisScope scope(graph(), whole.axis);
        if (end == End::Upper)
            graph().setManualMaxY(limit);
        else
            graph().setManualMinY(limit);
    }
    showLimits();
    return true;
}

void ViewOptions::setWholeExtent(Quantity quantity)
{
    if (!m_document)
        return;
    const auto write = [this](int axis) {
        const ReactanceExtent& whole = kReactanceExtents[static_cast<std::size_t>(axis)];
        writeLimits(axis, whole.lower, whole.upper);
    };
    switch (quantity) {
    case Quantity::Main: {
        const Extent whole = extent(quantity);
        writeLimits(whole.axis, whole.lower, whole.upper);
        break;
    }
    case Quantity::Reactance:
        write(1);
        write(0);
        break;
    case Quantity::Resistance:
        write(3);
        write(2);
        break;
    }
    graph().setWorkingAxis(0);
    showLimits();
}

void ViewOptions::setToZoom(Quantity quantity)
{
    if (!isZoomed())
        return;
    const graph::ZoomLimits zoom = graph().zoomLimits();
    const int axis = extent(quantity).axis;
    const bool right = axis > 1;
    const bool logarithmic = axisOf(graph(), axis).YAxisScaleControl == graph::ScaleLogarithmic;
    const auto plain = [logarithmic](double value) { return logarithmic ? std::pow(10.0, value) : value; };
    writeLimits(axis, plain(right ? zoom.ZoomMinRY : zoom.ZoomMinY), plain(right ? zoom.ZoomMaxRY : zoom.ZoomMaxY));
    showLimits();
}

double ViewOptions::limit(Quantity quantity, End end) const
{
    if (!m_document)
        return 0;
    const graph::YAxis& axis = axisOf(graph(), extent(quantity).axis);
    return end == End::Upper ? axis.ManualMaxY : axis.ManualMinY;
}

void ViewOptions::setAutomatic(Quantity quantity, bool automatic)
{
    if (!m_document)
        return;
    const int first = quantity == Quantity::Resistance ? 2 : 0;
    for (const int axis : {first, first + 1}) {
        const AxisScope scope(graph(), axis);
        graph().setManualScaleControlY(automatic ? graph::ScaleAutomatic : graph::ScaleManual);
    }
    showStyle();
}

bool ViewOptions::isAutomatic(Quantity quantity) const
{
    return m_document && axisOf(graph(), extent(quantity).axis).ManualScaleControlY == graph::ScaleAutomatic;
}

// View ----------------------------------------------------------------------------------------------------------------

void ViewOptions::setImpedanceLinear(bool linear)
{
    if (m_document)
        m_document->ImpedanceLinear(linear);
    if (m_document)
        m_document->SetModified();
}

bool ViewOptions::isImpedanceLinear() const
{
    return m_document && axisOf(graph(), extent(Quantity::Main).axis).YAxisScaleControl == graph::ScaleLinear;
}

void ViewOptions::setFrequencyLinear(bool linear)
{
    if (m_document)
        m_document->graphSetFrequecyLinear(linear);
    if (m_document)
        m_document->SetModified();
}

void ViewOptions::setPhaseView(std::int16_t view)
{
    if (m_document)
        m_document->graphSetPhase(view);
    if (m_document)
        m_document->SetModified();
}

void ViewOptions::setAlternate(bool alternate)
{
    if (m_document)
        m_document->graphSetAlternateView(alternate);
    if (m_document)
        m_document->SetModified();
}

void ViewOptions::setAdmittance(bool admittance)
{
    if (m_document)
        m_document->graphSetAlternateView(admittance);
    if (m_document)
        m_document->graphSetRG(admittance ? plot::Conductance : plot::Resistance);
    if (m_document)
        m_document->SetModified();
}

void ViewOptions::setMarkDataPoints(bool on)
{
    if (m_document)
        m_document->setMarkDataPoints(on);
}

void ViewOptions::setInformation(bool shown)
{
    if (!m_document)
        return;
    QString text;
    if (shown) {
        // A graph that was never saved has no text of its own yet.
        const QString own = graph().TXAxisLabel();
        const QString version = own.isEmpty() ? m_document->SetVersion() : own;
        text = VersionText::subTitle(version).value_or(version);
    }
    graph().setSubTitle(text);
    showStyle();
}

// Style ---------------------------------------------------------------------------------------------------------------

void ViewOptions::setLegendLocation(int location)
{
    if (!m_document)
        return;
    graph().setShowLegend(true);
    graph().setLegendStyle(graph::LegendOutside);
    graph().setLegendLocation(location);
    showStyle();
}

void ViewOptions::setLegendInside()
{
    if (!m_document)
        return;
    graph().setShowLegend(true);
    graph().setLegendStyle(graph::LegendInsideAxis);
    showStyle();
}

void ViewOptions::hideLegend()
{
    if (!m_document)
        return;
    graph().setShowLegend(false);
    showStyle();
}

void ViewOptions::setFontSize(int size)
{
    if (!m_document)
        return;
    graph().setFontSize(size);
    showStyle();
}

void ViewOptions::setViewingStyle(int style)
{
    if (!m_document)
        return;
    graph().setViewingStyle(style);
    showStyle();
}

void ViewOptions::SetNewFont(const QString& strFontName)
{
    if (!m_document || strFontName.isEmpty())
        return;
    graph().setMainTitleFont(strFontName);
    graph().setSubTitleFont(strFontName);
    graph().setLabelFont(strFontName);
    for (int table = 0; table < graph::kTables; ++table) {
        const TableScope scope(graph(), table);
        graph().setTAFonts(strFontName);
    }
    showStyle();
}

void ViewOptions::GetFontFromGraph(QString& strFontName) const
{
    strFontName = m_document ? graph().MainTitleFont() : QString();
}

// Pens ----------------------------------------------------------------------------------------------------------------

void ViewOptions::setDisplay(int pen, bool shown)
{
    if (m_document)
        m_document->UpdatePenHide(pen, !shown);
}

void ViewOptions::setLock(int pen, bool locked)
{
    if (!m_document)
        return;
    if (!locked && (pen == mask::kUpper || pen == mask::kLower) && m_document->hasMasks()) {
        m_messages.message(tr("Disable mask before unlocking pen"), UserMessages::Exclamation, tr("Masks Enabled"));
        return;
    }
    m_document->SetModified();
    m_document->UpdatePenLock(pen, locked);
}

void ViewOptions::erase(int pen)
{
    if (!m_document)
        return;
    if (m_document->GetPenLock(pen) == 1) {
        m_messages.message(tr("Unlock pen before data can be erased"), UserMessages::Exclamation, tr("Pen Locked"));
        return;
    }
    if (m_messages.message(tr("Delete pen ") + values::decimalText(pen + 1),
                           UserMessages::YesNo | UserMessages::Question, tr("Erase Data")) != UserMessages::ReplyYes)
        return;
    // Locked meanwhile, by a run that has ended.
    if (!m_document || m_document->GetPenLock(pen) == 1)
        return;
    m_document->graphEraseLine(pen);
    m_document->graphResetPenName(pen);
    showStyle();
}

void ViewOptions::eraseAll()
{
    if (m_messages.message(tr("Erase all?"), UserMessages::YesNo | UserMessages::Question, tr("Erase Data")) !=
            UserMessages::ReplyYes ||
        !m_document)
        return;
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (m_document->GetPenLock(pen) == 1)
            continue;
        m_document->graphEraseLine(pen);
        m_document->graphResetPenName(pen);
    }
    showStyle();
}

void ViewOptions::setColour(int pen, std::uint32_t colour)
{
    if (m_document)
        m_document->SetPenColour(pen, colour);
}
