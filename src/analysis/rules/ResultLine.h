// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class GraphModel;

/// The line of results: how it is put together, and where it stands in a graph.
namespace resultline {

inline constexpr int kPieceLength = 64;
inline constexpr int kFirstPiece = 20; ///< label of a subset that carries the line, with all that follows in it
inline constexpr int kPieces = 10;

/// Two decimals by the user's locale, in groups.
QString grouped(double value);
/// The same without groups.
QString plain(double value);

/// Texts of the measures that a line shows; nothing for those it leaves out.
struct Measures
{
    std::optional<QString> f1, f2, fr, zr, q;
    QString behindQ; ///< stands behind the text of Q
};

/// "1) [Pen 1] - Fr:40,000.00 Hz ..."; empty where no measure is shown. Pens count from 0.
QString resonance(int pen, const QString& label, const Measures& measures);
/// "1) [Pen 1] - Clf at 1,000.00 Hz = 4.076 nF".
QString capacitance(int pen, const QString& label, const QString& frequency, const QString& capacitance);
/// Both with ": " between them, or the one there is.
QString joined(const QString& resonance, const QString& capacitance);

/// Shows the line under the plot and stores it in the graph's labels, so that a plot file carries it. An empty line
/// changes nothing; the answer tells.
bool show(GraphModel& graph, const QString& line);
/// Takes it away again; the line under the plot becomes the program's own.
void remove(GraphModel& graph);

} // namespace resultline
