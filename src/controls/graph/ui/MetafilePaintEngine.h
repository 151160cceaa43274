// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/ui/MetafileGeometry.h"
#include "controls/graph/ui/MetafileRecords.h"

#include <QPaintEngine>
#include <QPainterPath>
#include <QTransform>

/// What MetafileDevice paints with.
class MetafilePaintEngine : public QPaintEngine
{
public:
    MetafilePaintEngine(const QSize& extent, int unitsPerInch);

    const QByteArray& bytes() const { return m_bytes; }

    bool begin(QPaintDevice* device) override;
    bool end() override;
    void updateState(const QPaintEngineState& newState) override;
    Type type() const override { return User; }

    void drawPath(const QPainterPath& path) override;
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override;
    using QPaintEngine::drawPolygon;
    void drawPoints(const QPointF* points, int count) override;
    using QPaintEngine::drawPoints;
    void drawTextItem(const QPointF& origin, const QTextItem& item) override;
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override;
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags) override;
    void drawTiledPixmap(const QRectF& target, const QPixmap& pixmap, const QPointF& origin) override;

private:
    QTransform transform() const;
    QRgb opaque(const QColor& colour) const;
    void takeClip();
    void stroke(std::span<const QPointF> line);
    void fill(const QList<QPolygonF>& areas, const QColor& colour, bool winding);
    void drawOutlines(const QPointF& origin, const QTextItem& item);

    QSize m_extent;
    int m_unitsPerInch;
    QRectF m_reach; ///< coordinates that a record can hold, with room to round
    MetafileRecords m_records;
    QByteArray m_bytes;
    bool m_clipIsNew = false;
};
