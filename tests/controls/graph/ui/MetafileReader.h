// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <array>
#include <optional>
#include <vector>

/// Reads a placeable Windows metafile record by record, as its format is published; shares nothing with what writes
/// them. Every record must be one that it knows, of the right length; none of those it knows holds a bitmap.
class MetafileReader
{
public:
    struct Pen
    {
        int style = 0, width = 0;
        unsigned colour = 0; ///< 0x00BBGGRR
    };
    struct Line
    {
        QList<QPoint> points;
        Pen pen;
        std::optional<QRect> clip;
    };
    struct Area
    {
        QList<QList<QPoint>> rings;
        unsigned colour = 0;
        int fillMode = 1;
        std::optional<QRect> clip;
    };
    struct Text
    {
        QPoint origin;
        QByteArray letters;
        QList<int> advances;
        int height = 0, escapement = 0, weight = 0;
        bool italic = false;
        QByteArray face;
        unsigned colour = 0;
    };

    explicit MetafileReader(const QByteArray& bytes)
        : m_bytes(bytes)
    {
        problem = read();
    }

    QString problem; ///< empty: the file is as it should be
    QRect bounds;
    int unitsPerInch = 0;
    std::vector<Line> lines;
    std::vector<Area> areas;
    std::vector<Text> texts;

private:
    struct Object
    {
        int kind = 0; ///< function that made it; 0: the place is free
        Pen pen;
        unsigned brush = 0;
        Text font;
    };
    struct State
    {
        Pen pen;
        bool hasPen = false, hasBrush = false, hasFont = false;
        unsigned brush = 0, textColour = 0;
        int fillMode = 1;
        Text font;
        std::optional<QRect> clip;
    };

    int word(qsizetype at) const
    {
        return static_cast<unsigned char>(m_bytes.at(at)) | static_cast<unsigned char>(m_bytes.at(at + 1)) << 8;
    }
    int number(qsizetype at) const { return static_cast<std::int16_t>(word(at)); }
    unsigned twoWords(qsizetype at) const
    {
        return static_cast<unsigned>(word(at)) | static_cast<unsigned>(word(at + 2)) << 16U;
    }

    QString read()
    {
        constexpr qsizetype kPlaceable = 22, kHeader = 18;
        if (m_bytes.size() < kPlaceable + kHeader || m_bytes.size() % 2 != 0)
            return QStringLiteral("no whole headers");
        if (twoWords(0) != 0x9AC6CDD7U)
            return QStringLiteral("not placeable");
        int sum = 0;
        for (qsizetype at = 0; at < 20; at += 2)
            sum ^= word(at);
        if (sum != word(20))
            return QStringLiteral("wrong checksum");
        bounds = QRect(QPoint(number(6), number(8)), QPoint(number(10) - 1, number(12) - 1));
        unitsPerInch = word(14);
        if (word(22) != 1 || word(24) != 9 || word(26) != 0x0300)
            return QStringLiteral("wrong header");
        if (twoWords(28) * 2 != m_bytes.size() - kPlaceable)
            return QStringLiteral("wrong size in the header");
        m_places = word(32);
        const unsigned longest = twoWords(34);
        unsigned found = 0;
        for (qsizetype at = kPlaceable + kHeader;;) {
            if (at + 6 > m_bytes.size())
                return QStringLiteral("no end record");
            const qsizetype size = 2 * static_cast<qsizetype>(twoWords(at));
            if (size < 6 || size > m_bytes.size() - at)
                return QStringLiteral("a record of wrong size");
            found = std::max(found, twoWords(at));
            const int function = word(at + 4);
            if (function == 0) {
                if (size != 6 || at + size != m_bytes.size())
                    return QStringLiteral("wrong end");
                if (!m_saved.empty())
                    return QStringLiteral("a state left over");
                if (found != longest)
                    return QStringLiteral("wrong longest record");
                return QString();
            }
            if (const QString wrong = one(function, at + 6, size - 6); !wrong.isEmpty())
                return wrong;
            at += size;
        }
    }

