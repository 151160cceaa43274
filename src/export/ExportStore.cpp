// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportStore.h"

#include "controls/resonance/ResonanceEngine.h"

ExportStore::ExportStore()
    : m_analysis(std::make_unique<ResonanceEngine>())
{}

ExportStore::~ExportStore() = default;

void ExportStore::ExportClear()
{
    TextStore::ExportClear();
    m_analysis->AnalysisClear();
}

void ExportStore::ExportAddImpedance(double frequency, double modulus, double phase, std::int32_t pen,
                                     std::int32_t index)
{
    TextStore::ExportAddImpedance(frequency, modulus, phase, pen, index);
    m_analysis->AnalysisAddPolar(frequency, modulus, phase, pen, index);
}

void ExportStore::ExportAddReactance(double frequency, double y0, double y30, double y20, double y10, std::int32_t pen,
                                     std::int32_t index)
{
    TextStore::ExportAddReactance(frequency, y0, y30, y20, y10, pen, index);
    m_analysis->AnalysisAddRect(frequency, y30, y0, y10, y20, pen, index);
}
