// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QPageLayout>
#include <QPageSize>
#include <QString>

#include <memory>

class GraphModel;
class QPrinter;

/// Prints a graph on one page, with and without a window: as vectors that fill the printable area edge to edge,
/// whatever the shape of the graph on the screen. Needs a QApplication.
namespace GraphPrinter {

struct Job
{
    QString printer = {}; ///< its name; empty: the default printer
    QPageSize paper = {}; ///< not valid: the printer's own
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
    bool monochrome = false;
    int copies = 1;
};

/// The printer as the job wants it, with coordinates from the corner of the paper; null when there is no such printer.
std::unique_ptr<QPrinter> printerFor(const Job& job);
/// Its page with the smallest margins that it can print.
QPageLayout printableLayout(const QPrinter& printer);
/// A page of the job in a PDF file, which any printer can print: 5 mm of margin all round.
QPageLayout pdfLayout(const Job& job);

/// Prints at once. The sentence of a failure says what is wrong.
Outcome print(const GraphModel& graph, const Job& job);
/// The page as the bytes of a PDF file, and into a file: the old file or the whole new one is there.
QByteArray pdfBytes(const GraphModel& graph, const Job& job);
Outcome printToPdf(const GraphModel& graph, const Job& job, const QString& fileName);

/// The same graph black on white, its pens told apart by line styles and symbols; null when it cannot be copied.
std::unique_ptr<GraphModel> monochrome(const GraphModel& graph);

} // namespace GraphPrinter
