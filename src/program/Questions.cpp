// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/Questions.h"

#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace questions {

bool QuestionOverwriteFile(const QString& strFileName, UserMessages& messages)
{
    const QFileInfo file(strFileName);
    if (!file.exists() && !file.isSymLink())
        return true;
    const QString question = QCoreApplication::translate("questions", "The file \"%1\" already exists.\n"
                                                                      "Do you want to replace it?");
    const QString title = QCoreApplication::translate("questions", "Overwrite existing?");
    return messages.message(question.arg(strFileName), UserMessages::YesNo + UserMessages::Question, title) ==
           UserMessages::ReplyYes;
}

} // namespace questions
