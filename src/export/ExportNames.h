// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/FilePicker.h"

#include <QString>

class PenDocument;
class Preferences;
class UserMessages;

/// Names of exported files: proposed, asked for and made sure of.
namespace ExportNames {

/// The title of the graph, or the caption where there is none or no file can bear it: the last component, cut at its
/// first "."; "fileName" where that is nothing or no file can bear it.
QString suggested(const QString& mainTitle, const QString& caption);
QString suggested(const PenDocument& document);

/// Cut at its first "." anywhere, then ".txt".
QString textFile(const QString& fileName);

/// The file dialog "Save As" over the folder of exports; empty when the user cancelled.
QString ask(FilePicker& picker, const Preferences& preferences, const QString& filter, const QString& suggested);

/// May the file be written under the completed name? Asks where the cut fell into the name of a folder, so that it
/// would go elsewhere, and before a file is replaced. May run a nested event loop.
bool mayWrite(const QString& asked, const QString& completed, UserMessages& messages);

} // namespace ExportNames
