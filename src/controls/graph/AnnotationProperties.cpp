// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AnnotationProperties.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace graph {
namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

template <typename Map>
typename Map::mapped_type valueOr(const Map& map, int key, typename Map::mapped_type fallback)
{
    const auto found = map.find(key);
    return found == map.end() ? fallback : found->second;
}

} // namespace

VerticalLine* AnnotationProperties::verticalLine(int i)
{
    if (!isIn(i, 0, kMaxVerticalLines - 1))
        return nullptr;
    std::vector<VerticalLine>& lines = m_properties.verticalLines;
    if (at(i) >= lines.size()) {
        lines.resize(at(i) + 1);
        m_linesChanged = true;
    }
    return &lines[at(i)];
}

double AnnotationProperties::VertLineAnnotation(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].position : 0;
}

void AnnotationProperties::setVertLineAnnotation(int i, double position)
{
    if (!std::isfinite(position))
        return;
    VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->position == position)
        return;
    line->position = position;
    m_linesChanged = true;
}

int AnnotationProperties::VertLineAnnotationType(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].type : kLineVanished;
}

void AnnotationProperties::setVertLineAnnotationType(int i, int type)
{
    if (type < 0)
        return;
    VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->type == type)
        return;
    line->type = type;
    m_linesChanged = true;
}

std::uint32_t AnnotationProperties::VertLineAnnotationColor(int i) const
{
    return i >= 0 && at(i) < m_properties.verticalLines.size() ? m_properties.verticalLines[at(i)].color : 0;
}

void AnnotationProperties::setVertLineAnnotationColor(int i, std::uint32_t color)
{
    VerticalLine* line = verticalLine(i);
    if (line == nullptr || line->color == (color & kColorMask))
        return;
    line->color = color & kColorMask;
    m_linesChanged = true;
}

bool AnnotationProperties::setWorkingTable(int table)
{
    if (!isIn(table, 0, kTables - 1))
        return false;
    m_workingTable = table;
    return true;
}

void AnnotationProperties::resizeTable(int rows, int columns)
{
    TableAnnotation& old = table();
    if (rows == old.TARows && columns == old.TAColumns)
        return;
    std::vector<TableCell> cells(at(rows) * at(columns));
    for (int row = 0; row < std::min(rows, old.TARows); ++row) {
        for (int column = 0; column < std::min(columns, old.TAColumns); ++column)
            cells[at(row) * at(columns) + at(column)] = std::move(old.cells[at(row) * at(old.TAColumns) + at(column)]);
    }
    old.TARows = rows;
    old.TAColumns = columns;
    old.cells = std::move(cells);
    m_changed = true;
}

void AnnotationProperties::setTARows(int rows)
{
    if (isIn(rows, 0, kMaxTableRows))
        resizeTable(rows, table().TAColumns);
}

void AnnotationProperties::setTAColumns(int columns)
{
    if (isIn(columns, 0, kMaxTableColumns))
        resizeTable(table().TARows, columns);
}

QString AnnotationProperties::TAText(int row, int column) const
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return QString();
    return table().cells[at(row) * at(table().TAColumns) + at(column)].TAText;
}

bool AnnotationProperties::setTAText(int row, int column, const QString& text)
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return false;
    assign(table().cells[at(row) * at(table().TAColumns) + at(column)].TAText, text);
    return true;
}

int AnnotationProperties::TAJustification(int row, int column) const
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1))
        return 0;
    return table().cells[at(row) * at(table().TAColumns) + at(column)].TAJustification;
}

bool AnnotationProperties::setTAJustification(int row, int column, int justification)
{
    if (!isIn(row, 0, table().TARows - 1) || !isIn(column, 0, table().TAColumns - 1) || !isIn(justification, 0, 2))
        return false;
    assign(table().cells[at(row) * at(table().TAColumns) + at(column)].TAJustification, justification);
    return true;
}

