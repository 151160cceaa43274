// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphModel.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

bool isScale(int scale)
{
    return scale == graph::ScaleLinear || scale == graph::ScaleLogarithmic;
}

bool isScaleControl(int control)
{
    return control == graph::ScaleAutomatic || control == graph::ScaleManual;
}

template <typename List>
bool isIn(const List& list, int i)
{
    return i >= 0 && at(i) < static_cast<std::size_t>(list.size());
}

/// Member by member: the cursor's position was written a moment ago, and a copy of the whole line would read it wider
/// than it was written, which stalls until all writes before it, measured points among them, have reached the cache.
void copyLines(const std::vector<graph::VerticalLine>& from, std::vector<graph::VerticalLine>& to)
{
    to.resize(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        to[i].position = from[i].position;
        to[i].type = from[i].type;
        to[i].color = from[i].color;
    }
}

} // namespace

GraphModel::GraphModel(int subsets, int points, QObject* parent)
    : QObject(parent)
    , m_subsets(std::clamp(subsets, 1, kMaxSubsets))
    , m_points(std::clamp(points, 1, kMaxPoints))
    , m_x(at(m_subsets) * at(m_points), 0.0F)
    , m_y(at(m_subsets) * at(m_points), graph::kNullValue)
    , m_revisions(at(m_subsets), 0)
{
    graph::fillSubsetLists(m_properties, m_subsets);
    m_shown = m_properties;
}

GraphModel::~GraphModel() = default;

void GraphModel::assign(QString& member, const QString& text)
{
    qsizetype length = std::min<qsizetype>(text.size(), graph::kLongestText);
    if (length < text.size() && text.at(length - 1).isHighSurrogate())
        --length;
    if (member == QStringView(text).first(length))
        return;
    member = length < text.size() ? text.first(length) : text;
    m_changed = true;
}

// Data ---------------------------------------------------------------------------------------------------------------

std::span<const float> GraphModel::xArray(int subset) const
{
    return has(subset, 0) ? std::span<const float>(m_x).subspan(index(subset, 0), at(m_points))
                          : std::span<const float>();
}

std::span<const float> GraphModel::yArray(int subset) const
{
    return has(subset, 0) ? std::span<const float>(m_y).subspan(index(subset, 0), at(m_points))
                          : std::span<const float>();
}

bool GraphModel::PEvsetEx(int property, int start, int count, const float* source)
{
    if (property != PEP_faXDATA && property != PEP_faYDATA)
        return false;
    std::vector<float>& store = property == PEP_faXDATA ? m_x : m_y;
    if (start < 0 || count < 0 || at(start) > store.size() || at(count) > store.size() - at(start))
        return false;
    if (count == 0)
        return true;
    if (source == nullptr)
        return false;
    std::copy_n(source, count, store.begin() + start);
    for (int subset = start / m_points; subset <= (start + count - 1) / m_points; ++subset)
        touch(subset);
    return true;
}

bool GraphModel::PEvgetEx(int property, int start, int count, float* target) const
{
    if (property != PEP_faXDATA && property != PEP_faYDATA)
        return false;
    const std::vector<float>& store = property == PEP_faXDATA ? m_x : m_y;
    if (start < 0 || count < 0 || at(start) > store.size() || at(count) > store.size() - at(start))
        return false;
    if (count == 0)
        return true;
    if (target == nullptr)
        return false;
    std::copy_n(store.begin() + start, count, target);
    return true;
}

QString GraphModel::SubsetLabels(int subset) const
{
    return has(subset, 0) ? m_properties.SubsetLabels[at(subset)] : QString();
}

bool GraphModel::setSubsetLabels(int subset, const QString& text)
{
    if (!has(subset, 0))
        return false;
    assign(m_properties.SubsetLabels[at(subset)], text);
    return true;
}

std::uint32_t GraphModel::SubsetColors(int subset) const
{
    return has(subset, 0) ? m_properties.SubsetColors[at(subset)] : 0;
}

bool GraphModel::setSubsetColors(int subset, std::uint32_t color)
{
    if (!has(subset, 0))
        return false;
    assign(m_properties.SubsetColors[at(subset)], color & graph::kColorMask);
    return true;
}

