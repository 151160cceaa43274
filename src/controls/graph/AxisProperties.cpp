// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AxisProperties.h"

namespace graph {

void AxisProperties::setMainTitle(const QString& text)
{
    assign(m_properties.MainTitle, text);
}

void AxisProperties::setSubTitle(const QString& text)
{
    assign(m_properties.SubTitle, text);
}

void AxisProperties::setXAxisLabel(const QString& text)
{
    assign(m_properties.XAxisLabel, text);
}

void AxisProperties::setTXAxisLabel(const QString& text)
{
    assign(m_properties.TXAxisLabel, text);
}

bool AxisProperties::setWorkingAxis(int axis)
{
    if (axis < 0 || axis >= kYAxes)
        return false;
    m_workingAxis = axis;
    return true;
}

void AxisProperties::setYAxisLabel(const QString& text)
{
    assign(axis().YAxisLabel, text);
}

void AxisProperties::setNullDataValueY(float value)
{
    if (!std::isnan(value))
        assign(axis().NullDataValueY, value);
}

void AxisProperties::setXAxisScaleControl(int scale)
{
    if (isScale(scale))
        assign(m_properties.XAxisScaleControl, scale);
}

void AxisProperties::setYAxisScaleControl(int scale)
{
    if (isScale(scale))
        assign(axis().YAxisScaleControl, scale);
}

void AxisProperties::setManualScaleControlX(int control)
{
    if (isScaleControl(control))
        assign(m_properties.ManualScaleControlX, control);
}

void AxisProperties::setManualScaleControlY(int control)
{
    if (isScaleControl(control))
        assign(axis().ManualScaleControlY, control);
}

void AxisProperties::setManualMinX(double value)
{
    assignFinite(m_properties.ManualMinX, value);
}

void AxisProperties::setManualMaxX(double value)
{
    assignFinite(m_properties.ManualMaxX, value);
}

void AxisProperties::setManualMinY(double value)
{
    assignFinite(axis().ManualMinY, value);
}

void AxisProperties::setManualMaxY(double value)
{
    assignFinite(axis().ManualMaxY, value);
}

void AxisProperties::setPlottingMode(bool on)
{
    assign(axis().PlottingMode, on);
}

void AxisProperties::setAxisUnitPrefixes(const QString& text)
{
    assign(m_properties.AxisUnitPrefixes, text);
}

void AxisProperties::setZoomed(bool zoomed)
{
    assign(m_properties.zoomed, zoomed);
}

void AxisProperties::setZoomLimits(const ZoomLimits& limits)
{
    setZoomMinX(limits.ZoomMinX);
    setZoomMaxX(limits.ZoomMaxX);
    setZoomMinY(limits.ZoomMinY);
    setZoomMaxY(limits.ZoomMaxY);
    setZoomMinRY(limits.ZoomMinRY);
    setZoomMaxRY(limits.ZoomMaxRY);
    setZoomMinTX(limits.ZoomMinTX);
    setZoomMaxTX(limits.ZoomMaxTX);
}

void AxisProperties::setZoomMinX(double value)
{
    assignFinite(m_properties.zoom.ZoomMinX, value);
}

void AxisProperties::setZoomMaxX(double value)
{
    assignFinite(m_properties.zoom.ZoomMaxX, value);
}

void AxisProperties::setZoomMinY(double value)
{
    assignFinite(m_properties.zoom.ZoomMinY, value);
}

void AxisProperties::setZoomMaxY(double value)
{
    assignFinite(m_properties.zoom.ZoomMaxY, value);
}

void AxisProperties::setZoomMinRY(double value)
{
    assignFinite(m_properties.zoom.ZoomMinRY, value);
}

void AxisProperties::setZoomMaxRY(double value)
{
    assignFinite(m_properties.zoom.ZoomMaxRY, value);
}

void AxisProperties::setZoomMinTX(double value)
{
    assignFinite(m_properties.zoom.ZoomMinTX, value);
}

void AxisProperties::setZoomMaxTX(double value)
{
    assignFinite(m_properties.zoom.ZoomMaxTX, value);
}

} // namespace graph