void AnnotationProperties::setTATextSize(int percent)
{
    if (isIn(percent, 1, 1000))
        assign(table().TATextSize, percent);
}

void AnnotationProperties::setTAFonts(const QString& font)
{
    assign(table().TAFonts, font);
}

void AnnotationProperties::setTALocation(int location)
{
    if (isIn(location, 0, 5))
        assign(table().TALocation, location);
}

void AnnotationProperties::setTAHeaderColumn(bool on)
{
    assign(table().TAHeaderColumn, on);
}

void AnnotationProperties::setTABorder(int border)
{
    if (isIn(border, 0, 2))
        assign(table().TABorder, border);
}

void AnnotationProperties::setTABackColor(std::uint32_t color)
{
    assign(table().TABackColor, color & kColorMask);
}

void AnnotationProperties::setShowTableAnnotation(bool on)
{
    assign(table().ShowTableAnnotation, on);
}

MenuItem* AnnotationProperties::menuItem(int i)
{
    if (!isIn(i, 0, kMaxMenuItems - 1))
        return nullptr;
    std::vector<MenuItem>& menu = m_properties.CustomMenu;
    if (at(i) >= menu.size()) {
        menu.resize(at(i) + 1);
        m_changed = true;
    }
    return &menu[at(i)];
}

QString AnnotationProperties::CustomMenu(int i) const
{
    return i >= 0 && at(i) < m_properties.CustomMenu.size() ? m_properties.CustomMenu[at(i)].text : QString();
}

void AnnotationProperties::setCustomMenu(int i, const QString& text)
{
    if (MenuItem* item = menuItem(i))
        assign(item->text, text);
}

int AnnotationProperties::CustomMenuState(int i, int sub) const
{
    if (i < 0 || at(i) >= m_properties.CustomMenu.size())
        return MenuNormal;
    return valueOr(m_properties.CustomMenu[at(i)].states, sub, MenuNormal);
}

void AnnotationProperties::setCustomMenuState(int i, int sub, int state)
{
    if (!isIn(sub, 0, kMaxSubItems - 1) || !isIn(state, MenuNormal, MenuHidden))
        return;
    MenuItem* item = menuItem(i);
    if (item != nullptr && state != valueOr(item->states, sub, MenuNormal))
        assign(item->states[sub], state);
}

bool AnnotationProperties::CustomMenuChecked(int i, int sub) const
{
    return i >= 0 && at(i) < m_properties.CustomMenu.size() &&
           valueOr(m_properties.CustomMenu[at(i)].checked, sub, false);
}

void AnnotationProperties::setCustomMenuChecked(int i, int sub, bool checked)
{
    if (!isIn(sub, 0, kMaxSubItems - 1))
        return;
    MenuItem* item = menuItem(i);
    if (item == nullptr)
        return;
    // An entry of its own, even when off, makes the item one that can be checked.
    if (item->checked.try_emplace(sub, checked).second)
        m_changed = true;
    assign(item->checked[sub], checked);
}

QString AnnotationProperties::MultiSubTitles(int i) const
{
    return m_properties.MultiSubTitles.value(i);
}

void AnnotationProperties::setMultiSubTitles(int i, const QString& text)
{
    if (!isIn(i, 0, kMaxMultiSubTitles - 1))
        return;
    while (m_properties.MultiSubTitles.size() <= i) {
        m_properties.MultiSubTitles.append(QString());
        m_changed = true;
    }
    assign(m_properties.MultiSubTitles[i], text);
}

QString AnnotationProperties::GraphAnnotationText(int i) const
{
    return valueOr(m_properties.GraphAnnotationText, i, QString());
}

void AnnotationProperties::setGraphAnnotationText(int i, const QString& text)
{
    if (isIn(i, 0, kMaxGraphAnnotations - 1) && text != GraphAnnotationText(i))
        assign(m_properties.GraphAnnotationText[i], text);
}

} // namespace graph
