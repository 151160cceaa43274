// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QPen>

/// Colours, fonts and pens of a drawn graph, worked out from its style properties.
///
/// The plotting paper is light on every desktop, because pen colours are chosen for paper (the first pen is black). On
/// a dark desktop the desk around the paper and its texts follow the palette; the legend keeps paper under its samples.
/// Pictures and prints are always light. In the monochrome styles all four Mono colours apply everywhere.
struct PlotStyle
{
    QColor desk;  ///< around the plotting area
    QColor paper; ///< the plotting area
    QColor frame; ///< axis lines and ticks
    QColor text;  ///< on the desk
    QColor ink;   ///< text on the paper
    QColor grid;
    QColor minorGrid;
    QFont mainTitle;
    QFont subTitle;
    QFont axisTitle;
    QFont tickLabels;
    QFont legend;
    double textSize = 12; ///< height of ordinary text, device-independent pixels
    bool monochrome = false;
    bool symbols = false;
};

/// palette: of the desktop; null for a picture.
PlotStyle plotStyle(const graph::Properties& properties, const QPalette* palette);

/// Pen of a trace: its colour and line type, in the monochrome styles the foreground with a pattern by pen. A solid
/// curve of a right axis has long dashes, which tells it from the curve of the same pen on the left.
QPen tracePen(const graph::Properties& properties, const PlotStyle& style, int subset);

/// For axes, grids and frames: ends where its line ends.
QPen thinPen(const QColor& color);
/// Line style of a subset line type or a vertical line type.
Qt::PenStyle penStyleOf(int lineType);
