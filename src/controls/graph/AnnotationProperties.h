// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/PropertyStore.h"

namespace graph {

/// Vertical lines, tables, menu and texts. Table properties address the table chosen by WorkingTable.
class AnnotationProperties : public virtual PropertyStore
{
public:
    double VertLineAnnotation(int i) const;
    void setVertLineAnnotation(int i, double position); ///< i from 0 to 99; grows the list
    int VertLineAnnotationType(int i) const;
    void setVertLineAnnotationType(int i, int type);
    std::uint32_t VertLineAnnotationColor(int i) const;
    void setVertLineAnnotationColor(int i, std::uint32_t color);
    int WorkingTable() const { return m_workingTable; }
    bool setWorkingTable(int table);
    int TARows() const { return table().TARows; }
    void setTARows(int rows); ///< 0 to 1000; cells that stay keep their text
    int TAColumns() const { return table().TAColumns; }
    void setTAColumns(int columns); ///< 0 to 100
    QString TAText(int row, int column) const;
    bool setTAText(int row, int column, const QString& text);
    int TAJustification(int row, int column) const;
    bool setTAJustification(int row, int column, int justification);
    int TATextSize() const { return table().TATextSize; }
    void setTATextSize(int percent);
    QString TAFonts() const { return table().TAFonts; }
    void setTAFonts(const QString& font);
    int TALocation() const { return table().TALocation; }
    void setTALocation(int location);
    bool TAHeaderColumn() const { return table().TAHeaderColumn; }
    void setTAHeaderColumn(bool on);
    int TABorder() const { return table().TABorder; }
    void setTABorder(int border);
    std::uint32_t TABackColor() const { return table().TABackColor; }
    void setTABackColor(std::uint32_t color);
    bool ShowTableAnnotation() const { return table().ShowTableAnnotation; }
    void setShowTableAnnotation(bool on);
    QString CustomMenu(int i) const;
    void setCustomMenu(int i, const QString& text); ///< i from 0 to 63; grows the list
    int CustomMenuState(int i, int sub = 0) const;
    void setCustomMenuState(int i, int sub, int state);
    bool CustomMenuChecked(int i, int sub) const;
    void setCustomMenuChecked(int i, int sub, bool checked);
    QString MultiSubTitles(int i) const;
    void setMultiSubTitles(int i, const QString& text); ///< i from 0 to 63
    QString GraphAnnotationText(int i) const;
    void setGraphAnnotationText(int i, const QString& text); ///< i from 0 to 4095

protected:
    AnnotationProperties() = default;
    ~AnnotationProperties() = default;

private:
    VerticalLine* verticalLine(int i);
    MenuItem* menuItem(int i);
    void resizeTable(int rows, int columns);
    TableAnnotation& table() { return m_properties.tables[static_cast<std::size_t>(m_workingTable)]; }
    const TableAnnotation& table() const { return m_properties.tables[static_cast<std::size_t>(m_workingTable)]; }

    int m_workingTable = 0;
};

} // namespace graph
