// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/MetafilePaintEngine.h"

#include "controls/graph/ui/MetafileDevice.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QTextItem>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double kReach = 32000;
constexpr double kTenthsOfDegree = 1800 / M_PI;

// Gradients mean one colour each here, so none of the toolkit's stand-ins, which paint bitmaps, is wanted.
constexpr QPaintEngine::PaintEngineFeatures kFeatures = QPaintEngine::AllFeatures;

std::vector<QPoint> rounded(std::span<const QPointF> points)
{
    std::vector<QPoint> result;
    result.reserve(points.size());
    for (const QPointF& point : points)
        result.push_back(point.toPoint());
    return result;
}

std::span<const QPointF> spanOf(const QPolygonF& polygon)
{
    return {polygon.constData(), static_cast<std::size_t>(polygon.size())};
}

/// Units a painter's unit is long, on the average of both ways.
double scaleOf(const QTransform& transform)
{
    return std::sqrt(std::abs(transform.determinant()));
}

int styleOf(const QPen& pen)
{
    const int cap = pen.capStyle() == Qt::RoundCap  ? MetafileRecords::kRoundCap
                    : pen.capStyle() == Qt::FlatCap ? MetafileRecords::kFlatCap
                                                    : MetafileRecords::kSquareCap;
    const int join = pen.joinStyle() == Qt::RoundJoin   ? MetafileRecords::kRoundJoin
                     : pen.joinStyle() == Qt::BevelJoin ? MetafileRecords::kBevelJoin
                                                        : MetafileRecords::kMiterJoin;
    return cap | join;
}

/// The letter in code page 1252, where that has it; nothing elsewhere.
std::optional<char> ansiLetter(QChar letter)
{
    static constexpr std::array<std::pair<char16_t, int>, 7> kBeyondLatin1{{{0x20AC, 0x80},
                                                                            {0x2026, 0x85},
                                                                            {0x2019, 0x92},
                                                                            {0x2022, 0x95},
                                                                            {0x2013, 0x96},
                                                                            {0x2014, 0x97},
                                                                            {0x2212, 0x96}}};
    const char16_t code = letter.unicode();
    if ((code >= 0x20 && code < 0x7F) || (code >= 0xA0 && code <= 0xFF))
        return static_cast<char>(code);
    for (const auto& [unicode, ansi] : kBeyondLatin1) {
        if (unicode == code)
            return static_cast<char>(ansi);
    }
    return std::nullopt;
}

std::optional<QByteArray> ansiText(const QString& text)
{
    QByteArray ansi;
    for (const QChar letter : text) {
        const std::optional<char> byte = ansiLetter(letter);
        if (!byte)
            return std::nullopt;
        ansi.append(*byte);
    }
    return ansi;
}

std::int16_t shortOf(double value)
{
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -kReach, kReach)));
}

} // namespace

MetafilePaintEngine::MetafilePaintEngine(const QSize& extent, int unitsPerInch)
    : QPaintEngine(kFeatures)
    , m_extent(extent)
    , m_unitsPerInch(unitsPerInch)
    , m_reach(-kReach, -kReach, 2 * kReach, 2 * kReach)
    , m_records(extent, unitsPerInch)
{
    m_reach &= QRectF(-0.5 * extent.width(), -0.5 * extent.height(), 2.0 * extent.width(), 2.0 * extent.height());
}

bool MetafilePaintEngine::begin(QPaintDevice* device)
{
    Q_UNUSED(device)
    m_records = MetafileRecords(m_extent, m_unitsPerInch);
    m_bytes.clear();
    m_clipIsNew = true;
    setActive(true);
    return true;
}

bool MetafilePaintEngine::end()
{
    m_bytes = m_records.finish();
    setActive(false);
    return true;
}

void MetafilePaintEngine::updateState(const QPaintEngineState& newState)
{
    if ((newState.state() & (DirtyClipRegion | DirtyClipPath | DirtyClipEnabled)) != 0)
        m_clipIsNew = true;
}

QTransform MetafilePaintEngine::transform() const
{
    return painter()->combinedTransform();
}

