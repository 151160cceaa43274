// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/TintedIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
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
        const QString key =
            QStringLiteral("icon/%1/%2x%3/%4").arg(m_name).arg(size.width()).arg(size.height()).arg(tint(mode).rgba());
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
        drawing.replace("currentColor", tint(mode).name(QColor::HexRgb).toLatin1());
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
