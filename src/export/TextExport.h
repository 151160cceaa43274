// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/textstore/TextStore.h"

#include <QString>

class PenDocument;

/// How a document becomes a text file: one rule for the window, for scripts and for the command line.
namespace TextExport {

struct Format
{
    bool header = false;
    bool comma = false;   ///< ", " between columns in place of a tab
    bool unixEnd = false; ///< lines end in a line feed alone
};

/// Feeds the store with the name and the points of a pen (0 to 9), up to the end mark. A document of unknown type has
/// no points.
void ExportSubset(TextStore& store, const PenDocument& document, int pen);

/// Makes the store ready for ExportWrite of the same pen (0 to 9, or TextStore::kAllPens): clears it, then feeds it
/// with file, format, header and pens. Solutions are the caller's to add.
void collect(TextStore& store, const PenDocument& document, const QString& fileName, int pen, const Format& format);

} // namespace TextExport
