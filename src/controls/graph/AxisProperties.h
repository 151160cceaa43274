// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/PropertyStore.h"

namespace graph {

/// Titles, axes and zoom. Y properties address the axis chosen by WorkingAxis.
class AxisProperties : public virtual PropertyStore
{
public:
    const QString& MainTitle() const { return m_properties.MainTitle; }
    void setMainTitle(const QString& text);
    const QString& SubTitle() const { return m_properties.SubTitle; }
    void setSubTitle(const QString& text);
    const QString& XAxisLabel() const { return m_properties.XAxisLabel; }
    void setXAxisLabel(const QString& text);
    const QString& TXAxisLabel() const { return m_properties.TXAxisLabel; }
    void setTXAxisLabel(const QString& text);
    int WorkingAxis() const { return m_workingAxis; }
    bool setWorkingAxis(int axis);
    const QString& YAxisLabel() const { return axis().YAxisLabel; }
    void setYAxisLabel(const QString& text);
    float NullDataValueY() const { return axis().NullDataValueY; }
    void setNullDataValueY(float value);
    int XAxisScaleControl() const { return m_properties.XAxisScaleControl; }
    void setXAxisScaleControl(int scale);
    int YAxisScaleControl() const { return axis().YAxisScaleControl; }
    void setYAxisScaleControl(int scale);
    int ManualScaleControlX() const { return m_properties.ManualScaleControlX; }
    void setManualScaleControlX(int control);
    int ManualScaleControlY() const { return axis().ManualScaleControlY; }
    void setManualScaleControlY(int control);
    double ManualMinX() const { return m_properties.ManualMinX; }
    void setManualMinX(double value);
    double ManualMaxX() const { return m_properties.ManualMaxX; }
    void setManualMaxX(double value);
    double ManualMinY() const { return axis().ManualMinY; }
    void setManualMinY(double value);
    double ManualMaxY() const { return axis().ManualMaxY; }
    void setManualMaxY(double value);
    bool PlottingMode() const { return axis().PlottingMode; }
    void setPlottingMode(bool on);
    const QString& AxisUnitPrefixes() const { return m_properties.AxisUnitPrefixes; }
    void setAxisUnitPrefixes(const QString& text);

    bool Zoomed() const { return m_properties.zoomed; }
    void setZoomed(bool zoomed);
    const ZoomLimits& zoomLimits() const { return m_properties.zoom; }
    void setZoomLimits(const ZoomLimits& limits);
    void setZoomMinX(double value);
    void setZoomMaxX(double value);
    void setZoomMinY(double value);
    void setZoomMaxY(double value);
    void setZoomMinRY(double value);
    void setZoomMaxRY(double value);
    void setZoomMinTX(double value);
    void setZoomMaxTX(double value);

protected:
    AxisProperties() = default;
    ~AxisProperties() = default;

private:
    YAxis& axis() { return m_properties.yAxes[static_cast<std::size_t>(m_workingAxis)]; }
    const YAxis& axis() const { return m_properties.yAxes[static_cast<std::size_t>(m_workingAxis)]; }

    int m_workingAxis = 0;
};

} // namespace graph
