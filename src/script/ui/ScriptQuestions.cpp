// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ui/ScriptQuestions.h"

#include <QInputDialog>

ScriptQuestions::ScriptQuestions(QWidget& owner, UserMessages& messages)
    : m_owner(owner)
    , m_messages(messages)
{}

frmGetFileName& ScriptQuestions::fileNameForm()
{
    if (!m_fileName)
        m_fileName = new frmGetFileName(m_messages, &m_owner);
    return *m_fileName;
}

QString ScriptQuestions::Dialog(const QString& caption)
{
    return fileNameForm().Dialog(&m_owner, caption);
}

void ScriptQuestions::clearFileName()
{
    if (m_fileName)
        m_fileName->clearFileName();
}

std::optional<QString> ScriptQuestions::inputBox(const QString& prompt, const QString& title)
{
    const QPointer<QInputDialog> dialog = new QInputDialog(&m_owner);
    dialog->setObjectName(QStringLiteral("inputBox"));
    dialog->setInputMode(QInputDialog::TextInput);
    dialog->setWindowTitle(title);
    dialog->setLabelText(prompt);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    const QString line = dialog->textValue();
    delete dialog;
    return accepted ? std::optional(line) : std::nullopt;
}
