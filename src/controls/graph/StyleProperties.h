// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/PropertyStore.h"

namespace graph {

/// Legend, fonts, colours and lines of the whole graph.
class StyleProperties : public virtual PropertyStore
{
public:
    bool MarkDataPoints() const { return m_properties.MarkDataPoints; }
    void setMarkDataPoints(bool on);
    bool ShowLegend() const { return m_properties.ShowLegend; }
    void setShowLegend(bool on);
    int LegendStyle() const { return m_properties.LegendStyle; }
    void setLegendStyle(int style);
    int LegendLocation() const { return m_properties.LegendLocation; }
    void setLegendLocation(int location);
    int ViewingStyle() const { return m_properties.ViewingStyle; }
    void setViewingStyle(int style);
    int FontSize() const { return m_properties.FontSize; }
    void setFontSize(int size);
    double FontSizeGlobalCntl() const { return m_properties.FontSizeGlobalCntl; }
    void setFontSizeGlobalCntl(double factor);
    const QString& MainTitleFont() const { return m_properties.MainTitleFont; }
    void setMainTitleFont(const QString& font);
    const QString& SubTitleFont() const { return m_properties.SubTitleFont; }
    void setSubTitleFont(const QString& font);
    const QString& LabelFont() const { return m_properties.LabelFont; }
    void setLabelFont(const QString& font);
    std::uint32_t MonoGraphForeColor() const { return m_properties.MonoGraphForeColor; }
    void setMonoGraphForeColor(std::uint32_t color);
    std::uint32_t MonoGraphBackColor() const { return m_properties.MonoGraphBackColor; }
    void setMonoGraphBackColor(std::uint32_t color);
    std::uint32_t MonoTextColor() const { return m_properties.MonoTextColor; }
    void setMonoTextColor(std::uint32_t color);
    std::uint32_t MonoDeskColor() const { return m_properties.MonoDeskColor; }
    void setMonoDeskColor(std::uint32_t color);
    std::uint32_t TickColor() const { return m_properties.TickColor; }
    void setTickColor(std::uint32_t color);
    double LineWidth() const { return m_properties.LineWidth; }
    void setLineWidth(double width);

protected:
    StyleProperties() = default;
    ~StyleProperties() = default;
};

} // namespace graph
