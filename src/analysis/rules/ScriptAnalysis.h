// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/ResultSwitches.h"

#include <QObject>
#include <QString>

class ActiveDocument;
class PenDocument;
class ResonanceEngine;

/// Analysis as a script asks for it: a pen of the active document is fed, solved and told in a line under its graph.
/// Needs no window and no link. Pens count from 0; kNone names none.
class ScriptAnalysis : public QObject
{
    Q_OBJECT

public:
    static constexpr int kNone = 65535;

    /// Both outlive the object.
    ScriptAnalysis(ResonanceEngine& engine, const ActiveDocument& active, QObject* parent = nullptr);

    /// What lines show from now on; outlives the object. All measures until then.
    void setSwitches(ResultSwitches& switches) { m_switches = &switches; }

    /// What the instrument asks for: nothing without an active document of impedance or reactance, nor for a pen that
    /// is not 0 to 10.
    void analyse(int pen, int penClf, std::int16_t mode);

    /// Points of the active document into the engine; what it holds of other pens stays.
    void AnalysisFeed(int pen, int penClf);
    /// The line of results of what the engine holds; empty when nothing was found or nothing is to be shown.
    QString AnalysisText(int pen, int penClf);
    /// Feed, line and its place under the graph; for documents of that type, nothing for others.
    void AnalysisReactance(int pen, int penClf);
    void AnalysisImpedance(int pen, int penClf);

Q_SIGNALS:
    /// An analysis has been made, whatever its line.
    void analysed();

private:
    void showLine(std::int16_t testType, int pen, int penClf);

    ResonanceEngine& m_engine;
    const ActiveDocument& m_active;
    ResultSwitches m_allShown;
    ResultSwitches* m_switches = &m_allShown;
};
