// SPDX-License-Identifier: GPL-3.0-or-later
#include "GraphFixture.h"

#include <limits>

namespace {

class GraphViewDrawing : public GraphFixture
{
protected:
    /// |Z| falling from 1000 Ohm at 1 kHz to 1 Ohm at 1 MHz: a straight line in log-log.
    void fill(int subset, int points = 400)
    {
        for (int i = 0; i < points; ++i) {
            const double f = std::pow(10.0, 3 + 3.0 * i / (points - 1));
            model.setPoint(subset, i, static_cast<float>(f), static_cast<float>(1e6 / f));
        }
    }
};

} // namespace

TEST_F(GraphViewDrawing, AKnownCurveLandsWhereTheAxesSay)
{
    fill(0);
    settle();
    const QImage image = picture();
    for (const double f : {1.5e3, 1e4, 3.3e4, 1e5, 7e5})
        EXPECT_TRUE(isRedAt(image, view.toPixel(f, 1e6 / f))) << f;
    EXPECT_FALSE(isRedAt(image, view.toPixel(1e4, 10), 2));
    const QRect area = view.plotArea();
    EXPECT_NEAR(view.toPixel(1e3, 1).x(), area.left(), 1);
    EXPECT_NEAR(view.toPixel(1e6, 1).x(), area.right() + 1, 1);
    EXPECT_NEAR(view.toPixel(1e3, 1000).y(), area.top(), 1);
    EXPECT_NEAR(view.toPixel(std::sqrt(1e9), 1).x(), area.center().x(), 1.5);
}

TEST_F(GraphViewDrawing, PositionsAndValuesConvertBothWays)
{
    const QPointF at = view.toPixel(12345, 67);
    const QPointF back = view.toGraph(at);
    EXPECT_NEAR(back.x(), 12345, 1);
    EXPECT_NEAR(back.y(), 67, 0.01);
    EXPECT_NEAR(view.toGraph(view.toPixel(5e4, -45, 3), 3).y(), -45, 0.01);
}

TEST_F(GraphViewDrawing, ANullPointBreaksTheLine)
{
    fill(0);
    for (int i = 190; i < 210; ++i)
        model.setYData(0, i, graph::kNullValue);
    settle();
    const QImage image = picture();
    const double gap = model.XData(0, 200);
    EXPECT_FALSE(isRedAt(image, view.toPixel(gap, 1e6 / gap), 2));
    const double before = model.XData(0, 150);
    const double behind = model.XData(0, 250);
    EXPECT_TRUE(isRedAt(image, view.toPixel(before, 1e6 / before)));
    EXPECT_TRUE(isRedAt(image, view.toPixel(behind, 1e6 / behind)));
}

TEST_F(GraphViewDrawing, PointsThatAxesCannotShowAreLeftOut)
{
    fill(0, 100);
    const float bad[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 0.0F, -5.0F};
    for (int i = 0; i < 4; ++i)
        model.setYData(0, 20 + i, bad[i]);
    model.setXData(0, 40, 0);
    settle();
    for (const int point : {20, 21, 22, 23, 40})
        EXPECT_FALSE(plot().trace(0)->pixelOf(point)) << point;
    EXPECT_TRUE(plot().trace(0)->pixelOf(24));
    EXPECT_FALSE(plot().trace(0)->pixelOf(100)); // never filled
}

TEST_F(GraphViewDrawing, APhaseThatWasNotMeasuredDrawsNothing)
{
    show(30);
    for (int i = 0; i < 50; ++i)
        model.setPoint(30, i, 1e3F + static_cast<float>(i), i % 2 == 0 ? 65536.0F : -65536.0F);
    settle();
    EXPECT_TRUE(plot().trace(30)->extent().empty);
    model.setYData(30, 3, -90);
    settle();
    EXPECT_FALSE(plot().trace(30)->extent().empty);
    EXPECT_EQ(plot().trace(30)->extent().y, (graph::Range{-90, -90}));
}

TEST_F(GraphViewDrawing, ASinglePointShowsAsADot)
{
    model.setPoint(0, 0, 1e4F, 100);
    settle();
    EXPECT_TRUE(isRedAt(picture(), view.toPixel(1e4, 100)));
}

