// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AnnotationProperties.h"
#include "controls/graph/AxisProperties.h"
#include "controls/graph/CurveProperties.h"
#include "controls/graph/PointData.h"
#include "controls/graph/StyleProperties.h"

#include <QObject>

/// The data model of the graph control: subsets of points in single precision, titles, axes, zoom, annotations, menu
/// and style, under the control's own property names. It knows no widget; GraphView draws it, GraphFile stores it.
///
/// Data writes take effect in the arrays at once and raise no signal. Everything shown follows at the next PEactions:
/// the view draws the properties as they were at that moment (shownProperties()).
///
/// Indices are checked: a read outside the graph gives 0 or an empty text, a write outside is refused (false) without
/// touching other memory. A value that a property cannot take (an unknown scale or style number, a limit that is not
/// finite) is refused too: the property keeps what it had. A text longer than graph::kLongestText is cut there.
///
/// What it holds has its names in the classes it is made of: the points (PointData), and over one store of properties
/// those of curves, axes, annotations and style.
class GraphModel : public QObject,
                   public graph::PointData,
                   public graph::CurveProperties,
                   public graph::AxisProperties,
                   public graph::AnnotationProperties,
                   public graph::StyleProperties
{
    Q_OBJECT

public:
    /// Sizes as for PointData.
    static constexpr int kUsualPoints = 1024;
    explicit GraphModel(int subsets = 40, int points = kUsualPoints, QObject* parent = nullptr);
    ~GraphModel() override;

    /// 0 reinitialise and redraw, 3 redraw, 19 undo all zoom; any other code does nothing. All three make the
    /// properties set so far the shown ones. 19 raises ZoomOut if the graph was zoomed.
    void PEactions(int action);
    /// What the view calls when the user has zoomed or returned to full extent: takes the limits, which are shown at
    /// once, and raises the event. Limits that are not finite or leave no span do nothing, nor does a zoom out of full
    /// extent.
    void userZoom(const graph::ZoomLimits& limits);
    void userZoomOut();
    /// Replaces the whole graph, as after a load, and shows it; WorkingAxis and WorkingTable become 0. The arrays hold
    /// Subsets() x Points() floats (in memory at any address) and every property a value that its setter takes; false
    /// and unchanged otherwise.
    bool replaceAll(graph::Properties properties, std::span<const float> x, std::span<const float> y);
    bool replaceAll(graph::Properties properties, std::span<const std::byte> x, std::span<const std::byte> y);

Q_SIGNALS:
    /// The shown properties are new (PEactions 0 and 19, a load): the view must be rebuilt where they differ.
    void reinitialised();
    /// PEactions 3 or a zoom of the user: as above, where most often only data and vertical lines have changed.
    void redrawWanted();
    /// Events of the user, raised through the view.
    void ZoomIn();
    void ZoomOut();
    void CursorMoved(int subset, int point);
    void CustomMenuClicked(int item, int sub);
};
