// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

/// The two states of the program, plotting and viewing. They change on the instrument's messages, not on the user's
/// click.
class PlotState
{
public:
    explicit PlotState(const LinkContext& context)
        : m_context(context)
    {}

    /// The active document is under test from now on: only it receives points. Without one nothing happens.
    void GUISetPlotting();
    /// Back to viewing. Panel 1 shows "Connected", or "Disconnected" when the link is down.
    void GUISetViewing();

private:
    LinkContext m_context;
};
