// SPDX-License-Identifier: GPL-3.0-or-later
#include "GraphFixture.h"

#include "controls/graph/ui/GraphPicture.h"
#include "controls/graph/ui/MetafileDevice.h"
#include "controls/graph/ui/MetafileGeometry.h"
#include "controls/graph/ui/MetafileReader.h"

#include <QPainter>
#include <QPainterPath>

#include <functional>
#include <limits>

namespace {

MetafileReader drawn(const std::function<void(QPainter&)>& scene, const QSize& extent = QSize(1000, 800))
{
    MetafileDevice device(extent, 1440);
    {
        QPainter painter(&device);
        scene(painter);
    }
    MetafileReader reader(device.bytes());
    EXPECT_EQ(reader.problem, QString());
    return reader;
}

double lengthOf(const QList<QPoint>& line)
{
    double length = 0;
    for (qsizetype i = 1; i < line.size(); ++i)
        length += std::hypot(line[i].x() - line[i - 1].x(), line[i].y() - line[i - 1].y());
    return length;
}

class MetafileOfAGraph : public GraphFixture
{
protected:
    MetafileOfAGraph()
    {
        for (int i = 0; i < 200; ++i)
            model.setPoint(0, i, static_cast<float>(1000 + 4000 * i),
                           static_cast<float>(100 + 50 * std::sin(i / 20.0)));
        model.setMainTitle(QStringLiteral("A title"));
        model.PEactions(graph::Reinitialise);
        settle();
    }
    MetafileReader reader(int width, int height)
    {
        const ValueOr<QByteArray> bytes = graph::metafileBytes(model, QSize(width, height));
        EXPECT_TRUE(bytes.ok());
        MetafileReader read(bytes.ok() ? bytes.value() : QByteArray());
        EXPECT_EQ(read.problem, QString());
        return read;
    }
};

} // namespace

TEST(Metafile, ALineKeepsItsEndsWidthAndColour)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        painter.setPen(QPen(QColor(10, 20, 30), 7, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        painter.drawLine(QPointF(10, 20), QPointF(300.4, 399.6));
    });
    EXPECT_EQ(read.bounds, QRect(0, 0, 1000, 800));
    EXPECT_EQ(read.unitsPerInch, 1440);
    ASSERT_EQ(read.lines.size(), 1U);
    EXPECT_EQ(read.lines[0].points, (QList<QPoint>{{10, 20}, {300, 400}}));
    EXPECT_EQ(read.lines[0].pen.width, 7);
    EXPECT_EQ(read.lines[0].pen.style, 0x0200);
    EXPECT_EQ(read.lines[0].pen.colour, 0x1E140AU);
    EXPECT_FALSE(read.lines[0].clip);
}

TEST(Metafile, ThePaintersScaleAndTurnReachLinesAndTexts)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(20);
    font.setBold(true);
    const MetafileReader read = drawn([&font](QPainter& painter) {
        painter.scale(10, 10);
        painter.setFont(font);
        painter.translate(20, 40);
        painter.rotate(-90);
        painter.setPen(QPen(Qt::red, 1.5));
        painter.drawLine(QPointF(0, 0), QPointF(10, 0));
        painter.drawText(QPointF(0, 0), QStringLiteral("Up"));
    });
    ASSERT_EQ(read.lines.size(), 1U);
    EXPECT_EQ(read.lines[0].points, (QList<QPoint>{{200, 400}, {200, 300}}));
    EXPECT_EQ(read.lines[0].pen.width, 15);
    ASSERT_EQ(read.texts.size(), 1U);
    const MetafileReader::Text& text = read.texts[0];
    EXPECT_EQ(text.letters, "Up");
    EXPECT_EQ(text.origin, QPoint(200, 400));
    EXPECT_EQ(text.escapement, 900);
    EXPECT_EQ(text.height, 200);
    EXPECT_EQ(text.weight, 700);
    EXPECT_EQ(text.face, "DejaVu Sans");
    EXPECT_EQ(text.colour, 0x0000FFU);
}

