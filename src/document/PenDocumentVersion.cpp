// SPDX-License-Identifier: GPL-3.0-or-later
// Where a plot comes from: program, instrument and date.
#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "document/VersionText.h"
#include "instrument/InstrumentMirror.h"
#include "program/ProgramState.h"
#include "program/Version.h"
#include "values/Conversions.h"

#include <QDate>
#include <QLocale>

namespace {

/// The connected instrument for the version text; empty without one.
QString instrumentPart(const KorvaLink& device, const InstrumentMirror& mirror)
{
    if (!device.Connected())
        return QString();
    const QString name = mirror.strDeviceModel.isEmpty() ? device.ConnectedName() : mirror.strDeviceModel;
    QString text = QStringLiteral("%1 V%2.%3.%4")
                       .arg(name, values::decimalText(mirror.dblFirmwareMajor),
                            values::decimalText(mirror.dblFirmwareMinor), values::decimalText(mirror.dblFirmwareBuild));
    if (!mirror.bfCalibrated)
        text += QLatin1String(" Uncalibrated");
    return text;
}

} // namespace

QString PenDocument::GetVersion() const
{
    return VersionText::programVersion(m_graph.TXAxisLabel());
}

QString PenDocument::SetVersion() const
{
    const QString software = version::titled(m_context.state.gstrAppTitle);
    return VersionText::next(m_graph.TXAxisLabel(), software, instrumentPart(m_context.device, m_context.mirror),
                             QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
}
