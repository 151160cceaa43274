#pragma once

#include <QString>

class GraphModel;

/// Writes graphs to plot files and reads them back.
class PlotStorage
{
public:
    virtual ~PlotStorage() = default;

    /// False when the file could not be written; a file that was there before is then as it was.
    virtual bool PEsavetofile(const GraphModel& graph, const QString& fileName) = 0;
    /// False for a file that holds no graph; the graph is then as it was.
    virtual bool PEloadfromfile(GraphModel& graph, const QString& fileName) = 0;
};
