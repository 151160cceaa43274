// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>

#include <memory>

class MetafilePaintEngine;

/// A paint device whose drawing becomes a placeable Windows metafile: lines, areas and texts as records, no bitmap.
///
/// Colours are opaque (what shines through is mixed with white paper), patterns and gradients one colour, pictures left
/// out. A clip that is no rectangle counts by the rectangle around it. Dashes are lines of their own. Texts are records
/// in code page 1252 with the place of each letter; what has other letters is drawn as outlines.
class MetafileDevice : public QPaintDevice
{
public:
    static constexpr int kLargestExtent = 32767;

    /// One unit of the file is one of the painter; extent from 1 to kLargestExtent each way.
    MetafileDevice(const QSize& extent, int unitsPerInch);
    ~MetafileDevice() override;

    QPaintEngine* paintEngine() const override;
    /// The file, once the painter has ended; empty before.
    QByteArray bytes() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSize m_extent;
    std::unique_ptr<MetafilePaintEngine> m_engine;
};
