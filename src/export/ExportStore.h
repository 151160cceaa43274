// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/textstore/TextStore.h"

#include <memory>

class ResonanceEngine;

/// The store of a text export and the analysis of what it holds: every point added is fed to the analysis of the same
/// pen too, so that a solution is that of the exported points.
class ExportStore : public TextStore
{
public:
    ExportStore();
    ~ExportStore();

    /// Forgets the analysis' sets of points too.
    void ExportClear();
    void ExportAddImpedance(double frequency, double modulus, double phase, std::int32_t pen, std::int32_t index);
    void ExportAddReactance(double frequency, double y0, double y30, double y20, double y10, std::int32_t pen,
                            std::int32_t index);

    ResonanceEngine& analysis() { return *m_analysis; }

private:
    std::unique_ptr<ResonanceEngine> m_analysis;
};
