// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/CommandContext.h"

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "link/TestRun.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QCoreApplication>

PenDocument* CommandContext::activeDocument() const
{
    return active.get();
}

void CommandContext::tell(const QString& text, int icon, const QString& title) const
{
    program.messages.message(text, UserMessages::OkOnly | icon, title);
}

bool CommandContext::formatAllows(const PenDocument& document, const QString& title) const
{
    if (document.giDocumentVersion() <= 1)
        return true;
    tell(QCoreApplication::translate("CommandContext", "New data format. Please check for updates."),
         UserMessages::Information, title);
    return false;
}

bool CommandContext::testGoesOn() const
{
    return program.state.gbfPlotting && testRun.QuestionTestCancel();
}