    QString one(int function, qsizetype at, qsizetype size)
    {
        const QString wrong = QStringLiteral("record %1 of %2 bytes").arg(function, 4, 16, QLatin1Char('0')).arg(size);
        switch (function) {
        case 0x0102: // background mode
            return size == 2 && word(at) == 1 ? QString() : wrong;
        case 0x0103: // map mode
            return size == 2 && word(at) == 8 ? QString() : wrong;
        case 0x012E: // text alignment
            return size == 2 && word(at) == 24 ? QString() : wrong;
        case 0x020B: // window origin
            return size == 4 && word(at) == 0 && word(at + 2) == 0 ? QString() : wrong;
        case 0x020C: // window extent
            return size == 4 && number(at) == bounds.height() && number(at + 2) == bounds.width() ? QString() : wrong;
        case 0x0106:
            m_state.fillMode = word(at);
            return size == 2 && (word(at) == 1 || word(at) == 2) ? QString() : wrong;
        case 0x0209:
            m_state.textColour = twoWords(at);
            return size == 4 ? QString() : wrong;
        case 0x001E:
            m_saved.push_back(m_state);
            return size == 0 ? QString() : wrong;
        case 0x0127:
            if (size != 2 || number(at) != -1 || m_saved.empty())
                return wrong;
            m_state = m_saved.back();
            m_saved.pop_back();
            return QString();
        case 0x0416: {
            if (size != 8)
                return wrong;
            const QRect rect(QPoint(number(at + 6), number(at + 4)), QPoint(number(at + 2) - 1, number(at) - 1));
            m_state.clip = m_state.clip ? *m_state.clip & rect : rect;
            return QString();
        }
        case 0x02FA:
            return size == 10 ? make({function, {word(at), number(at + 2), twoWords(at + 6)}, 0, {}}) : wrong;
        case 0x02FC:
            return size == 8 && word(at) == 0 ? make({function, {}, twoWords(at + 2), {}}) : wrong;
        case 0x02FB: {
            if (size != 50)
                return wrong;
            Text font;
            font.height = -number(at);
            font.escapement = number(at + 4);
            font.weight = number(at + 8);
            font.italic = (word(at + 10) & 0xFF) != 0;
            const QByteArray face = m_bytes.mid(at + 18, 32);
            if (!face.contains('\0'))
                return wrong;
            font.face = face.left(face.indexOf('\0'));
            return make({function, {}, 0, font});
        }
        case 0x012D:
            return size == 2 && select(word(at)) ? QString() : wrong;
        case 0x01F0:
            if (size != 2 || word(at) >= static_cast<int>(m_objects.size()) || m_objects[word(at)].kind == 0)
                return wrong;
            m_objects[word(at)] = {};
            return QString();
        case 0x0214:
            m_at = QPoint(number(at + 2), number(at));
            return size == 4 ? QString() : wrong;
        case 0x0213: {
            const QPoint to(number(at + 2), number(at));
            addLine({m_at, to});
            m_at = to;
            return size == 4 && m_state.hasPen ? QString() : wrong;
        }
        case 0x0325: {
            if (size < 2 || size != 2 + 4 * word(at) || !m_state.hasPen)
                return wrong;
            addLine(points(at + 2, word(at)));
            return QString();
        }
        case 0x0324:
            if (size < 2 || size != 2 + 4 * word(at) || !fills())
                return wrong;
            areas.push_back({{points(at + 2, word(at))}, m_state.brush, m_state.fillMode, m_state.clip});
            return QString();
        case 0x0538:
            return polyPolygon(at, size) ? QString() : wrong;
        case 0x0A32:
            return text(at, size) ? QString() : wrong;
        default:
            return wrong;
        }
    }

    QString make(const Object& object)
    {
        for (Object& place : m_objects) {
            if (place.kind == 0) {
                place = object;
                return QString();
            }
        }
        m_objects.push_back(object);
        return static_cast<int>(m_objects.size()) <= m_places ? QString() : QStringLiteral("too many objects");
    }

    bool select(int index)
    {
        if (index >= static_cast<int>(m_objects.size()) || m_objects[static_cast<std::size_t>(index)].kind == 0)
            return false;
        const Object& object = m_objects[static_cast<std::size_t>(index)];
        if (object.kind == 0x02FA) {
            m_state.pen = object.pen;
            m_state.hasPen = true;
        } else if (object.kind == 0x02FC) {
            m_state.brush = object.brush;
            m_state.hasBrush = true;
        } else {
            m_state.font = object.font;
            m_state.hasFont = true;
        }
        return true;
    }

    bool fills() const { return m_state.hasBrush && m_state.hasPen && m_state.pen.style == 5; }

    QList<QPoint> points(qsizetype at, int count) const
    {
        QList<QPoint> result;
        for (int i = 0; i < count; ++i)
            result.append(QPoint(number(at + 4 * i), number(at + 4 * i + 2)));
        return result;
    }

    void addLine(const QList<QPoint>& points) { lines.push_back({points, m_state.pen, m_state.clip}); }

    bool polyPolygon(qsizetype at, qsizetype size)
    {
        if (size < 2 || !fills())
            return false;
        const int count = word(at);
        Area area{{}, m_state.brush, m_state.fillMode, m_state.clip};
        qsizetype next = at + 2 + 2 * count;
        for (int i = 0; i < count; ++i) {
            const int length = word(at + 2 + 2 * i);
            if (next + 4 * length > at + size)
                return false;
            area.rings.append(points(next, length));
            next += 4 * length;
        }
        areas.push_back(area);
        return next == at + size;
    }

    bool text(qsizetype at, qsizetype size)
    {
        const int length = word(at + 4);
        const qsizetype padded = length + length % 2;
        if (size != 8 + padded + 2 * length || word(at + 6) != 0 || !m_state.hasFont)
            return false;
        Text text = m_state.font;
        text.origin = QPoint(number(at + 2), number(at));
        text.letters = m_bytes.mid(at + 8, length);
        for (int i = 0; i < length; ++i)
            text.advances.append(number(at + 8 + padded + 2 * i));
        text.colour = m_state.textColour;
        texts.push_back(text);
        return true;
    }

    QByteArray m_bytes;
    int m_places = 0;
    std::vector<Object> m_objects;
    State m_state;
    std::vector<State> m_saved;
    QPoint m_at;
};