int GraphModel::SubsetLineTypes(int subset) const
{
    return has(subset, 0) ? m_properties.SubsetLineTypes[at(subset)] : 0;
}

bool GraphModel::setSubsetLineTypes(int subset, int type)
{
    if (!has(subset, 0) || type < 0)
        return false;
    assign(m_properties.SubsetLineTypes[at(subset)], type);
    return true;
}

int GraphModel::RandomSubsetsToGraph(int i) const
{
    return isIn(m_properties.RandomSubsetsToGraph, i) ? m_properties.RandomSubsetsToGraph[at(i)] : 0;
}

bool GraphModel::setRandomSubsetsToGraph(int i, int subset)
{
    if (!has(i, 0) || subset >= m_subsets)
        return false;
    std::vector<int>& list = m_properties.RandomSubsetsToGraph;
    if (at(i) >= list.size()) {
        list.resize(at(i) + 1, -1);
        m_changed = true;
    }
    assign(list[at(i)], subset);
    return true;
}

bool GraphModel::SubsetsToShow(int subset) const
{
    return has(subset, 0) && m_properties.SubsetsToShow[at(subset)];
}

bool GraphModel::setSubsetsToShow(int subset, bool on)
{
    if (!has(subset, 0))
        return false;
    if (m_properties.SubsetsToShow[at(subset)] != on) {
        m_properties.SubsetsToShow[at(subset)] = on;
        m_changed = true;
    }
    return true;
}

std::uint64_t GraphModel::takeDirtySubsets()
{
    return std::exchange(m_dirty, 0);
}

std::uint64_t GraphModel::dataRevision(int subset) const
{
    return has(subset, 0) ? m_revisions[at(subset)] : 0;
}

// Titles and axes ----------------------------------------------------------------------------------------------------

void GraphModel::setMainTitle(const QString& text)
{
    assign(m_properties.MainTitle, text);
}

void GraphModel::setSubTitle(const QString& text)
{
    assign(m_properties.SubTitle, text);
}

void GraphModel::setXAxisLabel(const QString& text)
{
    assign(m_properties.XAxisLabel, text);
}

void GraphModel::setTXAxisLabel(const QString& text)
{
    assign(m_properties.TXAxisLabel, text);
}

bool GraphModel::setWorkingAxis(int axis)
{
    if (axis < 0 || axis >= graph::kYAxes)
        return false;
    m_workingAxis = axis;
    return true;
}

void GraphModel::setYAxisLabel(const QString& text)
{
    assign(axis().YAxisLabel, text);
}

void GraphModel::setNullDataValueY(float value)
{
    if (!std::isnan(value))
        assign(axis().NullDataValueY, value);
}

void GraphModel::setXAxisScaleControl(int scale)
{
    if (isScale(scale))
        assign(m_properties.XAxisScaleControl, scale);
}

void GraphModel::setYAxisScaleControl(int scale)
{
    if (isScale(scale))
        assign(axis().YAxisScaleControl, scale);
}

void GraphModel::setManualScaleControlX(int control)
{
    if (isScaleControl(control))
        assign(m_properties.ManualScaleControlX, control);
}

void GraphModel::setManualScaleControlY(int control)
{
    if (isScaleControl(control))
        assign(axis().ManualScaleControlY, control);
}

void GraphModel::setManualMinX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.ManualMinX, value);
}

void GraphModel::setManualMaxX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.ManualMaxX, value);
}

void GraphModel::setManualMinY(double value)
{
    if (std::isfinite(value))
        assign(axis().ManualMinY, value);
}

void GraphModel::setManualMaxY(double value)
{
    if (std::isfinite(value))
        assign(axis().ManualMaxY, value);
}

void GraphModel::setPlottingMode(bool on)
{
    assign(axis().PlottingMode, on);
}

void GraphModel::setAxisUnitPrefixes(const QString& text)
{
    assign(m_properties.AxisUnitPrefixes, text);
}

// Zoom and actions ---------------------------------------------------------------------------------------------------

void GraphModel::setZoomed(bool zoomed)
{
    assign(m_properties.zoomed, zoomed);
}

