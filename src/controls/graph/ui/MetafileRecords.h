// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QSize>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Writes a placeable Windows metafile, record by record. Coordinates are 16-bit units from the upper left corner;
/// callers keep them there. Records beyond what a count can hold are split (lines) or thinned (polygons).
class MetafileRecords
{
public:
    struct Pen
    {
        int style = 0; ///< cap and join
        int width = 0; ///< 0: as thin as the device can
        QRgb colour = 0;
    };
    struct Font
    {
        int height = 0;     ///< of the letters, units
        int escapement = 0; ///< of the base line, tenths of a degree against the clock
        int weight = 400;   ///< 400 regular, 700 bold
        bool italic = false, underline = false, strikeOut = false;
        QByteArray face; ///< Latin 1
    };
    // Caps and joins of a pen.
    static constexpr int kRoundCap = 0x0000, kSquareCap = 0x0100, kFlatCap = 0x0200;
    static constexpr int kRoundJoin = 0x0000, kBevelJoin = 0x1000, kMiterJoin = 0x2000;

    /// extent: from 1 to 32767 each way.
    MetafileRecords(const QSize& extent, int unitsPerInch);

    /// From here on only what lies inside is drawn; nothing: everything is.
    void setClip(const std::optional<QRect>& clip);
    void polyline(std::span<const QPoint> points, const Pen& pen);
    /// Areas without an outline, which make holes in each other as the rule says.
    void polygons(const std::vector<std::vector<QPoint>>& areas, QRgb colour, bool winding);
    /// ansi: in code page 1252. origin: left end of the base line. advances: from each letter to the next, along the
    /// base line.
    void text(const QPoint& origin, const QByteArray& ansi, std::span<const std::int16_t> advances, const Font& font,
              QRgb colour);

    /// The bytes of the file. Nothing is to be written afterwards.
    QByteArray finish();

private:
    struct Selected
    {
        int pen = -1, brush = -1, font = -1, fillMode = -1;
        std::int64_t textColour = -1;
    };

    void record(std::uint16_t function, const QByteArray& parameters);
    int object(std::uint16_t function, const QByteArray& parameters);
    void select(int& selected, int object);
    void selectPen(const Pen& pen);
    void selectNoPen();
    void selectBrush(QRgb colour);
    void beginState();
    /// For the objects of one drawing; those of earlier ones may go.
    void makeRoom();

    QSize m_extent;
    int m_unitsPerInch;
    QByteArray m_records;
    std::uint32_t m_longest = 0; ///< words of the longest record
    QHash<QByteArray, int> m_objects;
    int m_mostObjects = 0;
    Selected m_selected;
    std::optional<QRect> m_clip;
};
