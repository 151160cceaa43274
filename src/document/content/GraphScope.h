// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

/// Selects a Y axis of the graph for a while; the axis selected before comes back.
class AxisScope
{
public:
    AxisScope(GraphModel& graph, int axis)
        : m_graph(graph)
        , m_before(graph.WorkingAxis())
    {
        m_graph.setWorkingAxis(axis);
    }
    ~AxisScope() { m_graph.setWorkingAxis(m_before); }
    AxisScope(const AxisScope&) = delete;
    AxisScope& operator=(const AxisScope&) = delete;

private:
    GraphModel& m_graph;
    int m_before;
};

/// Selects a table of the graph for a while; the table selected before comes back.
class TableScope
{
public:
    TableScope(GraphModel& graph, int table)
        : m_graph(graph)
        , m_before(graph.WorkingTable())
    {
        m_graph.setWorkingTable(table);
    }
    ~TableScope() { m_graph.setWorkingTable(m_before); }
    TableScope(const TableScope&) = delete;
    TableScope& operator=(const TableScope&) = delete;

private:
    GraphModel& m_graph;
    int m_before;
};