TEST(Metafile, TheLettersOfATextStandWhereTheProgramHasThem)
{
    QFont font;
    font.setPixelSize(100);
    const QString text = QStringLiteral("Frequency - Hz");
    const MetafileReader read = drawn([&](QPainter& painter) {
        painter.setFont(font);
        painter.drawText(QPointF(5, 300), text);
    });
    ASSERT_EQ(read.texts.size(), 1U);
    ASSERT_EQ(read.texts[0].advances.size(), text.size());
    int whole = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        whole += read.texts[0].advances[i];
        EXPECT_NEAR(whole, QFontMetricsF(font).horizontalAdvance(text.left(i + 1)), 1) << i;
    }
}

TEST(Metafile, LettersThatTheFormatHasAreTextAndOthersAreOutlines)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        painter.drawText(QPointF(50, 100), QStringLiteral("\u22125 \u00b0C \u00b5 \u2026"));
        painter.drawText(QPointF(50, 200), QStringLiteral("\u03a9"));
    });
    ASSERT_EQ(read.texts.size(), 1U);
    EXPECT_EQ(read.texts[0].letters, "\x96"
                                     "5 \xb0"
                                     "C \xb5 \x85");
    ASSERT_EQ(read.areas.size(), 1U);
    EXPECT_GE(read.areas[0].rings[0].size(), 8);
}

TEST(Metafile, DashesAreLinesOfTheirOwnAsLongAsThePatternSays)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        QPen pen(Qt::black, 2, Qt::SolidLine, Qt::FlatCap);
        pen.setDashPattern({8, 3});
        painter.setPen(pen);
        painter.drawLine(0, 100, 220, 100);
    });
    ASSERT_EQ(read.lines.size(), 10U);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(lengthOf(read.lines[i].points), 16) << i;
        EXPECT_EQ(read.lines[i].points.first().x(), static_cast<int>(22 * i));
        EXPECT_EQ(read.lines[i].pen.style & 0xF, 0) << "the dash itself is drawn through";
    }
}

TEST(Metafile, DashesRunOnThroughTheCornersOfALine)
{
    const std::vector<metafile::Line> dashes =
        metafile::dashed({QPointF(0, 0), QPointF(5, 0), QPointF(5, 15)}, {10, 5}, 0);
    ASSERT_EQ(dashes.size(), 2U);
    EXPECT_EQ(dashes[0], (metafile::Line{QPointF(0, 0), QPointF(5, 0), QPointF(5, 5)}));
    EXPECT_EQ(dashes[1], (metafile::Line{QPointF(5, 10), QPointF(5, 15)}));
    EXPECT_EQ(metafile::dashed({QPointF(0, 0), QPointF(5, 0)}, {0, 0}, 0).size(), 1U) << "no pattern: one line";
    EXPECT_EQ(metafile::dashed({QPointF(0, 0), QPointF(10, 0)}, {4, 4}, 6)[0].front(), QPointF(2, 0));
}

TEST(Metafile, AClipHoldsForWhatIsDrawnUnderItAndNoLonger)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        painter.drawLine(0, 0, 10, 10);
        painter.save();
        painter.scale(2, 2);
        painter.setClipRect(QRectF(10, 20, 30, 40));
        painter.drawLine(0, 0, 10, 10);
        painter.setClipRect(QRectF(0, 0, 20, 400), Qt::IntersectClip);
        painter.drawLine(0, 0, 10, 10);
        painter.restore();
        painter.drawLine(0, 0, 10, 10);
    });
    ASSERT_EQ(read.lines.size(), 4U);
    EXPECT_FALSE(read.lines[0].clip);
    EXPECT_EQ(read.lines[1].clip, QRect(20, 40, 60, 80));
    EXPECT_EQ(read.lines[2].clip, QRect(20, 40, 20, 80));
    EXPECT_FALSE(read.lines[3].clip);
}

