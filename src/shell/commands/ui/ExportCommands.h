// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

class PenCommands;

/// The commands by which a graph leaves the program: as text, as a picture, by the clipboard, on paper.
class ExportCommands
{
    Q_DECLARE_TR_FUNCTIONS(ExportCommands)

public:
    /// Registers them. Both outlive the object.
    ExportCommands(const CommandContext& context, PenCommands& pens);

    void mnuFileExport_Click();
    /// A picture as a .png, .svg or .pdf, as its name ends, at the size on the screen.
    void mnuFileExportPicture_Click();
    /// The picture as SVG, PDF and PNG at the size on the screen, for the program that it is pasted into to choose.
    void mnuEditCopyPicture_Click();
    void mnuFilePrint_Click();

private:
    /// The active document, unless it is none or its format forbids an export, which the user is told.
    PenDocument* exportable() const;
    QSize sizeOnScreen(const PenDocument& document) const;

    const CommandContext& m_context;
    PenCommands& m_pens;
};
