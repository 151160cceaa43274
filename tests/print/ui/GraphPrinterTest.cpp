// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/ui/GraphPrinter.h"

#include "controls/graph/ui/GraphPicture.h"
#include "print/ui/PrintBench.h"

#include <QPrinter>

#include <set>

using namespace printbench;

namespace {

GraphPrinter::Job jobOf(QPageSize::PageSizeId paper, QPageLayout::Orientation orientation, bool monochrome = false)
{
    return {QString(), QPageSize(paper), orientation, monochrome, 1};
}

constexpr QPageSize::PageSizeId kPapers[] = {QPageSize::A4, QPageSize::Letter};
constexpr QPageLayout::Orientation kOrientations[] = {QPageLayout::Portrait, QPageLayout::Landscape};

void expectNear(const QRectF& found, const QRectF& expected)
{
    EXPECT_NEAR(found.left(), expected.left(), 1.5);
    EXPECT_NEAR(found.top(), expected.top(), 1.5);
    EXPECT_NEAR(found.right(), expected.right(), 1.5);
    EXPECT_NEAR(found.bottom(), expected.bottom(), 1.5);
}

} // namespace

TEST(GraphPrinter, APdfPageHasThePaperAndOrientationChosen)
{
    const auto graph = greyGraph();
    for (const QPageSize::PageSizeId paper : kPapers) {
        for (const QPageLayout::Orientation orientation : kOrientations) {
            const QByteArray pdf = GraphPrinter::pdfBytes(*graph, jobOf(paper, orientation));
            const QSizeF size = QPageSize(paper).size(QPageSize::Point);
            EXPECT_EQ(pageSize(pdf), orientation == QPageLayout::Portrait ? size : size.transposed());
        }
    }
}

TEST(GraphPrinter, ThePageFillsWhateverTheGraphsShape)
{
    if (program("pdftoppm").isEmpty()) {
        std::printf("left out, since poppler-utils is not installed: where the ink is\n");
        return;
    }
    const auto graph = greyGraph();
    for (const QPageLayout::Orientation orientation : kOrientations) {
        const GraphPrinter::Job job = jobOf(QPageSize::A4, orientation);
        expectNear(inked(GraphPrinter::pdfBytes(*graph, job)),
                   GraphPrinter::pdfLayout(job).paintRect(QPageLayout::Point));
    }
}

TEST(GraphPrinter, APageHoldsNoBitmapAndBringsItsFonts)
{
    const auto graph = greyGraph();
    graph->setMainTitle(QStringLiteral("Langevin"));
    graph->PEactions(graph::Reinitialise);
    for (const bool monochrome : {false, true}) {
        const QByteArray pdf = GraphPrinter::pdfBytes(*graph, jobOf(QPageSize::A4, QPageLayout::Portrait, monochrome));
        EXPECT_FALSE(pdf.contains("/Subtype /Image"));
        EXPECT_TRUE(pdf.contains("/FontFile"));
    }
}

TEST(GraphPrinter, MonochromeTellsTenPensApartByLineStyleAndSymbol)
{
    GraphModel graph;
    for (int pen = 0; pen < 10; ++pen) {
        graph.setRandomSubsetsToGraph(pen, pen);
        graph.setSubsetColors(pen, 0x0000FF);
    }
    graph.PEactions(graph::Reinitialise);
    const auto copy = GraphPrinter::monochrome(graph);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->ViewingStyle(), graph::StyleMonochromeSymbols) << "a symbol for each of the ten";
    std::set<int> styles;
    for (int pen = 0; pen < 5; ++pen)
        styles.insert(copy->SubsetLineTypes(pen));
    EXPECT_EQ(styles.size(), 5U);
    EXPECT_EQ(graph.ViewingStyle(), graph::StyleColour) << "the graph itself stays";
    EXPECT_EQ(graph.SubsetLineTypes(3), graph::LineSolid);
    for (int i = 0; i < 100; ++i) {
        copy->setPoint(3, i, static_cast<float>(i + 1), static_cast<float>(i));
        copy->setPoint(4, i, static_cast<float>(i + 1), static_cast<float>(200 - i));
    }
    copy->PEactions(graph::Reinitialise);
    const QImage picture = graph::pictureImage(*copy, 400, 400);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ASSERT_LT(picture.pixelColor(x, y).hsvSaturation(), 20) << x << ", " << y;
    }
}

TEST(GraphPrinter, APlotOfTenFullPensIsUnderAMebibyteAsPdfAndSvg)
{
    GraphModel graph;
    for (int subset = 0; subset < 40; ++subset) {
        for (int i = 0; i < 1024; ++i)
            graph.setPoint(subset, i, static_cast<float>(1000 + i * 7.3),
                           static_cast<float>(std::sin(i * 0.37 + subset) * 100 + 200.123 * subset));
    }
    for (int i = 0; i < 20; ++i)
        graph.setRandomSubsetsToGraph(i, i < 10 ? i : i + 20);
    graph.PEactions(graph::Reinitialise);
    for (const graph::PictureFormat format : {graph::PictureFormat::Pdf, graph::PictureFormat::Svg}) {
        const ValueOr<QByteArray> picture = graph::pictureBytes(graph, format, 1280, 800);
        ASSERT_TRUE(picture.ok());
        EXPECT_LT(picture.value().size(), 1 << 20);
        EXPECT_GT(picture.value().size(), 10000);
        EXPECT_FALSE(picture.value().contains("<image"));
        EXPECT_FALSE(picture.value().contains("/Subtype /Image"));
    }
}

TEST(GraphPrinter, WithNoPrinterItSaysSo)
{
    const auto graph = greyGraph();
    const Outcome none = GraphPrinter::print(*graph, {});
    ASSERT_FALSE(none);
    EXPECT_EQ(none.sentence(), "There is no printer.");
    EXPECT_EQ(GraphPrinter::print(*graph, {.printer = QStringLiteral("Laser")}).sentence(),
              "There is no printer \"Laser\".");
    const Outcome lost = GraphPrinter::printToPdf(*graph, {}, QStringLiteral("/nowhere/a.pdf"));
    ASSERT_FALSE(lost);
    EXPECT_TRUE(lost.sentence().contains("/nowhere/a.pdf"));
}

TEST(GraphPrinter, ThroughARealQueueEveryPaperOrientationAndStyleFillsThePrintableArea)
{
    if (!CupsServer::isInstalled()) {
        std::printf("left out, since cups-daemon and cups-client are not installed: the print through a queue\n");
        return;
    }
    CupsServer server;
    const auto graph = greyGraph();
    for (const QPageSize::PageSizeId paper : kPapers) {
        for (const QPageLayout::Orientation orientation : kOrientations) {
            for (const bool monochrome : {false, true}) {
                const Outcome printed = GraphPrinter::print(*graph, jobOf(paper, orientation, monochrome));
                ASSERT_TRUE(printed) << printed.sentence().toStdString();
                const QByteArray pdf = server.takePage();
                const QSizeF size = QPageSize(paper).size(QPageSize::Point);
                const bool isUpright = orientation == QPageLayout::Portrait;
                EXPECT_EQ(pageSize(pdf), isUpright ? size : size.transposed());
                EXPECT_FALSE(pdf.contains("/Subtype /Image"));
                if (monochrome || program("pdftoppm").isEmpty())
                    continue; // its desk is white
                const QRectF upright(18, 36, size.width() - 36, size.height() - 72);
                expectNear(inked(pdf), isUpright ? upright : QRectF(36, 18, upright.height(), upright.width()));
            }
        }
    }
}
