// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphModel.h"

#include <cmath>
#include <utility>

GraphModel::GraphModel(int subsets, int points, QObject* parent)
    : QObject(parent)
    , PointData(subsets, points)
{
    graph::fillSubsetLists(m_properties, Subsets());
    m_shown = m_properties;
}

GraphModel::~GraphModel() = default;

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
        !(isSpan(limits.ZoomMinRY, limits.ZoomMaxRY) || (limits.ZoomMinRY == 0 && limits.ZoomMaxRY == 0)))
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
    if (!fits(x, y) || graph::firstInvalid(properties, Subsets()) != nullptr)
        return false;
    m_properties = std::move(properties);
    replace(x, y);
    setWorkingAxis(0);
    setWorkingTable(0);
    m_changed = true;
    show();
    Q_EMIT reinitialised();
    return true;
}