QRgb MetafilePaintEngine::opaque(const QColor& colour) const
{
    const double share = std::clamp(colour.alphaF() * painter()->opacity(), 0.0, 1.0);
    const auto mixed = [share](int part) { return static_cast<int>(std::lround(255 + (part - 255) * share)); };
    const QColor rgb = colour.toRgb();
    return qRgb(mixed(rgb.red()), mixed(rgb.green()), mixed(rgb.blue()));
}

void MetafilePaintEngine::takeClip()
{
    if (!m_clipIsNew)
        return;
    m_clipIsNew = false;
    if (!painter()->hasClipping()) {
        m_records.setClip(std::nullopt);
        return;
    }
    const QRectF bounds = transform().mapRect(painter()->clipBoundingRect()) & m_reach;
    m_records.setClip(bounds.isValid()
                          ? QRect(bounds.topLeft().toPoint(), bounds.bottomRight().toPoint() - QPoint(1, 1))
                          : QRect(0, 0, 0, 0));
}

// The line is in units of the file.
void MetafilePaintEngine::stroke(std::span<const QPointF> line)
{
    const QPen pen = painter()->pen();
    if (pen.style() == Qt::NoPen || pen.brush().style() == Qt::NoBrush)
        return;
    const double scale = pen.isCosmetic() ? 1 : scaleOf(transform());
    const double width = std::clamp(pen.widthF() * scale, 0.0, kReach);
    const MetafileRecords::Pen record{styleOf(pen), static_cast<int>(std::lround(width)), opaque(pen.color())};
    QList<double> pattern;
    if (pen.style() != Qt::SolidLine) {
        const double unit = std::max(width, pen.widthF() == 0 ? scaleOf(transform()) : 1.0);
        for (const double part : pen.dashPattern())
            pattern.append(part * unit);
    }
    const double offset = pen.dashOffset() * std::max(width, 1.0);
    takeClip();
    for (const metafile::Line& part : metafile::clippedLine(line, m_reach)) {
        if (pattern.isEmpty()) {
            m_records.polyline(rounded(part), record);
            continue;
        }
        for (const metafile::Line& dash : metafile::dashed(part, pattern, offset))
            m_records.polyline(rounded(dash), record);
    }
}

// The areas are in units of the file.
void MetafilePaintEngine::fill(const QList<QPolygonF>& areas, const QColor& colour, bool winding)
{
    std::vector<std::vector<QPoint>> kept;
    for (const QPolygonF& area : areas)
        kept.push_back(rounded(spanOf(metafile::clippedPolygon(area, m_reach))));
    takeClip();
    m_records.polygons(kept, opaque(colour), winding);
}

void MetafilePaintEngine::drawPath(const QPainterPath& path)
{
    const QList<QPolygonF> lines = path.toSubpathPolygons(transform());
    if (painter()->brush().style() != Qt::NoBrush)
        fill(lines, painter()->brush().color(), path.fillRule() == Qt::WindingFill);
    for (const QPolygonF& line : lines)
        stroke(spanOf(line));
}

void MetafilePaintEngine::drawPolygon(const QPointF* points, int count, PolygonDrawMode mode)
{
    QPolygonF polygon;
    for (const QPointF& point : std::span(points, static_cast<std::size_t>(std::max(0, count))))
        polygon.append(transform().map(point));
    if (polygon.isEmpty())
        return;
    if (mode != PolylineMode) {
        if (painter()->brush().style() != Qt::NoBrush)
            fill({polygon}, painter()->brush().color(), mode == WindingMode);
        polygon.append(polygon.first());
    }
    stroke(spanOf(polygon));
}

void MetafilePaintEngine::drawPoints(const QPointF* points, int count)
{
    const QPen pen = painter()->pen();
    if (pen.style() == Qt::NoPen)
        return;
    const double scale = pen.isCosmetic() ? 1 : scaleOf(transform());
    const double radius = std::max(0.5, pen.widthF() * scale / 2);
    QList<QPolygonF> dots;
    for (const QPointF& point : std::span(points, static_cast<std::size_t>(std::max(0, count)))) {
        const QPointF centre = transform().map(point);
        QPainterPath dot;
        if (pen.capStyle() == Qt::RoundCap)
            dot.addEllipse(centre, radius, radius);
        else
            dot.addRect(QRectF(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)));
        dots.append(dot.toSubpathPolygons());
    }
    fill(dots, pen.color(), true);
}

