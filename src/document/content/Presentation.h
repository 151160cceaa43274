// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/PlotSource.h"
#include "document/content/TestType.h"

#include <QCoreApplication>
#include <QString>

#include <initializer_list>

class Pens;
class Preferences;

/// Which quantities a graph shows on which of its axes. Every quantity of a pen exists as data (Pens.h), so a change of
/// view changes only titles and the list of shown subsets. Titles are the memory: type and view of a loaded graph are
/// read back from them. Nothing here redraws.
///
///   axis | amplitude                     | impedance                    | reactance
///   0, 1 | gain, or loss when alternate  | modulus of Z, or of Y        | X, or B
///   2, 3 | phase, by the phase view      | phase, by the phase view     | G, or R, by the R/G view
///
/// An axis that is switched off has the title "X".
class Presentation
{
    Q_DECLARE_TR_FUNCTIONS(Presentation)

public:
    /// The graph outlives the presentation.
    explicit Presentation(GraphModel& graph)
        : m_graph(graph)
    {}

    std::int16_t testType() const { return m_testType; } ///< plot::TestType
    bool isAlternate() const { return m_alternate; }
    std::int16_t phaseView() const { return m_phaseView; } ///< plot::PhaseView
    std::int16_t rgView() const { return m_rgView; }       ///< plot::RGView
    bool isFrequencyLinear() const { return m_frequencyLinear; }
    /// True when X is "Frequency - Hz", on a linear or logarithmic scale.
    bool isOverFrequency() const;
    bool isFrequencyLogarithmic() const;

    /// Titles, scales and limits of the Y axes of an empty graph of that type, its main view on.
    void configureTest(std::int16_t testType, const PlotSource::Limits& limits);
    /// X over the sweep, or over the whole range where the sweep is no range.
    void configureFrequency(bool linear, const PlotSource::Limits& limits);
    /// The view of the preferences for this type.
    void setDefaults(const Preferences& preferences);
    /// Type and view from the titles of the graph as it stands. Titles that are not known leave the type alone.
    void readTitles();

    // Views. Values that the type does not have are refused; true when the view was set.
    void setAlternate(bool alternate);
    bool setPhaseView(std::int16_t view);
    bool setRGView(std::int16_t view);
    void setFrequencyLinear(bool linear);
    /// Linear or logarithmic impedance and admittance axes.
    void setImpedanceLinear(bool linear);
    /// Manual limits in dB; the loss axis takes the negated ones.
    void setAmplitudeLimits(double minimum, double maximum);

    /// The graph shows the subsets of this view for every pen that is not hidden.
    void showPens(const Pens& pens);
    /// Which pens the graph shows.
    void readShownPens(Pens& pens) const;

    /// A zoom limit of the X axis in Hz: limits of a logarithmic frequency axis are exponents.
    double plainX(double zoomLimit) const;
    /// Texts of panels 11 and 12 for a point under the cursor.
    struct CursorTexts
    {
        QString x, y;
    };
    CursorTexts cursorTexts(int subset, int point) const;

private:
    void nameAxes();
    QString title(int axis) const;
    void setLimits(int axis, int control, double minimum, double maximum);
    void setAutomatic(std::initializer_list<int> axes, bool automatic);
    void setYScale(std::initializer_list<int> axes, bool linear);

    GraphModel& m_graph;
    std::int16_t m_testType = plot::NoTest;
    bool m_alternate = false;
    std::int16_t m_phaseView = plot::NoPhase;
    std::int16_t m_rgView = plot::NeitherRG;
    bool m_frequencyLinear = false;
};
