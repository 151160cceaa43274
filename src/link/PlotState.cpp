// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/PlotState.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "document/VersionText.h"
#include "link/StatusPanels.h"
#include "program/ProgramState.h"

void PlotState::GUISetPlotting()
{
    PenDocument* const document = m_context.port.activeDocument();
    if (document == nullptr)
        return;
    m_context.state.gstrPlotKey = document->gstrKey;
    m_context.state.gbfPlotting = true;
    m_context.port.setPenBarEnabled(false);
    StatusPanels(m_context.port).show(StatusPanels::State, "Testing");

    GraphModel& peGraph = document->peGraph();
    const QString version = document->SetVersion();
    peGraph.setTXAxisLabel(version);
    if (const auto subTitle = VersionText::subTitle(version); subTitle && !peGraph.SubTitle().isEmpty())
        peGraph.setSubTitle(*subTitle);
}

void PlotState::GUISetViewing()
{
    m_context.port.setPenBarEnabled(true);
    m_context.state.gbfPlotting = false;
    StatusPanels(m_context.port).show(StatusPanels::State, m_context.device.Connected() ? "Connected" : "Disconnected");
    if (PenDocument* const document = m_context.port.activeDocument())
        document->SetViewing();
}
