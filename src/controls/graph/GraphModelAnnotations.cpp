// SPDX-License-Identifier: GPL-3.0-or-later
// Annotations, tables, menu and style of the graph model.
#include "controls/graph/GraphModel.h"

#include <algorithm>
#include <cmath>
#include <utility>

using graph::kColorMask;

namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

bool isIn(int value, int first, int last)
{
    return value >= first && value <= last;
}

template <typename Map>
typename Map::mapped_type valueOr(const Map& map, int key, typename Map::mapped_type fallback)
{
    const auto found = map.find(key);
    return found == map.end() ? fallback : found->second;
}

} // namespace

// Vertical lines -----------------------------------------------------------------------------------------------------

graph::VerticalLine* GraphModel::verticalLine(int i)
{
    if (!isIn(i, 0, graph::kMaxVerticalLines - 1))
        return nullptr;
    std::vector<graph::VerticalLine>& lines = m_properties.verticalLines;
    if (at(i) >= lines.size()) {
        lines.resize(at(i) + 1);
        m_linesChanged = true;
    }
    return &lines[at(i)];
}

double GraphModel::VertLineAnnotation(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].position : 0;
}

void GraphModel::setVertLineAnnotation(int i, double position)
{
    if (!std::isfinite(position))
        return;
    graph::VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->position == position)
        return;
    line->position = position;
    m_linesChanged = true;
}

int GraphModel::VertLineAnnotationType(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].type
                                                               : graph::kLineVanished;
}

void GraphModel::setVertLineAnnotationType(int i, int type)
{
    if (type < 0)
        return;
    graph::VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->type == type)
        return;
    line->type = type;
    m_linesChanged = true;
}

std::uint32_t GraphModel::VertLineAnnotationColor(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].color : 0;
}

void GraphModel::setVertLineAnnotationColor(int i, std::uint32_t color)
{
    graph::VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->color == (color & kColorMask))
        return;
    line->color = color & kColorMask;
    m_linesChanged = true;
}

// Tables -------------------------------------------------------------------------------------------------------------

bool GraphModel::setWorkingTable(int table)
{
    if (!isIn(table, 0, graph::kTables - 1))
        return false;
    m_workingTable = table;
    return true;
}

void GraphModel::resizeTable(int rows, int columns)
{
    graph::TableAnnotation& old = table();
    if (rows == old.TARows && columns == old.TAColumns)
        return;
    std::vector<graph::TableCell> cells(at(rows) * at(columns));
    for (int row = 0; row < std::min(rows, old.TARows); ++row) {
        for (int column = 0; column < std::min(columns, old.TAColumns); ++column)
            cells[at(row) * at(columns) + at(column)] = std::move(old.cells[at(row) * at(old.TAColumns) + at(column)]);
    }
    old.TARows = rows;
    old.TAColumns = columns;
    old.cells = std::move(cells);
    m_changed = true;
}

void GraphModel::setTARows(int rows)
{
    if (isIn(rows, 0, graph::kMaxTableRows))
        resizeTable(rows, table().TAColumns);
}

void GraphModel::setTAColumns(int columns)
{
    if (isIn(columns, 0, graph::kMaxTableColumns))
        resizeTable(table().TARows, columns);
}

QString GraphModel::TAText(int row, int column) const
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return QString();
    return table().cells[at(row) * at(table().TAColumns) + at(column)].TAText;
}

bool GraphModel::setTAText(int row, int column, const QString& text)
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return false;
    assign(table().cells[at(row) * at(table().TAColumns) + at(column)].TAText, text);
    return true;
}

int GraphModel::TAJustification(int row, int column) const
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return 0;
    return table().cells[at(row) * at(table().TAColumns) + at(column)].TAJustification;
}

bool GraphModel::setTAJustification(int row, int column, int justification)
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1) || !isIn(justification, 0, 2))
        return false;
    assign(table().cells[at(row) * at(table().TAColumns) + at(column)].TAJustification, justification);
    return true;
}

void GraphModel::setTATextSize(int percent)
{
    if (isIn(percent, 1, 1000))
        assign(table().TATextSize, percent);
}

void GraphModel::setTAFonts(const QString& font)
{
    assign(table().TAFonts, font);
}

void GraphModel::setTALocation(int location)
{
    if (isIn(location, 0, 5))
        assign(table().TALocation, location);
}

void GraphModel::setTAHeaderColumn(bool on)
{
    assign(table().TAHeaderColumn, on);
}

void GraphModel::setTABorder(int border)
{
    if (isIn(border, 0, 2))
        assign(table().TABorder, border);
}

void GraphModel::setTABackColor(std::uint32_t color)
{
    assign(table().TABackColor, color & kColorMask);
}

void GraphModel::setShowTableAnnotation(bool on)
{
    assign(table().ShowTableAnnotation, on);
}

// Menu and texts -----------------------------------------------------------------------------------------------------

graph::MenuItem* GraphModel::menuItem(int i)
{
    if (!isIn(i, 0, graph::kMaxMenuItems - 1))
        return nullptr;
    std::vector<graph::MenuItem>& menu = m_properties.CustomMenu;
    if (at(i) >= menu.size()) {
        menu.resize(at(i) + 1);
        m_changed = true;
    }
    return &menu[at(i)];
}

