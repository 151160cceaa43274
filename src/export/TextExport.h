// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/ExportStore.h"

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

/// Feeds the store, and with it the analysis, with the name and the points of a pen (0 to 9), up to the end mark. A
/// document of unknown type has no points.
void ExportSubset(ExportStore& store, const PenDocument& document, int pen);

/// Makes the store ready for ExportWrite of the same pen (0 to 9, or TextStore::kAllPens): clears it, then feeds it
/// with file, format, header and pens. A header names the resonance of each pen that has one.
void collect(ExportStore& store, const PenDocument& document, const QString& fileName, int pen, const Format& format);

/// Writes the text file, for scripts and windows alike. bfSubset, bfPhase and iPrecision have no effect on it: scripts
/// pass them. iPenIndex: 0 to 9, or TextStore::kAllPens. An existing file is replaced without a word. The sentence of a
/// failure names the file and the reason.
Outcome ExportTextFile(const PenDocument& document, const QString& strFileName, bool bfSubset, bool bfPhase,
                       int iPenIndex, int iPrecision, bool bfHeader, bool bfComma, bool bfUnix);

} // namespace TextExport
