// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/ui/GraphPrinter.h"

#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPicture.h"
#include "files/SafeFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <array>

namespace GraphPrinter {
namespace {

constexpr double kPdfMargin = 5; // mm
constexpr int kDotsPerInch = 1200;
constexpr double kPointsPerInch = 72;

QString tr(const char* text)
{
    return QCoreApplication::translate("GraphPrinter", text);
}

bool paintPage(const GraphModel& graph, bool inMonochrome, QPagedPaintDevice& page, const QRectF& target)
{
    const std::unique_ptr<GraphModel> copy = inMonochrome ? monochrome(graph) : nullptr;
    QPainter painter;
    if (!painter.begin(&page))
        return false;
    graph::paintPicture(copy ? *copy : graph, painter, target);
    return painter.end();
}

QPageSize usualPaper()
{
    return QPageSize(QLocale().measurementSystem() == QLocale::ImperialUSSystem ? QPageSize::Letter : QPageSize::A4);
}

} // namespace

std::unique_ptr<QPrinter> printerFor(const Job& job)
{
    const QPrinterInfo info =
        job.printer.isEmpty() ? QPrinterInfo::defaultPrinter() : QPrinterInfo::printerInfo(job.printer);
    if (info.isNull())
        return nullptr;
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    if (job.paper.isValid())
        printer->setPageSize(job.paper);
    printer->setPageOrientation(job.orientation);
    printer->setFullPage(true);
    printer->setColorMode(job.monochrome ? QPrinter::GrayScale : QPrinter::Color);
    printer->setCopyCount(job.copies);
    return printer;
}

// The toolkit gives the margins of the upright paper for either orientation. Which way a page is turned is the
// printer's choice: of two opposite margins the wider holds for both.
QPageLayout printableLayout(const QPrinter& printer)
{
    QPageLayout layout = printer.pageLayout();
    layout.setUnits(QPageLayout::Point);
    QMarginsF margins = layout.minimumMargins();
    if (layout.orientation() == QPageLayout::Landscape) {
        const double sides = std::max(margins.top(), margins.bottom());
        const double ends = std::max(margins.left(), margins.right());
        margins = QMarginsF(sides, ends, sides, ends);
    }
    return QPageLayout(layout.pageSize(), layout.orientation(), margins, QPageLayout::Point);
}

QPageLayout pdfLayout(const Job& job)
{
    return QPageLayout(job.paper.isValid() ? job.paper : usualPaper(), job.orientation,
                       QMarginsF(kPdfMargin, kPdfMargin, kPdfMargin, kPdfMargin), QPageLayout::Millimeter);
}

Outcome print(const GraphModel& graph, const Job& job)
{
    const std::unique_ptr<QPrinter> printer = printerFor(job);
    if (!printer) {
        return Outcome::failure(job.printer.isEmpty() ? tr("There is no printer.")
                                                      : tr("There is no printer \"%1\".").arg(job.printer));
    }
    const QString& title = graph.MainTitle();
    printer->setDocName(title.isEmpty() ? QCoreApplication::applicationName() : title);
    const double scale = printer->resolution() / kPointsPerInch;
    const QRectF area = printableLayout(*printer).paintRect(QPageLayout::Point);
    const QRectF target(area.topLeft() * scale, area.size() * scale);
    if (paintPage(graph, job.monochrome, *printer, target) && printer->printerState() != QPrinter::Error)
        return Outcome::success();
    return Outcome::failure(tr("The printer \"%1\" did not take the page.").arg(printer->printerName()));
}

QByteArray pdfBytes(const GraphModel& graph, const Job& job)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(kDotsPerInch);
    writer.setPageLayout(pdfLayout(job));
    writer.setTitle(graph.MainTitle());
    writer.setCreator(QCoreApplication::applicationName());
    const QRectF target(0, 0, writer.width(), writer.height());
    return paintPage(graph, job.monochrome, writer, target) ? bytes : QByteArray();
}

Outcome printToPdf(const GraphModel& graph, const Job& job, const QString& fileName)
{
    const QByteArray bytes = pdfBytes(graph, job);
    if (bytes.isEmpty())
        return Outcome::failure(tr("The page could not be drawn."));
    return files::writeFile(fileName, bytes);
}

std::unique_ptr<GraphModel> monochrome(const GraphModel& graph)
{
    constexpr std::uint32_t kBlack = 0x000000;
    constexpr std::uint32_t kWhite = 0xFFFFFF;
    static constexpr std::array<int, 5> kPatterns{graph::LineSolid, graph::LineDash, graph::LineDot, graph::LineDashDot,
                                                  graph::LineDashDotDot};
    auto copy = std::make_unique<GraphModel>(graph.Subsets(), graph.Points());
    if (!GraphFile::PEload(*copy, GraphFile::PEstore(graph)))
        return nullptr;
    copy->setViewingStyle(graph::StyleMonochromeSymbols);
    copy->setMonoGraphForeColor(kBlack);
    copy->setMonoTextColor(kBlack);
    copy->setMonoGraphBackColor(kWhite);
    copy->setMonoDeskColor(kWhite);
    for (int subset = 0; subset < copy->Subsets(); ++subset) {
        if (copy->SubsetLineTypes(subset) == graph::LineSolid)
            copy->setSubsetLineTypes(subset, kPatterns[static_cast<std::size_t>(subset % 10) % kPatterns.size()]);
    }
    copy->PEactions(graph::Reinitialise);
    return copy;
}

} // namespace GraphPrinter