TEST(Metafile, AnAreaIsFilledWithoutOutlineAndItsOutlineIsALine)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        painter.setPen(QPen(Qt::blue, 3));
        painter.setBrush(Qt::yellow);
        painter.drawRect(QRectF(10, 10, 100, 50));
    });
    ASSERT_EQ(read.areas.size(), 1U);
    EXPECT_EQ(read.areas[0].colour, 0x00FFFFU);
    ASSERT_EQ(read.lines.size(), 1U);
    EXPECT_EQ(read.lines[0].points.size(), 5);
    EXPECT_EQ(read.lines[0].points.first(), read.lines[0].points.last());
    EXPECT_EQ(read.lines[0].pen.colour, 0xFF0000U);
}

TEST(Metafile, AHoleInAnAreaStaysAHole)
{
    QPainterPath ring;
    ring.addRect(0, 0, 100, 100);
    ring.addRect(25, 25, 50, 50);
    const MetafileReader read = drawn([&ring](QPainter& painter) { painter.fillPath(ring, Qt::black); });
    ASSERT_EQ(read.areas.size(), 1U);
    EXPECT_EQ(read.areas[0].rings.size(), 2);
    EXPECT_EQ(read.areas[0].fillMode, 1);
}

TEST(Metafile, ColoursThatLetPaperThroughAreMixedWithIt)
{
    const MetafileReader read =
        drawn([](QPainter& painter) { painter.fillRect(QRectF(0, 0, 10, 10), QColor(0, 0, 0, 51)); });
    ASSERT_EQ(read.areas.size(), 1U);
    EXPECT_EQ(read.areas[0].colour, 0xCCCCCCU);
}

TEST(Metafile, WhatLiesFarOutsideKeepsItsDirectionInside)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        painter.drawLine(QPointF(-1e9, -1e9), QPointF(1e9, 1e9));
        const QPointF line[] = {QPointF(0, 0), QPointF(std::numeric_limits<double>::quiet_NaN(), 5), QPointF(9, 9),
                                QPointF(10, 20)};
        painter.drawPolyline(line, 4);
        const QPointF area[] = {QPointF(-1e9, 100), QPointF(1e9, 100), QPointF(1e9, 1e9), QPointF(-1e9, 1e9)};
        painter.setBrush(Qt::black);
        painter.setPen(Qt::NoPen);
        painter.drawPolygon(area, 4);
    });
    ASSERT_EQ(read.lines.size(), 2U);
    for (const QPoint& point : read.lines[0].points)
        EXPECT_EQ(point.x(), point.y());
    EXPECT_EQ(read.lines[1].points, (QList<QPoint>{{9, 9}, {10, 20}})) << "a point that is none interrupts the line";
    ASSERT_EQ(read.areas.size(), 1U);
    int top = 32767;
    for (const QPoint& point : read.areas[0].rings[0])
        top = std::min(top, point.y());
    EXPECT_EQ(top, 100);
}

TEST(Metafile, PicturesAreLeftOut)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        painter.drawImage(0, 0, image);
        painter.drawPixmap(0, 0, QPixmap::fromImage(image));
        painter.drawTiledPixmap(0, 0, 20, 20, QPixmap::fromImage(image));
    });
    EXPECT_TRUE(read.lines.empty() && read.areas.empty() && read.texts.empty());
}

TEST(Metafile, MorePensThanAFileShouldHoldAreGivenBack)
{
    const MetafileReader read = drawn([](QPainter& painter) {
        for (int i = 0; i < 3000; ++i) {
            painter.setPen(QPen(QColor(i % 256, i / 256, 7), 2));
            painter.setBrush(QColor(7, i % 256, i / 256));
            painter.drawRect(i % 100, 10, 50, 50);
        }
    });
    EXPECT_EQ(read.lines.size(), 3000U);
    ASSERT_EQ(read.areas.size(), 3000U);
    EXPECT_EQ(read.areas[2999].colour, static_cast<unsigned>(7 | (2999 % 256) << 8 | (2999 / 256) << 16));
    EXPECT_EQ(read.lines[2999].pen.colour, static_cast<unsigned>((2999 % 256) | (2999 / 256) << 8 | 7 << 16));
}

