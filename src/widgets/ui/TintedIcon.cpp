// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/TintedIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QSvgRenderer>

static void initialiseIconResource()
{
    // The drawings lie in a static library: without this the linker drops them.
    Q_INIT_RESOURCE(widget_icons);
}

namespace {

QString drawingOf(const QString& name)
{
    return QStringLiteral(":/widgets/icons/%1.svg").arg(name);
}

class TintedIconEngine : public QIconEngine
{
public:
    explicit TintedIconEngine(QString name)
        : m_name(std::move(name))
    {
        QFile file(drawingOf(m_name));
        if (file.open(QIODevice::ReadOnly))
            m_drawing = file.readAll();
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        render(*painter, rect, mode);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        const QString key = QStringLiteral("icon/%1/%2x%3/%4/%5")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(tint(mode).rgba())
                                .arg(static_cast<int>(mode));
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        render(painter, QRect(QPoint(), size), mode);
        painter.end();
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine* clone() const override { return new TintedIconEngine(*this); }
    QString key() const override { return QStringLiteral("TintedIconEngine"); }
    QString iconName() override { return m_name; }
    bool isNull() override { return m_drawing.isEmpty(); }

private:
    /// Highlighted entries of a menu and buttons under the mouse ask for the same mode.
    static bool isHighlighted(QIcon::Mode mode) { return mode == QIcon::Active || mode == QIcon::Selected; }

    static QColor tint(QIcon::Mode mode)
    {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Disabled)
            return palette.color(QPalette::Disabled, QPalette::WindowText);
        if (mode == QIcon::Selected)
            return palette.color(QPalette::HighlightedText);
        return palette.color(QPalette::Active, QPalette::WindowText);
    }

    void render(QPainter& painter, const QRect& rect, QIcon::Mode mode) const
    {
        QByteArray drawing = m_drawing;
        const QByteArray colour = tint(mode).name(QColor::HexRgb).toLatin1();
        // A second colour may be that of the highlight itself: there the glyph is drawn in one.
        if (isHighlighted(mode) && drawing.contains("currentColor")) {
            static const QRegularExpression kFixedColour(QStringLiteral("#[0-9A-Fa-f]{6}"));
            drawing = QString::fromUtf8(drawing).replace(kFixedColour, QString::fromLatin1(colour)).toUtf8();
        }
        drawing.replace("currentColor", colour);
        QSvgRenderer renderer(drawing);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter.setOpacity(painter.opacity() * 0.45);
        const int side = qMin(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        renderer.render(&painter, square);
        painter.restore();
    }

    QString m_name;
    QByteArray m_drawing;
};

} // namespace

QIcon tintedIcon(const QString& name)
{
    initialiseIconResource();
    if (!QFile::exists(drawingOf(name)))
        return {};
    return QIcon(new TintedIconEngine(name));
}

QIcon programIcon()
{
    return tintedIcon(QStringLiteral("marrowickgraph"));
}