TEST_F(GraphViewDrawing, FarValuesAreCutAtTheView)
{
    model.setPoint(0, 0, 1e3F, 1e-30F);
    model.setPoint(0, 1, 1e6F, 1e30F);
    settle();
    // Straight in log-log: half way in X is half way between the exponents, 1 Ohm, the bottom of the axis.
    EXPECT_TRUE(isRedAt(picture(), view.toPixel(std::pow(10, 4.575), std::pow(10, 1.5)), 2));
}

TEST_F(GraphViewDrawing, TheRightAxisShowsOnlyWithASubsetOfItsOwn)
{
    EXPECT_FALSE(plot().valueAxis(3).visible());
    show(30);
    settle();
    EXPECT_TRUE(plot().valueAxis(3).visible());
    EXPECT_FALSE(plot().valueAxis(2).visible());
    EXPECT_TRUE(plot().valueAxis(0).visible());
    EXPECT_FALSE(plot().valueAxis(1).visible());
}

TEST_F(GraphViewDrawing, TheAlternateViewSwapsTheLeftAxes)
{
    model.setYAxisLabel(QStringLiteral("X"));
    model.setWorkingAxis(1);
    model.setYAxisLabel(QStringLiteral("Modulus of Admittance - Siemens"));
    model.setRandomSubsetsToGraph(0, -1);
    show(10);
    fill(10);
    settle();
    EXPECT_FALSE(plot().valueAxis(0).visible());
    EXPECT_TRUE(plot().valueAxis(1).visible());
    EXPECT_EQ(plot().drawn(), std::vector<int>{10});
}

TEST_F(GraphViewDrawing, TheLegendNamesShownSubsetsThatHoldData)
{
    show(1);
    show(2);
    model.setSubsetLabels(1, QStringLiteral("empty"));
    fill(2);
    fill(0);
    settle();
    ASSERT_EQ(plot().legend->itemCount(), 1); // subset 2 has no label, subset 1 no data
    model.setSubsetLabels(2, QStringLiteral("third"));
    settle();
    EXPECT_EQ(plot().legend->itemCount(), 2);
    EXPECT_TRUE(plot().legend->hasItemWithPlottable(plot().trace(2)));
    EXPECT_FALSE(plot().legend->hasItemWithPlottable(plot().trace(1)));
    model.setShowLegend(false);
    settle();
    EXPECT_FALSE(plot().legend->visible());
}

TEST_F(GraphViewDrawing, TheLegendStandsWhereItWasPut)
{
    fill(0);
    const auto place = [this](int location) {
        model.setLegendLocation(location);
        settle();
        return plot().legend->outerRect().center();
    };
    QPoint centre = place(graph::LegendTop);
    EXPECT_LT(centre.y(), view.plotArea().top());
    centre = place(graph::LegendBottom);
    EXPECT_GT(centre.y(), view.plotArea().bottom());
    centre = place(graph::LegendLeft);
    EXPECT_LT(centre.x(), view.plotArea().left());
    centre = place(graph::LegendRight);
    EXPECT_GT(centre.x(), view.plotArea().right());
    model.setLegendStyle(graph::LegendInsideAxis);
    settle();
    EXPECT_TRUE(view.plotArea().contains(plot().legend->outerRect()));
}

TEST_F(GraphViewDrawing, TheVerticalLineStandsAtItsFrequencyAndVanishes)
{
    model.setVertLineAnnotation(0, 3e4);
    model.setVertLineAnnotationType(0, 0);
    model.setVertLineAnnotationColor(0, 0x0000FF);
    settle();
    const QPointF at = view.toPixel(3e4, 10);
    EXPECT_TRUE(isRedAt(picture(), at));
    EXPECT_TRUE(isRedAt(picture(), QPointF(at.x(), view.plotArea().top() + 20)));
    model.setVertLineAnnotationType(0, graph::kLineVanished);
    settle();
    EXPECT_FALSE(isRedAt(picture(), at, 3));
}

TEST_F(GraphViewDrawing, TheGraticuleHasItsColour)
{
    model.setTickColor(0x0000FF);
    settle();
    EXPECT_TRUE(isRedAt(picture(), QPointF(view.toPixel(1e4, 1).x(), view.plotArea().center().y() + 7.0)));
}

