// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPointF>
#include <QString>
#include <QWidget>

#include <vector>

class GraphView;

/// Marks and circles over the curves of a graph view, at places on its axes. Lets the mouse through, follows the view's
/// size and the model's zoom.
class LoopMarks : public QWidget
{
    Q_OBJECT

public:
    struct Mark
    {
        QString name;
        QPointF place;
        QColor colour;
        bool main = false; ///< drawn larger
    };
    struct Circle
    {
        std::vector<QPointF> line;
        QColor colour;
    };

    explicit LoopMarks(GraphView& view);

    void setMarks(std::vector<Mark> marks);
    void setCircles(std::vector<Circle> circles);
    const std::vector<Mark>& marks() const { return m_marks; }
    const std::vector<Circle>& circles() const { return m_circles; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    GraphView& m_view;
    std::vector<Mark> m_marks;
    std::vector<Circle> m_circles;
};
