// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenReader.h"

namespace PenReader {

int pointCount(const GraphModel& graph, int subset)
{
    const auto x = graph.xArray(subset);
    const auto y = graph.yArray(subset);
    std::size_t point = 0;
    while (point < x.size() && x[point] != 0.0F && y[point] != graph::kNullValue)
        ++point;
    return static_cast<int>(point);
}

} // namespace PenReader
