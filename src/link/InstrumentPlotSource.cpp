// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/InstrumentPlotSource.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "program/ProgramState.h"
#include "values/Conversions.h"

QString InstrumentPlotSource::instrument() const
{
    if (!m_device.Connected())
        return QString();
    const QString name = m_mirror.strDeviceModel.isEmpty() ? m_device.ConnectedName() : m_mirror.strDeviceModel;
    QString text =
        QStringLiteral("%1 V%2.%3.%4")
            .arg(name, values::decimalText(m_mirror.dblFirmwareMajor), values::decimalText(m_mirror.dblFirmwareMinor),
                 values::decimalText(m_mirror.dblFirmwareBuild));
    if (!m_mirror.bfCalibrated)
        text += QLatin1String(" Uncalibrated");
    return text;
}

PlotSource::Limits InstrumentPlotSource::limits() const
{
    Limits limits;
    limits.sweepStart = m_mirror.dblStartFrequency;
    limits.sweepEnd = m_mirror.dblEndFrequency;
    limits.lowestFrequency = m_mirror.dblAmpMinFreq;
    limits.highestFrequency = m_mirror.dblAmpMaxFreq;
    limits.lowestLevel = m_mirror.dblAmpMinDb;
    limits.highestLevel = m_mirror.dblAmpMaxDb;
    limits.lowestImpedance = m_mirror.dblImpMinOhms;
    limits.highestImpedance = m_mirror.dblImpMaxOhms;
    limits.reactanceMin = m_mirror.dblReactanceAxisMin;
    limits.reactanceMax = m_mirror.dblReactanceAxisMax;
    limits.resistanceMin = m_mirror.dblResistanceAxisMin;
    limits.resistanceMax = m_mirror.dblResistanceAxisMax;
    limits.susceptanceMin = m_mirror.dblSusceptanceAxisMin;
    limits.susceptanceMax = m_mirror.dblSusceptanceAxisMax;
    limits.conductanceMin = m_mirror.dblConductanceAxisMin;
    limits.conductanceMax = m_mirror.dblConductanceAxisMax;
    return limits;
}

bool InstrumentPlotSource::extentHeld() const
{
    return m_state.gbfSweepActive;
}

bool InstrumentPlotSource::followsExtent() const
{
    return m_mirror.bfGraphExtents;
}
