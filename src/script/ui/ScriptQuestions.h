// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/ui/frmGetFileName.h"
#include "script/ScriptPorts.h"

#include <QPointer>

/// What a running script asks the user for, over the main window: the name of a file and a line of text.
class ScriptQuestions : public ScriptFileNames, public ScriptInput
{
public:
    /// Both outlive this.
    ScriptQuestions(QWidget& owner, UserMessages& messages);

    QString Dialog(const QString& caption) override;
    void clearFileName() override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title) override;

private:
    frmGetFileName& fileNameForm();

    QWidget& m_owner;
    UserMessages& m_messages;
    QPointer<frmGetFileName> m_fileName; ///< a child of the owner, made when it is first needed
};
