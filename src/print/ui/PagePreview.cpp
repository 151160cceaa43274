// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/ui/PagePreview.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPicture.h"
#include "print/ui/GraphPrinter.h"

#include <QPainter>

namespace {

constexpr double kPixelsPerPoint = 96.0 / 72.0;

} // namespace

PagePreview::PagePreview(QWidget* parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Preview of the page"));
}

void PagePreview::setGraph(const GraphModel* graph)
{
    m_graph = graph;
    m_drawn = {};
    update();
}

void PagePreview::setPage(const QPageLayout& page, bool monochrome)
{
    m_page = page;
    m_monochrome = monochrome;
    m_drawn = {};
    update();
}

QRectF PagePreview::paper() const
{
    const QSizeF page = m_page.fullRect(QPageLayout::Point).size();
    const QSizeF shown = page.scaled(QSizeF(size()) - QSizeF(2, 2), Qt::KeepAspectRatio);
    return {QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown};
}

QRectF PagePreview::printed() const
{
    const QRectF whole = m_page.fullRect(QPageLayout::Point);
    const QRectF part = m_page.paintRect(QPageLayout::Point);
    const QRectF shown = paper();
    const double scale = whole.width() > 0 ? shown.width() / whole.width() : 0;
    return {shown.topLeft() + (part.topLeft() - whole.topLeft()) * scale, part.size() * scale};
}

QPixmap PagePreview::draw() const
{
    QPixmap pixmap(size() * devicePixelRatioF());
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    if (!m_page.isValid())
        return pixmap;
    QPainter painter(&pixmap);
    painter.fillRect(paper(), Qt::white);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(paper());
    const double scale = paper().width() / (m_page.fullRect(QPageLayout::Point).width() * kPixelsPerPoint);
    if (!m_graph || scale <= 0)
        return pixmap;
    painter.setRenderHint(QPainter::Antialiasing);
    const std::unique_ptr<GraphModel> copy = m_monochrome ? GraphPrinter::monochrome(*m_graph) : nullptr;
    graph::paintPicture(copy ? *copy : *m_graph, painter, printed(), scale);
    return pixmap;
}

void PagePreview::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    if (m_drawn.isNull())
        m_drawn = draw();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_drawn);
}

void PagePreview::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_drawn = {};
}
