// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/maskline.h"

#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"
#include "mask/MaskShape.h"
#include "prefs/Preferences.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <cmath>

using mask::kLower;
using mask::kUpper;

namespace {

constexpr auto kNull = graph::kNullValue;

int wrapped(int index)
{
    return ((index % mask::kPoints) + mask::kPoints) % mask::kPoints;
}

} // namespace

maskline::maskline(PenDocument& document, Preferences& preferences)
    : m_document(&document)
    , m_preferences(preferences)
{}

void maskline::maskLoadIndices()
{
    m_index = {wrapped(m_preferences.value(options::kMaskUpperIndex)),
               wrapped(m_preferences.value(options::kMaskLowerIndex))};
}

void maskline::maskSaveIndices() const
{
    m_preferences.setValue(options::kMaskUpperIndex, index(kUpper));
    m_preferences.setValue(options::kMaskLowerIndex, index(kLower));
}

void maskline::maskStepUpper(int step)
{
    m_index[0] = wrapped(m_index[0] + step);
}

void maskline::maskStepLower(int step)
{
    m_index[1] = wrapped(m_index[1] + step);
}

maskline::Texts maskline::maskShowPoint(int pen) const
{
    Texts texts{tr("Point Index: ") + values::decimalText(index(pen) + 1), {}, {}};
    if (!m_document)
        return texts;
    const GraphModel& graph = m_document->peGraph();
    if (const float frequency = graph.XData(pen, index(pen)); frequency != 0)
        texts.frequency = values::decimalText(frequency);
    const float value = graph.YData(pen, index(pen));
    if (QString::number(value, 'f', 2).toDouble() != mask::kNone)
        texts.value = values::decimalText(value);
    return texts;
}

QString maskline::dataPointLabel() const
{
    return m_document && m_document->pgiTestType() == PenDocument::Impedance ? tr("Impedance in Ohms:")
                                                                             : tr("Amplitude in dB:");
}

void maskline::write(int pen, int point, double frequency, double value)
{
    GraphModel& graph = m_document->peGraph();
    // Nothing divides by 0; that point has no place in the alternate view.
    const bool inverse = m_document->pgiTestType() == PenDocument::Impedance;
    const double alternate = !inverse ? value * -1.0 : value == 0 ? mask::kNone : 1.0 / value;
    graph.setPoint(pen, point, static_cast<float>(frequency), static_cast<float>(value));
    graph.setPoint(pen + plot::kPens, point, static_cast<float>(frequency), static_cast<float>(alternate));
}

void maskline::maskStorePoint(double frequency, double value, int pen)
{
    if (!m_document)
        return;
    write(pen, index(pen), frequency, value);
    m_document->tellReplaced(pen);
}

void maskline::storeTexts(const QString& frequency, const QString& value, int pen)
{
    const double hertz = values::roundToInt32(values::enteredNumber(frequency).value_or(0));
    maskStorePoint(hertz, values::enteredNumber(value).value_or(mask::kNone), pen);
}

void maskline::maskShift(int pen, double offset)
{
    if (!m_document)
        return;
    const GraphModel& graph = m_document->peGraph();
    for (int i = 0; i < mask::kPoints; ++i) {
        if (const float value = graph.YData(pen, i); value != kNull)
            write(pen, i, graph.XData(pen, i), value + offset);
    }
    m_document->tellReplaced(pen);
}

void maskline::maskClear()
{
    if (!m_document)
        return;
    GraphModel& graph = m_document->peGraph();
    for (int i = 0; i < graph.Points(); ++i) {
        if (i >= mask::kPoints) {
            // Not the alternate subset of the lower line, whose rest stays.
            for (const int subset : {kUpper, kLower, kUpper + plot::kPens})
                graph.setYData(subset, i, kNull);
        }
        for (const int subset : {38, 39, 28, 29})
            graph.setYData(subset, i, kNull);
    }
    graph.PEactions(graph::Reinitialise);
}

bool maskline::isOn() const
{
    return m_document && m_document->hasMasks();
}

void maskline::tellReplacing()
{
    m_document->tellReplacing(kUpper);
    m_document->tellReplacing(kLower);
}

void maskline::setOn(bool on)
{
    GraphModel& graph = m_document->peGraph();
    for (const int subset : {kUpper, kUpper + plot::kPens, kLower, kLower + plot::kPens})
        graph.setSubsetLineTypes(subset, on ? graph::LineDash : graph::LineHair);
    const TableScope table(graph, graphtexts::kMaskTable);
    graph.setTAText(0, 0, on ? QString(graphtexts::kMask) : QString());
}

void maskline::enable()
{
    if (!m_document)
        return;
    m_index = {};
    maskSaveIndices();
    tellReplacing();
    m_document->UpdatePenLock(kUpper, true);
    m_document->UpdatePenLock(kLower, true);
    maskClear();
    setOn(true);
    maskLoadIndices();
    m_document->tellReplaced(kUpper);
    m_document->tellReplaced(kLower);
}

void maskline::disable()
{
    if (!m_document)
        return;
    setOn(false);
    m_document->SetModified();
    m_document->UpdatePenLock(kUpper, false);
    m_document->UpdatePenLock(kLower, false);
    m_document->peGraph().PEactions(graph::Reinitialise);
}

void maskline::replace(const MaskShape& shape)
{
    if (!m_document)
        return;
    enable();
    for (const auto& [pen, line] : {std::pair(kUpper, &shape.upper), std::pair(kLower, &shape.lower)}) {
        for (int i = 0; i < mask::kPoints; ++i) {
            const bool has = static_cast<std::size_t>(i) < line->size();
            const MaskShape::Point point = has ? (*line)[static_cast<std::size_t>(i)] : MaskShape::Point{};
            write(pen, i, point.frequency, point.limit.value_or(mask::kNone));
        }
        m_document->tellReplaced(pen);
    }
}
