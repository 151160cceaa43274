// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPageLayout>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

class GraphModel;

/// A small picture of the page as it will be printed.
class PagePreview : public QWidget
{
    Q_OBJECT

public:
    explicit PagePreview(QWidget* parent = nullptr);

    void setGraph(const GraphModel* graph);
    void setPage(const QPageLayout& page, bool monochrome);
    /// Where the page lies in the widget, and the part of it that is printed.
    QRectF paper() const;
    QRectF printed() const;

    QSize sizeHint() const override { return {240, 240}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap draw() const;

    QPointer<const GraphModel> m_graph;
    QPageLayout m_page;
    bool m_monochrome = false;
    QPixmap m_drawn;
};
