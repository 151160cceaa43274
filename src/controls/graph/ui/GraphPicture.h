// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QRectF>
#include <QSize>
#include <QString>

class GraphModel;
class QImage;
class QPainter;

/// Pictures of a graph model without a window: needs a QApplication (the offscreen platform will do), never a screen.
/// A picture shows what the model shows, always on light paper.
namespace graph {

enum class PictureFormat
{
    Png,
    Jpeg,
    Bmp,
    Svg,
    Pdf,
    Wmf ///< placeable Windows metafile
};

/// Sizes beyond this are refused, as is a side below 16.
inline constexpr int kMaxPictureSide = 20000;

/// A picture of width x height pixels (for the vector formats units of 1/96 inch) as the bytes of its file. Texts and
/// lines grow with the picture.
ValueOr<QByteArray> pictureBytes(const GraphModel& model, PictureFormat format, int width, int height);

/// A Windows metafile of that size in hundredths of a millimetre.
ValueOr<QByteArray> metafileBytes(const GraphModel& model, const QSize& hundredthsOfMillimetre);

/// Writes those bytes to a file: the old file or the whole new one is there.
Outcome savePicture(const GraphModel& model, const QString& fileName, PictureFormat format, int width, int height);

/// The same as an image, for the clipboard; null when the size is refused.
QImage pictureImage(const GraphModel& model, int width, int height);

/// Draws the graph into a rectangle of an active painter, filling it; as vectors with every point where the device
/// takes vectors. On a printer texts have their natural size. unitsPerPixel: of the painter, for a pixel of the
/// picture; 0 chooses.
void paintPicture(const GraphModel& model, QPainter& painter, const QRectF& target, double unitsPerPixel = 0);

} // namespace graph