TEST_F(GraphViewDrawing, MonochromeUsesItsFourColours)
{
    fill(0);
    model.setViewingStyle(graph::StyleMonochrome);
    model.setMonoGraphForeColor(0x00FF00);
    model.setMonoGraphBackColor(0x101010);
    model.setMonoDeskColor(0x404000);
    settle();
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(1, 1), QColor(0x00, 0x40, 0x40));
    const QPointF on = view.toPixel(1e4, 100);
    bool green = false;
    for (int dy = -1; dy <= 1; ++dy)
        green = green || image.pixelColor(on.toPoint() + QPoint(0, dy)).green() > 120;
    EXPECT_TRUE(green);
    EXPECT_EQ(redPixels(image, view.plotArea()), 0);
}

TEST_F(GraphViewDrawing, MarksShowEveryPoint)
{
    for (int i = 0; i < 10; ++i)
        model.setPoint(0, i, static_cast<float>(2e3 * (i + 1)), 100);
    settle();
    const QRect area = view.plotArea();
    const int plain = redPixels(picture(), area);
    model.setMarkDataPoints(true);
    settle();
    EXPECT_GT(redPixels(picture(), area), plain + 10 * 8);
    model.setMarkDataPoints(false);
    model.setSubsetLineTypes(0, graph::LinePointsJoined);
    settle();
    EXPECT_GT(redPixels(picture(), area), plain + 10 * 8);
}

TEST_F(GraphViewDrawing, ADarkDesktopKeepsThePaperLight)
{
    fill(0);
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(30, 30, 30));
    dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
    view.setPalette(dark);
    settle();
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(1, 1), QColor(30, 30, 30));
    EXPECT_GT(image.pixelColor(view.toPixel(5.5e3, 5.5).toPoint()).lightness(), 200);
}

TEST_F(GraphViewDrawing, ATableAnnotationTakesItsPlace)
{
    const QRect before = view.plotArea();
    model.setTAText(0, 0, QStringLiteral("Produced by Marrowick Instruments"));
    settle();
    EXPECT_EQ(view.plotArea(), before); // a carrier until it is shown
    model.setTALocation(5);
    model.setTABackColor(0x0000FF);
    model.setShowTableAnnotation(true);
    settle();
    EXPECT_LT(view.plotArea().bottom(), before.bottom());
    const QRect corner(600, 570, 200, 30);
    EXPECT_GT(redPixels(picture(), corner), 300);
    model.setTALocation(0);
    settle();
    EXPECT_GT(view.plotArea().top(), before.top());
    EXPECT_GT(redPixels(picture(), QRect(0, 0, 300, 40)), 300);
}

TEST_F(GraphViewDrawing, TextsOfTheGraphThatCarryDataAreNeverDrawn)
{
    fill(0);
    settle();
    const QImage before = picture();
    model.setMultiSubTitles(0, QStringLiteral("X000000000"));
    model.setTXAxisLabel(QStringLiteral("MarrowickGraph V1.28.0 | No device connected : today"));
    model.setGraphAnnotationText(100, QStringLiteral("Test Settings"));
    settle();
    EXPECT_EQ(picture(), before);
}

TEST_F(GraphViewDrawing, ALoopMayRunBackAndCrossItself)
{
    model.setXAxisScaleControl(graph::ScaleLinear);
    model.setYAxisScaleControl(graph::ScaleLinear);
    model.setManualMinX(-2);
    model.setManualMaxX(2);
    model.setManualMinY(-2);
    model.setManualMaxY(2);
    for (int i = 0; i < 361; ++i)
        model.setPoint(0, i, static_cast<float>(1.5 * std::cos(i * M_PI / 180)),
                       static_cast<float>(1.5 * std::sin(i * M_PI / 180)));
    settle();
    const QImage image = picture();
    for (int angle = 10; angle < 360; angle += 35) {
        EXPECT_TRUE(
            isRedAt(image, view.toPixel(1.5 * std::cos(angle * M_PI / 180), 1.5 * std::sin(angle * M_PI / 180))))
            << angle;
    }
}