void GraphModel::setZoomLimits(const graph::ZoomLimits& limits)
{
    setZoomMinX(limits.ZoomMinX);
    setZoomMaxX(limits.ZoomMaxX);
    setZoomMinY(limits.ZoomMinY);
    setZoomMaxY(limits.ZoomMaxY);
    setZoomMinRY(limits.ZoomMinRY);
    setZoomMaxRY(limits.ZoomMaxRY);
    setZoomMinTX(limits.ZoomMinTX);
    setZoomMaxTX(limits.ZoomMaxTX);
}

void GraphModel::setZoomMinX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMinX, value);
}

void GraphModel::setZoomMaxX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMaxX, value);
}

void GraphModel::setZoomMinY(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMinY, value);
}

void GraphModel::setZoomMaxY(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMaxY, value);
}

void GraphModel::setZoomMinRY(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMinRY, value);
}

void GraphModel::setZoomMaxRY(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMaxRY, value);
}

void GraphModel::setZoomMinTX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMinTX, value);
}

void GraphModel::setZoomMaxTX(double value)
{
    if (std::isfinite(value))
        assign(m_properties.zoom.ZoomMaxTX, value);
}

// A moving plotting cursor changes one line and shows it with every measured point: that must not copy everything else.
void GraphModel::show()
{
    if (m_changed) {
        m_shown = m_properties;
        ++m_shownRevision;
        ++m_shownLinesRevision;
    } else if (m_linesChanged) {
        copyLines(m_properties.verticalLines, m_shown.verticalLines);
        ++m_shownLinesRevision;
    }
    m_changed = false;
    m_linesChanged = false;
}

void GraphModel::PEactions(int action)
{
    switch (action) {
    case graph::Reinitialise:
        show();
        Q_EMIT reinitialised();
        break;
    case graph::Redraw:
        show();
        Q_EMIT redrawWanted();
        break;
    case graph::UndoZoom: {
        const bool wasZoomed = m_properties.zoomed || m_shown.zoomed;
        setZoomed(false);
        show();
        Q_EMIT reinitialised();
        if (wasZoomed)
            Q_EMIT ZoomOut();
        break;
    }
    default:
        break;
    }
}

void GraphModel::userZoom(const graph::ZoomLimits& limits)
{
    const auto isSpan = [](double from, double to) { return std::isfinite(from) && std::isfinite(to) && from < to; };
    if (!isSpan(limits.ZoomMinX, limits.ZoomMaxX) || !isSpan(limits.ZoomMinY, limits.ZoomMaxY) ||
        !isSpan(limits.ZoomMinRY, limits.ZoomMaxRY))
        return;
    // Only the zoom is shown: what else was set waits for its own PEactions.
    setZoomLimits(limits);
    setZoomed(true);
    m_shown.zoom = m_properties.zoom;
    m_shown.zoomed = true;
    ++m_shownRevision;
    Q_EMIT redrawWanted();
    Q_EMIT ZoomIn();
}

void GraphModel::userZoomOut()
{
    if (!m_shown.zoomed)
        return;
    setZoomed(false);
    m_shown.zoomed = false;
    ++m_shownRevision;
    Q_EMIT redrawWanted();
    Q_EMIT ZoomOut();
}

bool GraphModel::replaceAll(graph::Properties properties, std::span<const float> x, std::span<const float> y)
{
    return replaceAll(std::move(properties), std::as_bytes(x), std::as_bytes(y));
}

bool GraphModel::replaceAll(graph::Properties properties, std::span<const std::byte> x, std::span<const std::byte> y)
{
    if (x.size() != std::as_bytes(std::span(m_x)).size() || y.size() != x.size() ||
        graph::firstInvalid(properties, m_subsets) != nullptr)
        return false;
    m_properties = std::move(properties);
    std::memcpy(m_x.data(), x.data(), x.size());
    std::memcpy(m_y.data(), y.data(), y.size());
    m_workingAxis = 0;
    m_workingTable = 0;
    for (int subset = 0; subset < m_subsets; ++subset)
        touch(subset);
    m_changed = true;
    show();
    Q_EMIT reinitialised();
    return true;
}
