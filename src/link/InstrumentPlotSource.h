// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/PlotSource.h"

class KorvaLink;
struct InstrumentMirror;
struct ProgramState;

/// What the connected instrument lends to documents, read from the mirror whenever a document asks.
class InstrumentPlotSource : public PlotSource
{
public:
    /// All of it outlives the source.
    InstrumentPlotSource(const KorvaLink& device, const InstrumentMirror& mirror, const ProgramState& state)
        : m_device(device)
        , m_mirror(mirror)
        , m_state(state)
    {}

    QString instrument() const override;
    Limits limits() const override;
    bool extentHeld() const override;
    bool followsExtent() const override;

private:
    const KorvaLink& m_device;
    const InstrumentMirror& m_mirror;
    const ProgramState& m_state;
};