TEST_F(GraphViewDrawing, AWideTraceIsAsWideAsItsPen)
{
    model.setPoint(0, 0, 1e3F, 31.6F);
    model.setPoint(0, 1, 1e6F, 31.6F);
    model.setLineWidth(4);
    settle();
    const QImage image = picture();
    const QPointF on = view.toPixel(5.5e4, 31.6);
    int rows = 0;
    for (int dy = -8; dy <= 8; ++dy)
        rows += isRedAt(image, on + QPointF(0, dy), 0) ? 1 : 0;
    EXPECT_GE(rows, 3);
    EXPECT_LE(rows, 5);
}

TEST_F(GraphViewDrawing, NothingSizedGraphsDoNotHurt)
{
    fill(0);
    model.setMainTitle(QStringLiteral("A title much longer than such a small view could ever show in full"));
    for (const QSize& size : {QSize(1, 1), QSize(20, 400), QSize(400, 20), QSize(160, 120)}) {
        view.resize(size);
        settle();
        EXPECT_FALSE(picture().isNull());
    }
}

TEST_F(GraphViewDrawing, TheLowestAndTheHighestValueOfAPixelColumnAreBothDrawn)
{
    // Far more points than pixels, all in one column but for the ends, so that two of them stand out of it.
    constexpr int kPoints = 1024;
    const auto put = [this](int point, double frequency, double ohms) {
        model.setPoint(0, point, static_cast<float>(frequency), static_cast<float>(ohms));
    };
    for (const bool highestFirst : {true, false}) {
        put(0, 1e3, 30);
        for (int i = 1; i < kPoints - 1; ++i)
            put(i, 3e4 * (1 + 1e-6 * i), 30);
        put(kPoints - 1, 1e6, 30);
        put(highestFirst ? 300 : 700, 3e4 * (1 + 3e-4), 900);
        put(highestFirst ? 700 : 300, 3e4 * (1 + 7e-4), 1.2);
        settle();
        const QImage image = picture();
        EXPECT_TRUE(isRedAt(image, view.toPixel(3e4, 870))) << highestFirst;
        EXPECT_TRUE(isRedAt(image, view.toPixel(3e4, 1.25))) << highestFirst;
    }
}

TEST_F(GraphViewDrawing, OnlyOneLeftAxisDrawsGridLines)
{
    // Axis 0 has its lines at 1, 10, 100 and 1000 Ohm, axis 1 between them, at half decades.
    model.setWorkingAxis(1);
    model.setYAxisLabel(QStringLiteral("Modulus of Admittance - Siemens"));
    model.setYAxisScaleControl(graph::ScaleLogarithmic);
    model.setManualScaleControlY(graph::ScaleManual);
    model.setManualMinY(std::sqrt(10.0));
    model.setManualMaxY(std::sqrt(10.0) * 1000);
    model.setTickColor(0x0000FF);
    show(10);
    settle();
    ASSERT_TRUE(plot().valueAxis(0).visible());
    ASSERT_TRUE(plot().valueAxis(1).visible());
    const QImage image = picture();
    // Between the upright lines, where nothing else is red.
    const double x = (view.toPixel(1e4, 1).x() + view.toPixel(2e4, 1).x()) / 2;
    EXPECT_TRUE(isRedAt(image, QPointF(x, view.toPixel(1e3, 10, 0).y())));
    EXPECT_TRUE(isRedAt(image, QPointF(x, view.toPixel(1e3, 100, 0).y())));
    EXPECT_FALSE(isRedAt(image, QPointF(x, view.toPixel(1e3, 10, 1).y())));
    EXPECT_FALSE(isRedAt(image, QPointF(x, view.toPixel(1e3, 100, 1).y())));
}

TEST_F(GraphViewDrawing, ATitleOfManyLinesLeavesRoomForTheCurves)
{
    model.setMainTitle(QStringLiteral("line\n").repeated(5000));
    model.setSubTitle(QStringLiteral("line\n").repeated(5000));
    settle();
    EXPECT_GT(view.plotArea().height(), 200);
    EXPECT_LT(view.plotArea().bottom(), view.height());
}
