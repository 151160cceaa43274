// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/MetafileRecords.h"

#include <algorithm>

namespace {

enum Function : std::uint16_t
{
    EndOfFile = 0x0000,
    SaveDC = 0x001E,
    SetBkMode = 0x0102,
    SetMapMode = 0x0103,
    SetPolyFillMode = 0x0106,
    RestoreDC = 0x0127,
    SelectObject = 0x012D,
    SetTextAlign = 0x012E,
    DeleteObject = 0x01F0,
    SetTextColour = 0x0209,
    SetWindowOrg = 0x020B,
    SetWindowExt = 0x020C,
    LineTo = 0x0213,
    MoveTo = 0x0214,
    CreatePenIndirect = 0x02FA,
    CreateFontIndirect = 0x02FB,
    CreateBrushIndirect = 0x02FC,
    Polygon = 0x0324,
    Polyline = 0x0325,
    IntersectClipRect = 0x0416,
    PolyPolygon = 0x0538,
    ExtTextOut = 0x0A32
};

constexpr int kAnisotropic = 8;
constexpr int kTransparent = 1;
constexpr int kBaseLine = 24;
constexpr int kAlternate = 1;
constexpr int kWinding = 2;
constexpr int kNoPen = 5;
constexpr int kBoldWeight = 900;
constexpr int kFaceBytes = 32;
constexpr std::size_t kMostPoints = 16000;
constexpr qsizetype kMostObjects = 512;

/// Little-endian words.
class Words
{
public:
    Words& word(int value)
    {
        m_bytes.append(static_cast<char>(value & 0xFF));
        m_bytes.append(static_cast<char>((value >> 8) & 0xFF));
        return *this;
    }
    Words& twoWords(std::uint32_t value)
    {
        return word(static_cast<int>(value & 0xFFFFU)).word(static_cast<int>(value >> 16U));
    }
    Words& colour(QRgb value) { return word(qRed(value) | (qGreen(value) << 8)).word(qBlue(value)); }
    Words& points(std::span<const QPoint> points)
    {
        for (const QPoint& point : points)
            word(point.x()).word(point.y());
        return *this;
    }
    /// Filled up to whole words.
    Words& text(const QByteArray& bytes)
    {
        m_bytes.append(bytes);
        if (bytes.size() % 2 != 0)
            m_bytes.append('\0');
        return *this;
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

std::vector<QPoint> thinned(const std::vector<QPoint>& points)
{
    if (points.size() <= kMostPoints)
        return points;
    std::vector<QPoint> kept;
    const std::size_t step = points.size() / kMostPoints + 1;
    for (std::size_t i = 0; i < points.size(); i += step)
        kept.push_back(points[i]);
    return kept;
}

} // namespace

MetafileRecords::MetafileRecords(const QSize& extent, int unitsPerInch)
    : m_extent(extent)
    , m_unitsPerInch(unitsPerInch)
{
    record(SetMapMode, Words().word(kAnisotropic).bytes());
    record(SetWindowOrg, Words().word(0).word(0).bytes());
    record(SetWindowExt, Words().word(extent.height()).word(extent.width()).bytes());
    record(SetBkMode, Words().word(kTransparent).bytes());
    record(SetTextAlign, Words().word(kBaseLine).bytes());
    beginState();
}

void MetafileRecords::record(std::uint16_t function, const QByteArray& parameters)
{
    const auto words = static_cast<std::uint32_t>(3 + parameters.size() / 2);
    m_records.append(Words().twoWords(words).word(function).bytes());
    m_records.append(parameters);
    m_longest = std::max(m_longest, words);
}

// A clip can only be made smaller: what was before it is saved and brought back, with nothing selected.
void MetafileRecords::beginState()
{
    record(SaveDC, {});
    m_selected = {};
    if (!m_clip)
        return;
    record(IntersectClipRect, Words()
                                  .word(m_clip->top() + m_clip->height())
                                  .word(m_clip->left() + m_clip->width())
                                  .word(m_clip->top())
                                  .word(m_clip->left())
                                  .bytes());
}

void MetafileRecords::setClip(const std::optional<QRect>& clip)
{
    if (clip == m_clip)
        return;
    record(RestoreDC, Words().word(-1).bytes());
    m_clip = clip;
    beginState();
}

void MetafileRecords::makeRoom()
{
    if (m_objects.size() < kMostObjects)
        return;
    record(RestoreDC, Words().word(-1).bytes());
    for (int index = 0; index < m_objects.size(); ++index)
        record(DeleteObject, Words().word(index).bytes());
    m_objects.clear();
    beginState();
}

int MetafileRecords::object(std::uint16_t function, const QByteArray& parameters)
{
    const QByteArray key = Words().word(function).bytes() + parameters;
    if (const auto known = m_objects.constFind(key); known != m_objects.constEnd())
        return *known;
    // Readers give an object the lowest number that is free.
    const auto index = static_cast<int>(m_objects.size());
    record(function, parameters);
    m_objects.insert(key, index);
    m_mostObjects = std::max(m_mostObjects, index + 1);
    return index;
}

void MetafileRecords::select(int& selected, int object)
{
    if (selected == object)
        return;
    record(SelectObject, Words().word(object).bytes());
    selected = object;
}

void MetafileRecords::selectPen(const Pen& pen)
{
    const int index =
        object(CreatePenIndirect, Words().word(pen.style).word(pen.width).word(0).colour(pen.colour).bytes());
    select(m_selected.pen, index);
}

void MetafileRecords::selectNoPen()
{
    const int index = object(CreatePenIndirect, Words().word(kNoPen).word(0).word(0).colour(0).bytes());
    select(m_selected.pen, index);
}

void MetafileRecords::selectBrush(QRgb colour)
{
    const int index = object(CreateBrushIndirect, Words().word(0).colour(colour).word(0).bytes());
    select(m_selected.brush, index);
}

void MetafileRecords::polyline(std::span<const QPoint> points, const Pen& pen)
{
    makeRoom();
    selectPen(pen);
    if (points.size() == 2) { // as a polyline some readers leave it out
        record(MoveTo, Words().word(points[0].y()).word(points[0].x()).bytes());
        record(LineTo, Words().word(points[1].y()).word(points[1].x()).bytes());
        return;
    }
    while (points.size() > 1) {
        const std::size_t count = std::min(points.size(), kMostPoints);
        record(Polyline, Words().word(static_cast<int>(count)).points(points.first(count)).bytes());
        points = points.subspan(count - 1);
    }
}

void MetafileRecords::polygons(const std::vector<std::vector<QPoint>>& areas, QRgb colour, bool winding)
{
    std::vector<std::vector<QPoint>> kept;
    for (const std::vector<QPoint>& area : areas) {
        if (area.size() > 2)
            kept.push_back(thinned(area));
    }
    if (kept.empty())
        return;
    makeRoom();
    selectNoPen();
    selectBrush(colour);
    if (const int mode = winding ? kWinding : kAlternate; m_selected.fillMode != mode) {
        record(SetPolyFillMode, Words().word(mode).bytes());
        m_selected.fillMode = mode;
    }
    if (kept.size() == 1) {
        record(Polygon, Words().word(static_cast<int>(kept[0].size())).points(kept[0]).bytes());
        return;
    }
    kept.resize(std::min(kept.size(), kMostPoints));
    Words words;
    words.word(static_cast<int>(kept.size()));
    for (const std::vector<QPoint>& area : kept)
        words.word(static_cast<int>(area.size()));
    for (const std::vector<QPoint>& area : kept)
        words.points(area);
    record(PolyPolygon, words.bytes());
}

void MetafileRecords::text(const QPoint& origin, const QByteArray& ansi, std::span<const std::int16_t> advances,
                           const Font& font, QRgb colour)
{
    makeRoom();
    const int weight = std::clamp(font.weight, 0, kBoldWeight);
    const int index =
        object(CreateFontIndirect, Words()
                                       .word(-font.height)
                                       .word(0)
                                       .word(font.escapement)
                                       .word(font.escapement)
                                       .word(weight)
                                       .word((font.italic ? 1 : 0) | (font.underline ? 0x100 : 0))
                                       .word(font.strikeOut ? 1 : 0)
                                       .word(0)
                                       .word(0)
                                       .text(font.face.left(kFaceBytes - 1).leftJustified(kFaceBytes, '\0'))
                                       .bytes());
    select(m_selected.font, index);
    if (m_selected.textColour != (colour & RGB_MASK)) {
        record(SetTextColour, Words().colour(colour).bytes());
        m_selected.textColour = colour & RGB_MASK;
    }
    Words words;
    words.word(origin.y()).word(origin.x()).word(static_cast<int>(ansi.size())).word(0).text(ansi);
    for (const std::int16_t advance : advances)
        words.word(advance);
    record(ExtTextOut, words.bytes());
}

QByteArray MetafileRecords::finish()
{
    record(RestoreDC, Words().word(-1).bytes());
    for (int index = 0; index < m_objects.size(); ++index)
        record(DeleteObject, Words().word(index).bytes());
    record(EndOfFile, {});

    constexpr int kHeaderWords = 9;
    constexpr int kVersion = 0x0300;
    const QByteArray header = Words()
                                  .word(1)
                                  .word(kHeaderWords)
                                  .word(kVersion)
                                  .twoWords(kHeaderWords + static_cast<std::uint32_t>(m_records.size() / 2))
                                  .word(m_mostObjects)
                                  .twoWords(m_longest)
                                  .word(0)
                                  .bytes();
    constexpr std::uint32_t kPlaceable = 0x9AC6CDD7;
    Words placeable;
    placeable.twoWords(kPlaceable).word(0).word(0).word(0).word(m_extent.width()).word(m_extent.height());
    placeable.word(m_unitsPerInch).twoWords(0);
    int sum = 0;
    for (qsizetype i = 0; i + 1 < placeable.bytes().size(); i += 2)
        sum ^= static_cast<unsigned char>(placeable.bytes()[i]) | static_cast<unsigned char>(placeable.bytes()[i + 1])
                                                                      << 8;
    placeable.word(sum);
    return placeable.bytes() + header + m_records;
}
