// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/OutputFile.h"
#include "values/Outcome.h"

#include <QSize>
#include <QString>
#include <QStringList>

class GraphModel;

namespace cli {

/// marrowick-draw, which draws for programs that know no windows. It lies beside this program and is started for each
/// picture: the plot goes to it on standard input, the file is written by it.
namespace DrawProgram {

/// The kinds of picture: "png", "jpg", "jpeg", "bmp", "wmf", "svg", "pdf".
QStringList formats();
/// The kind that the name asks for; "png" for "-"; empty for a name that asks for none.
QString formatOf(const OutputFile& picture);

/// Fails when the program is not there.
Outcome check();
/// Draws the graph; an empty format is that of the name. The sentence of a failure is that of the program where it had
/// one. Blocks until it has ended; an interrupt from the terminal does not end it.
Outcome draw(const GraphModel& graph, const OutputFile& picture, const QSize& pixels, const QString& format = {});

} // namespace DrawProgram

} // namespace cli
