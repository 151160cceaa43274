// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class GraphModel;
class GraphPlot;
class QPointF;

/// The cursor that reads out a point of a curve: picked by position, walked along the curve and from curve to curve.
/// Only points that are drawn are taken.
class ReadoutCursor
{
public:
    /// changed is called after every move of the user and when the cursor is put away. Model and plot must outlive it.
    ReadoutCursor(const GraphModel& model, GraphPlot& plot, std::function<void()> changed);

    bool isOn() const { return m_subset >= 0; }
    int subset() const { return m_subset; } ///< -1 without a cursor
    int point() const { return m_point; }   ///< -1 without a cursor

    /// The nearest point within reach; false when there is none, and the cursor stays.
    bool pick(const QPointF& position);
    void clear();
    /// Follows its point when the view or the data moves, and goes when the point does.
    void place();

    // The first of these on a view without a cursor puts it on the first point. False when there is nothing to walk on.
    bool step(int points);
    bool moveToEnd(bool last);
    bool changeCurve(int direction);

private:
    void moveTo(int subset, int point);
    bool start();
    int seek(int subset, int from, int direction) const;

    const GraphModel& m_model;
    GraphPlot& m_plot;
    std::function<void()> m_changed;
    int m_subset = -1;
    int m_point = -1;
};