void MetafilePaintEngine::drawTextItem(const QPointF& origin, const QTextItem& item)
{
    const QString text = item.text();
    if (text.isEmpty())
        return;
    const QTransform map = transform();
    const QPointF place = map.map(origin);
    const std::optional<QByteArray> ansi = ansiText(text);
    if (!ansi || !m_reach.contains(place)) {
        drawOutlines(origin, item);
        return;
    }
    const QFont font = item.font();
    const double along = std::hypot(map.m11(), map.m12());
    const double across = std::hypot(map.m21(), map.m22());
    const double pixels =
        font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * paintDevice()->logicalDpiY() / 72.0;
    MetafileRecords::Font record;
    record.height = std::max<int>(1, shortOf(pixels * across));
    record.escapement = static_cast<int>(std::lround(-std::atan2(map.m12(), map.m11()) * kTenthsOfDegree));
    record.weight = font.weight();
    record.italic = font.italic();
    record.underline = font.underline();
    record.strikeOut = font.strikeOut();
    record.face = font.family().toLatin1();

    const QFontMetricsF metrics(font, paintDevice());
    std::vector<std::int16_t> advances;
    double before = 0;
    for (qsizetype letters = 1; letters <= text.size(); ++letters) {
        const double end = metrics.horizontalAdvance(text.left(letters)) * along;
        advances.push_back(shortOf(std::round(end) - std::round(before)));
        before = end;
    }
    takeClip();
    m_records.text(place.toPoint(), *ansi, advances, record, opaque(painter()->pen().color()));
}

void MetafilePaintEngine::drawOutlines(const QPointF& origin, const QTextItem& item)
{
    QPainterPath path;
    path.addText(origin, item.font(), item.text());
    fill(path.toSubpathPolygons(transform()), painter()->pen().color(), true);
}

// A metafile of ours holds no bitmap.
void MetafilePaintEngine::drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source)
{
    Q_UNUSED(target)
    Q_UNUSED(pixmap)
    Q_UNUSED(source)
}

void MetafilePaintEngine::drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                                    Qt::ImageConversionFlags flags)
{
    Q_UNUSED(target)
    Q_UNUSED(image)
    Q_UNUSED(source)
    Q_UNUSED(flags)
}

void MetafilePaintEngine::drawTiledPixmap(const QRectF& target, const QPixmap& pixmap, const QPointF& origin)
{
    Q_UNUSED(target)
    Q_UNUSED(pixmap)
    Q_UNUSED(origin)
}

MetafileDevice::MetafileDevice(const QSize& extent, int unitsPerInch)
    : m_extent(extent)
    , m_engine(std::make_unique<MetafilePaintEngine>(extent, unitsPerInch))
{}

MetafileDevice::~MetafileDevice() = default;

QPaintEngine* MetafileDevice::paintEngine() const
{
    return m_engine.get();
}

QByteArray MetafileDevice::bytes() const
{
    return m_engine->bytes();
}

// Sizes of pens and texts come with the painter's scale, so the resolution is that of a picture.
int MetafileDevice::metric(PaintDeviceMetric metric) const
{
    constexpr int kDotsPerInch = 96;
    constexpr int kBitsPerColour = 24;
    constexpr double kMillimetresPerInch = 25.4;
    switch (metric) {
    case PdmWidth:
        return m_extent.width();
    case PdmHeight:
        return m_extent.height();
    case PdmWidthMM:
        return static_cast<int>(std::lround(m_extent.width() * kMillimetresPerInch / kDotsPerInch));
    case PdmHeightMM:
        return static_cast<int>(std::lround(m_extent.height() * kMillimetresPerInch / kDotsPerInch));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return kDotsPerInch;
    case PdmDepth:
        return kBitsPerColour;
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
    default:
        return 0;
    }
}
