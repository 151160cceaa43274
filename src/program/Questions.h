// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class UserMessages;

/// Questions that several parts of the program ask in the same words.
namespace questions {

/// May this file be written? True at once when there is no such file, else the user is asked. May run a nested event
/// loop: the caller checks that what it holds still lives.
bool QuestionOverwriteFile(const QString& strFileName, UserMessages& messages);

} // namespace questions
