// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/PenDocument.h"
#include "export/TextExport.h"

#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <vector>

/// Documents of every type full of numbers that are hard to write, and what an export of them must hold.
namespace exported {

using Table = std::vector<std::vector<float>>;

/// One way to export.
struct Case
{
    std::int16_t type = plot::Amplitude;
    int pen = 0;
    TextExport::Format format;
};

inline QList<Case> everyCase()
{
    QList<Case> cases;
    for (const std::int16_t type : {plot::Amplitude, plot::Impedance, plot::Reactance}) {
        for (const int pen : {2, TextStore::kAllPens}) {
            for (int bits = 0; bits < 8; ++bits)
                cases.append({type, pen, {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0}});
        }
    }
    return cases;
}

inline std::string nameOf(const Case& one)
{
    return "type " + std::to_string(one.type) + " pen " + std::to_string(one.pen) +
           (one.format.header ? " header" : "") + (one.format.comma ? " comma" : "") +
           (one.format.unixEnd ? " unix" : "");
}

/// Pens 0, 2 and 9 get 40, 80 and 120 points, each subset any finite number but the two end marks. The names and the
/// title hold what separates columns and begins comments elsewhere.
inline void fill(PenDocument& document)
{
    GraphModel& graph = document.peGraph();
    std::mt19937 random(47);
    const auto number = [&random] {
        for (;;) {
            const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
            if (std::isfinite(value) && value != 0 && value != graph::kNullValue)
                return value;
        }
    };
    int points = 0;
    for (const int pen : {0, 2, 9}) {
        points += 40;
        for (int point = 0; point < points; ++point) {
            const float frequency = point % 4 == 0 ? number() : 1000.0F + static_cast<float>(point) * 0.1F;
            for (int subset = pen; subset < plot::kSubsets; subset += plot::kPens)
                graph.setPoint(subset, point, frequency, point % 9 == 8 ? -0.0F : number());
        }
    }
    graph.setMainTitle(QStringLiteral("L\u00e4ngs, 40 kHz; \"A\"\t# 7"));
    graph.setSubsetLabels(2, QStringLiteral("pen, \"two\" #\t1 2 3"));
}

/// The rows that the export must have, from the graph itself.
inline Table tableOf(const GraphModel& graph, const Case& one)
{
    Table table;
    int points = 0;
    for (const int pen : {0, 2, 9}) {
        points += 40;
        if (one.pen != TextStore::kAllPens && one.pen != pen)
            continue;
        for (int point = 0; point < points; ++point) {
            std::vector<float> row;
            if (one.pen == TextStore::kAllPens)
                row.push_back(static_cast<float>(pen + 1));
            row.push_back(graph.XData(pen, point));
            row.push_back(graph.YData(pen, point));
            row.push_back(graph.YData(pen + 30, point));
            if (one.type == plot::Reactance) {
                row.push_back(graph.YData(pen + 20, point));
                row.push_back(graph.YData(pen + 10, point));
            }
            table.push_back(row);
        }
    }
    return table;
}

/// A line a row, eight hexadecimal digits a number.
inline std::string bits(const Table& table)
{
    std::string text;
    for (const std::vector<float>& row : table) {
        for (const float& value : row)
            text += QByteArray::number(std::bit_cast<std::uint32_t>(value), 16).rightJustified(8, '0').toStdString() +
                    (&value == &row.back() ? "\n" : " ");
    }
    return text;
}

} // namespace exported