QString GraphModel::CustomMenu(int i) const
{
    return i >= 0 && at(i) < m_properties.CustomMenu.size() ? m_properties.CustomMenu[at(i)].text : QString();
}

void GraphModel::setCustomMenu(int i, const QString& text)
{
    if (graph::MenuItem* item = menuItem(i))
        assign(item->text, text);
}

int GraphModel::CustomMenuState(int i, int sub) const
{
    if (i < 0 || at(i) >= m_properties.CustomMenu.size())
        return graph::MenuNormal;
    return valueOr(m_properties.CustomMenu[at(i)].states, sub, graph::MenuNormal);
}

void GraphModel::setCustomMenuState(int i, int sub, int state)
{
    if (!isIn(sub, 0, graph::kMaxSubItems - 1) || !isIn(state, graph::MenuNormal, graph::MenuHidden))
        return;
    graph::MenuItem* item = menuItem(i);
    if (item != nullptr && state != valueOr(item->states, sub, graph::MenuNormal))
        assign(item->states[sub], state);
}

bool GraphModel::CustomMenuChecked(int i, int sub) const
{
    return i >= 0 && at(i) < m_properties.CustomMenu.size() &&
           valueOr(m_properties.CustomMenu[at(i)].checked, sub, false);
}

void GraphModel::setCustomMenuChecked(int i, int sub, bool checked)
{
    if (!isIn(sub, 0, graph::kMaxSubItems - 1))
        return;
    graph::MenuItem* item = menuItem(i);
    if (item == nullptr)
        return;
    // An entry of its own, even when off, makes the item one that can be checked.
    if (item->checked.try_emplace(sub, checked).second)
        m_changed = true;
    assign(item->checked[sub], checked);
}

QString GraphModel::MultiSubTitles(int i) const
{
    return m_properties.MultiSubTitles.value(i);
}

void GraphModel::setMultiSubTitles(int i, const QString& text)
{
    if (!isIn(i, 0, graph::kMaxMultiSubTitles - 1))
        return;
    while (m_properties.MultiSubTitles.size() <= i) {
        m_properties.MultiSubTitles.append(QString());
        m_changed = true;
    }
    assign(m_properties.MultiSubTitles[i], text);
}

QString GraphModel::GraphAnnotationText(int i) const
{
    return valueOr(m_properties.GraphAnnotationText, i, QString());
}

void GraphModel::setGraphAnnotationText(int i, const QString& text)
{
    if (isIn(i, 0, graph::kMaxGraphAnnotations - 1) && text != GraphAnnotationText(i))
        assign(m_properties.GraphAnnotationText[i], text);
}

// Style --------------------------------------------------------------------------------------------------------------

void GraphModel::setMarkDataPoints(bool on)
{
    assign(m_properties.MarkDataPoints, on);
}

void GraphModel::setShowLegend(bool on)
{
    assign(m_properties.ShowLegend, on);
}

void GraphModel::setLegendStyle(int style)
{
    if (isIn(style, graph::LegendOutside, graph::LegendInsideAxis))
        assign(m_properties.LegendStyle, style);
}

void GraphModel::setLegendLocation(int location)
{
    if (isIn(location, graph::LegendTop, graph::LegendRight))
        assign(m_properties.LegendLocation, location);
}

void GraphModel::setViewingStyle(int style)
{
    if (isIn(style, graph::StyleColour, graph::StyleMonochromeSymbols))
        assign(m_properties.ViewingStyle, style);
}

void GraphModel::setFontSize(int size)
{
    if (isIn(size, graph::FontLarge, graph::FontSmall))
        assign(m_properties.FontSize, size);
}

void GraphModel::setFontSizeGlobalCntl(double factor)
{
    if (factor >= graph::kMinFontFactor && factor <= graph::kMaxFontFactor)
        assign(m_properties.FontSizeGlobalCntl, factor);
}

void GraphModel::setMainTitleFont(const QString& font)
{
    assign(m_properties.MainTitleFont, font);
}

void GraphModel::setSubTitleFont(const QString& font)
{
    assign(m_properties.SubTitleFont, font);
}

void GraphModel::setLabelFont(const QString& font)
{
    assign(m_properties.LabelFont, font);
}

void GraphModel::setMonoGraphForeColor(std::uint32_t color)
{
    assign(m_properties.MonoGraphForeColor, color & kColorMask);
}

void GraphModel::setMonoGraphBackColor(std::uint32_t color)
{
    assign(m_properties.MonoGraphBackColor, color & kColorMask);
}

void GraphModel::setMonoTextColor(std::uint32_t color)
{
    assign(m_properties.MonoTextColor, color & kColorMask);
}

void GraphModel::setMonoDeskColor(std::uint32_t color)
{
    assign(m_properties.MonoDeskColor, color & kColorMask);
}

void GraphModel::setTickColor(std::uint32_t color)
{
    assign(m_properties.TickColor, color & kColorMask);
}

void GraphModel::setLineWidth(double width)
{
    if (width >= 0 && width <= graph::kMaxLineWidth)
        assign(m_properties.LineWidth, width);
}
