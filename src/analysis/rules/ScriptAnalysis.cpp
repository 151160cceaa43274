// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/ScriptAnalysis.h"

#include "analysis/rules/PenFeed.h"
#include "analysis/rules/ResultLine.h"
#include "controls/resonance/ResonanceEngine.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"

ScriptAnalysis::ScriptAnalysis(ResonanceEngine& engine, const ActiveDocument& active, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_active(active)
{}

void ScriptAnalysis::analyse(int pen, int penClf, std::int16_t mode)
{
    const PenDocument* const document = m_active.get();
    if (document == nullptr)
        return;
    m_switches->SetAnalysisMode(mode);
    // A pen 10 is accepted, though none has it: its analysis finds nothing.
    if (pen < 0 || pen > PenDocument::kPens)
        return;
    if (document->pgiTestType() == PenDocument::Reactance)
        AnalysisReactance(pen, penClf);
    else if (document->pgiTestType() == PenDocument::Impedance)
        AnalysisImpedance(pen, penClf);
}

void ScriptAnalysis::AnalysisFeed(int pen, int penClf)
{
    const PenDocument* const document = m_active.get();
    if (document == nullptr)
        return;
    penfeed::feed(m_engine, *document, pen);
    if (penClf != pen && penClf != kNone)
        penfeed::feed(m_engine, *document, penClf);
}

QString ScriptAnalysis::AnalysisText(int pen, int penClf)
{
    const PenDocument* const document = m_active.get();
    if (document == nullptr)
        return {};
    const GraphModel& graph = document->peGraph();
    QString resonance;
    if (pen != kNone && m_engine.AnalysisSolve(pen, -1)) {
        resultline::Measures measures;
        const auto choose = [](std::optional<QString>& text, bool shown, double value) {
            if (shown)
                text = resultline::grouped(value);
        };
        choose(measures.f1, m_switches->ShowF1() != 0, m_engine.ResultF1());
        choose(measures.f2, m_switches->ShowF2() > 0, m_engine.ResultF2());
        choose(measures.fr, m_switches->ShowFr() > 0, m_engine.ResultFr());
        choose(measures.zr, m_switches->ShowZr() > 0, m_engine.ResultZr());
        choose(measures.q, m_switches->ShowQ() > 0, m_engine.ResultQ());
        resonance = resultline::resonance(pen, graph.SubsetLabels(pen), measures);
    }
    QString capacitance;
    if (penClf != kNone && m_engine.AnalysisSolveClf(penClf))
        capacitance = resultline::capacitance(penClf, graph.SubsetLabels(penClf),
                                              resultline::grouped(m_engine.ResultClfFrequency()),
                                              ResonanceEngine::FormatEngineering(m_engine.ResultClf()) + u'F');
    return resultline::joined(resonance, capacitance);
}

void ScriptAnalysis::AnalysisReactance(int pen, int penClf)
{
    showLine(PenDocument::Reactance, pen, penClf);
}

void ScriptAnalysis::AnalysisImpedance(int pen, int penClf)
{
    showLine(PenDocument::Impedance, pen, penClf);
}

void ScriptAnalysis::showLine(std::int16_t testType, int pen, int penClf)
{
    PenDocument* const document = m_active.get();
    if (document == nullptr || document->pgiTestType() != testType)
        return;
    AnalysisFeed(pen, penClf);
    resultline::show(document->peGraph(), AnalysisText(pen, penClf));
    Q_EMIT analysed();
}
