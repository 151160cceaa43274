// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphPicture.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/MetafileDevice.h"
#include "files/SafeFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPdfWriter>
#include <QPicture>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace graph {
namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("GraphPicture", text);
}

// Laid out as a window of a usual size, then enlarged: a picture twice as large shows the same, twice as fine.
double pictureScale(double width, double height)
{
    return std::max(0.75, std::sqrt(width * height) / 900);
}

void drawPlot(const GraphModel& model, QCPPainter& painter, QSize layoutSize)
{
    GraphPlot plot(model, GraphPlot::Look::Picture);
    plot.setViewport(QRect(QPoint(0, 0), layoutSize));
    plot.prepare();
    plot.toPainter(&painter, layoutSize.width(), layoutSize.height());
}

QSize layoutSizeOf(double width, double height, double scale)
{
    return {std::max(1, static_cast<int>(std::lround(width / scale))),
            std::max(1, static_cast<int>(std::lround(height / scale)))};
}

bool isUsableSize(int width, int height)
{
    return std::min(width, height) >= 16 && std::max(width, height) <= kMaxPictureSide;
}

void drawScaled(const GraphModel& model, QPaintDevice& device, int width, int height, QCPPainter::PainterModes modes)
{
    const double scale = pictureScale(width, height);
    const QSize layoutSize = layoutSizeOf(width, height, scale);
    QCPPainter painter(&device);
    painter.setModes(modes);
    painter.scale(static_cast<double>(width) / layoutSize.width(), static_cast<double>(height) / layoutSize.height());
    drawPlot(model, painter, layoutSize);
}

Outcome encodeImage(const QImage& image, PictureFormat format, QByteArray& content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format == PictureFormat::Png ? "png" : format == PictureFormat::Jpeg ? "jpg" : "bmp");
    if (format == PictureFormat::Jpeg)
        writer.setQuality(92);
    if (writer.write(image))
        return Outcome::success();
    return Outcome::failure(tr("The picture could not be made: %1").arg(writer.errorString()));
}

Outcome refusedSize(int width, int height)
{
    return Outcome::failure(tr("A picture of %1 by %2 pixels cannot be made").arg(width).arg(height));
}

QByteArray metafileOf(const GraphModel& model, const QSize& extent, int unitsPerInch)
{
    MetafileDevice device(extent, unitsPerInch);
    drawScaled(model, device, extent.width(), extent.height(), QCPPainter::pmVectorized | QCPPainter::pmNoCaching);
    return device.bytes();
}

/// Pixels of 1/96 inch, each of as many units as the file has room for, up to the usual 1440 an inch.
QByteArray metafileOfPixels(const GraphModel& model, int width, int height)
{
    constexpr int kUnitsPerPixel = 15;
    constexpr int kPixelsPerInch = 96;
    const int units = std::clamp(MetafileDevice::kLargestExtent / std::max(width, height), 1, kUnitsPerPixel);
    return metafileOf(model, QSize(width, height) * units, units * kPixelsPerInch);
}

} // namespace

ValueOr<QByteArray> metafileBytes(const GraphModel& model, const QSize& hundredthsOfMillimetre)
{
    constexpr int kUnitsPerInch = 2540;
    if (!isUsableSize(hundredthsOfMillimetre.width(), hundredthsOfMillimetre.height()))
        return refusedSize(hundredthsOfMillimetre.width(), hundredthsOfMillimetre.height());
    return metafileOf(model, hundredthsOfMillimetre, kUnitsPerInch);
}

QImage pictureImage(const GraphModel& model, int width, int height)
{
    if (!isUsableSize(width, height))
        return QImage();
    QImage image(width, height, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.fill(Qt::white);
    drawScaled(model, image, width, height, QCPPainter::pmNoCaching);
    return image;
}

ValueOr<QByteArray> pictureBytes(const GraphModel& model, PictureFormat format, int width, int height)
{
    if (!isUsableSize(width, height))
        return refusedSize(width, height);
    if (format == PictureFormat::Wmf)
        return metafileOfPixels(model, width, height);
    QByteArray content;
    const QCPPainter::PainterModes vector = QCPPainter::pmVectorized | QCPPainter::pmNoCaching;
    if (format == PictureFormat::Svg) {
        QBuffer buffer(&content);
        buffer.open(QIODevice::WriteOnly);
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        generator.setResolution(96);
        generator.setSize(QSize(width, height));
        generator.setViewBox(QRect(0, 0, width, height));
        generator.setTitle(model.shownProperties().MainTitle);
        drawScaled(model, generator, width, height, vector);
    } else if (format == PictureFormat::Pdf) {
        QBuffer buffer(&content);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setResolution(96);
        writer.setPageSize(
            QPageSize(QSizeF(width * 0.75, height * 0.75), QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setTitle(model.shownProperties().MainTitle);
        writer.setCreator(QCoreApplication::applicationName());
        drawScaled(model, writer, width, height, vector);
    } else {
        const QImage image = pictureImage(model, width, height);
        if (image.isNull())
            return Outcome::failure(
                tr("There is not enough memory for a picture of %1 by %2 pixels").arg(width).arg(height));
        if (Outcome encoded = encodeImage(image, format, content); !encoded)
            return encoded;
    }
    return content;
}

Outcome savePicture(const GraphModel& model, const QString& fileName, PictureFormat format, int width, int height)
{
    const ValueOr<QByteArray> content = pictureBytes(model, format, width, height);
    return content ? files::writeFile(fileName, content.value()) : Outcome::failure(content.sentence());
}

// The library paints with a painter of its own class, so the graph is recorded and played into the caller's.
void paintPicture(const GraphModel& model, QPainter& painter, const QRectF& target, double unitsPerPixel)
{
    if (!painter.isActive() || !(target.width() >= 1) || !(target.height() >= 1))
        return;
    const double dpi = painter.device() != nullptr ? painter.device()->logicalDpiX() : 96;
    const double scale = unitsPerPixel > 0 ? unitsPerPixel
                         : dpi > 120       ? dpi / 96
                                           : pictureScale(target.width(), target.height());
    const QSize layoutSize = layoutSizeOf(target.width(), target.height(), scale);
    QPicture picture;
    {
        QCPPainter recorder(&picture);
        recorder.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching);
        drawPlot(model, recorder, layoutSize);
    }
    // Playing a picture enlarges it by the resolution of the device, which the scale already holds.
    const double enlarged = dpi / picture.logicalDpiX();
    painter.save();
    painter.translate(target.topLeft());
    painter.scale(target.width() / layoutSize.width(), target.height() / layoutSize.height());
    painter.setClipRect(QRectF(QPointF(0, 0), QSizeF(layoutSize)), Qt::IntersectClip);
    painter.scale(1 / enlarged, 1 / enlarged);
    painter.drawPicture(0, 0, picture);
    painter.restore();
}

} // namespace graph
