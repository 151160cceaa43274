// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"
#include "document/content/TestType.h"

#include <QPointF>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

class PenDocument;
class ResonanceEngine;

/// The admittance loop of a document's pens as a graph of its own: conductance along X, susceptance along Y, frequency
/// running along the curve; subset n is pen n. Of a reactance document the impedance can be shown in its place,
/// resistance along X and reactance along Y. The document is only read.
class LoopGraph
{
public:
    enum class Quantity
    {
        Admittance,
        Impedance
    };

    struct Result
    {
        bool found = false;
        double fr = 0, zr = 0, q = 0, f2 = 0, f1 = 0; ///< Hz, Ohm, none, Hz, Hz
        int point = -1;                               ///< the one nearest to the resonance
        /// The circle of the motional arm in the admittance plane, as measured: not turned, not conjugated.
        QPointF centre;
        double radius = 0;
    };
    /// A place on a curve that has a name.
    struct Mark
    {
        int pen = 0;
        QString name; ///< "Fr", "F1" or "F2"
        QPointF place;
    };

    /// Points of a pen are as many as a document's.
    LoopGraph();

    GraphModel& graph() { return m_graph; }

    /// Colours, fonts, graticule, legend and annotations of the document's graph; vertical lines stand at frequencies
    /// and mean nothing here.
    void copyLook(const PenDocument& document);
    /// The curves of the pens that the document shows; the engine gets their points, and nothing else is left in it.
    void BuildLoop(const PenDocument& document, ResonanceEngine& engine, Quantity quantity);
    /// Solves every pen that is shown.
    void solve(ResonanceEngine& engine);

    bool isSkipped(int pen) const { return m_bfPenSkipped[at(pen)]; }
    const Result& result(int pen) const { return m_results[at(pen)]; }
    /// Hz; 0 for a point that is absent.
    double frequency(int pen, int point) const;
    /// "F:", "G:" and "B:" of a point with their units; empty for one that is absent.
    QString readOut(int pen, int point) const;
    /// Panels 2 to 6: F1, F2, Fr, Zr and Q.
    QStringList resultTexts(int pen) const;
    /// The resonances of the pens shown, and F1 and F2 where the sweep reached them.
    std::vector<Mark> marks() const;
    /// The fitted circle of a pen as a closed line; empty without one.
    std::vector<QPointF> circle(int pen) const;

    /// The limits of the axes: all points and 5 % of their span on either side. With the proportion of the plotting
    /// area, width over height, one of the axes is widened until both have one scale. The fitted circles count where
    /// they are shown.
    void SetLoopAxes(std::optional<double> proportion = {}, bool withCircles = false);

private:
    struct Extent
    {
        double least = 0, most = 0;
        bool empty = true;
        void track(double value);
    };

    static std::size_t at(int pen) { return static_cast<std::size_t>(pen); }
    void buildPen(const PenDocument& document, ResonanceEngine& engine, int pen);
    void nameAxes(bool impedance);
    QPointF shown(double conductance, double susceptance) const;
    std::optional<QPointF> placeOf(int pen, double frequency) const;

    GraphModel m_graph;
    Quantity m_quantity = Quantity::Admittance;
    std::array<bool, plot::kPens> m_bfPenSkipped{};
    std::array<std::vector<double>, plot::kPens> m_dblFrequency;
    std::array<Result, plot::kPens> m_results;
    Extent m_x, m_y;
};
