// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

/// The Edit and View commands that act on the active document: zoom steps, clipboard, texts and marks.
class EditCommands
{
    Q_DECLARE_TR_FUNCTIONS(EditCommands)

public:
    /// Registers them. The context outlives the object.
    explicit EditCommands(const CommandContext& context);

    void mnuEditUndo_Click();
    void mnuEditRedo_Click();
    void mnuEditCut_Click();
    void mnuEditCopy_Click();
    void mnuEditPaste_Click();
    void mnuViewAddText_Click();
    void mnuViewMarkPoints_Click();
    void mnuViewZoomExtents_Click();
    void mnuViewPointerReadout_Click();

private:
    void registerEdit();
    void registerView();
    void fit(int axes);

    const CommandContext& m_context;
};