TEST(Metafile, ALineOfMorePointsThanARecordHoldsGoesOnInTheNext)
{
    QPolygonF line;
    for (int i = 0; i < 40000; ++i)
        line.append(QPointF(i % 1000, (i / 50) % 800));
    const MetafileReader read = drawn([&line](QPainter& painter) { painter.drawPolyline(line); });
    ASSERT_GT(read.lines.size(), 1U);
    qsizetype points = 0;
    for (std::size_t i = 0; i < read.lines.size(); ++i) {
        points += read.lines[i].points.size() - (i == 0 ? 0 : 1);
        if (i > 0) {
            EXPECT_EQ(read.lines[i].points.first(), read.lines[i - 1].points.last());
        }
    }
    EXPECT_EQ(points, 40000);
}

TEST_F(MetafileOfAGraph, HasTheSizeAskedForInHundredthsOfAMillimetre)
{
    const MetafileReader read = reader(20000, 10000);
    EXPECT_EQ(read.bounds, QRect(0, 0, 20000, 10000));
    EXPECT_EQ(read.unitsPerInch, 2540);
    EXPECT_FALSE(graph::metafileBytes(model, QSize(20001, 100)).ok());
    EXPECT_FALSE(graph::metafileBytes(model, QSize(100, 15)).ok());
}

TEST_F(MetafileOfAGraph, HoldsTheTraceWithinItsFrameAndTheTexts)
{
    const MetafileReader read = reader(20000, 20000);
    const auto trace = std::ranges::find_if(
        read.lines, [](const auto& line) { return line.pen.colour == 0x0000FFU && line.points.size() == 200; });
    ASSERT_NE(trace, read.lines.end()) << "every point of the trace";
    ASSERT_TRUE(trace->clip.has_value());
    const auto hasText = [&read](const char* text) {
        return std::ranges::any_of(read.texts, [text](const auto& one) { return one.letters == text; });
    };
    EXPECT_TRUE(hasText("A title"));
    EXPECT_TRUE(hasText("Frequency - Hz"));
    EXPECT_TRUE(hasText("Modulus of Impedance - Ohms"));
    const auto turned = std::ranges::count_if(read.texts, [](const auto& one) { return one.escapement != 0; });
    EXPECT_EQ(turned, 1) << "the title of the value axis";
}

TEST_F(MetafileOfAGraph, StandsWhereThePngHasIt)
{
    constexpr int kSide = 1024;
    const MetafileReader read = reader(20000, 20000);
    const QImage png = graph::pictureImage(model, kSide, kSide);
    int seen = 0;
    for (const MetafileReader::Line& line : read.lines) {
        if (line.pen.colour != 0x0000FFU || line.points.size() < 3)
            continue;
        for (const QPoint& point : line.points) {
            const QPoint at(static_cast<int>(std::lround(point.x() * kSide / 20000.0)),
                            static_cast<int>(std::lround(point.y() * kSide / 20000.0)));
            if (!png.rect().contains(at) || !line.clip->contains(point))
                continue;
            bool near = false;
            for (int dy = -2; dy <= 2; ++dy) {
                for (int dx = -2; dx <= 2; ++dx) {
                    const QPoint place = at + QPoint(dx, dy);
                    const QColor colour = png.rect().contains(place) ? png.pixelColor(place) : QColor();
                    near = near || (colour.isValid() && colour.red() > 150 && colour.green() < 120);
                }
            }
            EXPECT_TRUE(near) << at.x() << ", " << at.y();
            ++seen;
        }
    }
    EXPECT_GT(seen, 150);
}
