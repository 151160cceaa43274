// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/ImageExport.h"
#include "values/Outcome.h"

class GraphModel;
class UserMessages;

/// Pictures of a graph in the three formats of the image pages, with and without a window. Needs a QApplication.
namespace PictureExport {

/// Writes the graph under the completed name. bfCheckOverWrite: asks first where that is another place than the user
/// named or a file is there; otherwise an existing file is replaced without a word. Success also where nothing is to be
/// written: the user refused, or format or resolution is none (ImageExport::size). The sentence of a failure names the
/// file and the reason. May run a nested event loop.
Outcome ExportFile(const GraphModel& graph, const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite,
                   const ImageExport::Choice& choice, UserMessages& messages);

} // namespace PictureExport
