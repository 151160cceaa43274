// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/PointerReadings.h"

#include <QColor>
#include <QWidget>

#include <functional>
#include <vector>

/// The box beside the pointer that shows what the curves say there: a line for X, below it one for each pen with its
/// colour, name and values in columns. It takes no input, and stays beside the pointer within its parent.
class PointerBox : public QWidget
{
    Q_OBJECT

public:
    explicit PointerBox(QWidget* parent);

    /// colourOf: of a subset's line. pointer: in the parent's coordinates.
    void showReadings(const graph::PointerReadings& readings, const std::function<QColor(int)>& colourOf,
                      const QPoint& pointer);
    /// What it shows, as text.
    const QString& text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Row
    {
        QColor colour;
        std::vector<QString> cells;
    };
    void measure();
    void moveBeside(const QPoint& pointer);

    QString m_heading;
    std::vector<Row> m_rows;
    std::vector<int> m_columns; ///< widths
    QString m_text;
};
