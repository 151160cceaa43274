// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/DocumentFollower.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "program/ProgramState.h"

DocumentFollower::DocumentFollower(const LinkContext& context, InstrumentEvents& events, QObject* parent)
    : QObject(parent)
    , m_context(context)
{
    connect(&m_context.active, &ActiveDocument::changed, this, &DocumentFollower::follow);
    // The instrument may have met another program meanwhile: it is told when its state is known.
    connect(&events, &InstrumentEvents::stateComplete, this, &DocumentFollower::selectPin);
    follow(m_context.active.get());
}

void DocumentFollower::follow(PenDocument* document)
{
    disconnect(m_pen);
    disconnect(m_extent);
    if (document == nullptr)
        return;
    m_pen = connect(document, &PenDocument::currentPenChanged, this, &DocumentFollower::selectPin);
    m_extent = connect(document, &PenDocument::testExtentChanged, this, &DocumentFollower::sendExtent);
    // A sweep that runs keeps the pin it has.
    if (!m_context.state.gbfPlotting)
        selectPin();
}

void DocumentFollower::selectPin()
{
    const PenDocument* const document = m_context.active.get();
    // A document whose type is not known yet is being loaded.
    if (!m_context.device.Connected() || m_context.state.gbfScriptRunning || document == nullptr ||
        document->pgiTestType() == plot::NoTest)
        return;
    m_context.device.Write(command::setPin(document->pgiTestType(), document->gCurrentPen() + 1));
}

void DocumentFollower::sendExtent(double lowest, double highest, bool linear)
{
    KorvaLink& device = m_context.device;
    if (!device.Connected() || !m_context.mirror.bfGraphExtents)
        return;
    device.Write(command::startFreq(lowest));
    device.Write(command::endFreq(highest));
    device.Write(command::linear(linear));
}
