// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Options.h"

#include <QSize>
#include <QString>

#include <optional>

class Preferences;

/// What the image pages offer and how big their pictures are; the drawing is PictureExport's.
namespace ImageExport {

/// The choices of combFormat; scripts use the numbers.
enum Format
{
    Jpeg = 0,
    Metafile = 1,
    Bitmap = 2
};

struct Choice
{
    int format = Bitmap;
    int resolution = 0; ///< of combResolution
    int xAspect = 100;  ///< per cent
    int yAspect = 100;
};

inline constexpr int kLeastAspect = 10;
inline constexpr int kMostAspect = 100;

/// As the image page shows it: aspects within its sliders, format and resolution -1 where they are none of its choices.
Choice stored(const Preferences& preferences, const options::ImageOptions& where);

/// Sides of the squares of combResolution, in pixels.
std::optional<int> side(int resolution);

/// Pixels, of a metafile hundredths of a millimetre; nothing where nothing is written: a resolution that is none, even
/// for a metafile, which has no pixels, or a format that is none.
std::optional<QSize> size(int format, const Choice& choice);

/// ".jpg", ".bmp" for the bitmap and ".wmf" for everything else.
QString extension(int format);
/// For the file dialog, as "Text|pattern".
QString filter(int format);
/// Cut at its first "." anywhere, then the extension.
QString completed(const QString& fileName, int format);

} // namespace ImageExport
