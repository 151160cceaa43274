// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ImageExport.h"

#include "prefs/Preferences.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

namespace ImageExport {
namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(ImageExport)
};

constexpr std::array<int, 6> kSides{320, 640, 800, 1024, 1280, 1600};
/// Side of a metafile at 100 per cent, hundredths of a millimetre.
constexpr int kMetafileSide = 20000;

int part(int side, int percent)
{
    constexpr double kWhole = 100;
    return static_cast<int>(std::lround(side * percent / kWhole));
}

} // namespace

Choice stored(const Preferences& preferences, const options::ImageOptions& where)
{
    const auto aspect = [&preferences](const options::Option<options::Integer>& option) {
        return std::clamp(static_cast<int>(preferences.value(option)), kLeastAspect, kMostAspect);
    };
    const int format = preferences.value(where.type);
    const int resolution = preferences.value(where.resolution);
    return {format >= Jpeg && format <= Bitmap ? format : -1, side(resolution) ? resolution : -1, aspect(where.xAspect),
            aspect(where.yAspect)};
}

std::optional<int> side(int resolution)
{
    if (resolution < 0 || resolution >= static_cast<int>(kSides.size()))
        return std::nullopt;
    return kSides[static_cast<std::size_t>(resolution)];
}

std::optional<QSize> size(int format, const Choice& choice)
{
    const std::optional<int> pixels = side(choice.resolution);
    if (!pixels || format < Jpeg || format > Bitmap)
        return std::nullopt;
    const int whole = format == Metafile ? kMetafileSide : *pixels;
    return QSize(part(whole, choice.xAspect), part(whole, choice.yAspect));
}

QString extension(int format)
{
    switch (format) {
    case Jpeg:
        return QStringLiteral(".jpg");
    case Bitmap:
        return QStringLiteral(".bmp");
    default:
        return QStringLiteral(".wmf");
    }
}

QString filter(int format)
{
    switch (format) {
    case Jpeg:
        return Texts::tr("JPEG files (*.jpg)|*.jpg");
    case Bitmap:
        return Texts::tr("Bitmap files (*.bmp)|*.bmp");
    default:
        return Texts::tr("Meta files (*.wmf)|*.wmf");
    }
}

QString completed(const QString& fileName, int format)
{
    return fileName.left(fileName.indexOf(QLatin1Char('.'))) + extension(format);
}

} // namespace ImageExport
