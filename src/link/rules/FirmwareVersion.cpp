// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/FirmwareVersion.h"

#include "instrument/InstrumentMirror.h"
#include "values/Conversions.h"

#include <cmath>

double firmwareVersionNumber(double major, double minor)
{
    if (!std::isfinite(minor))
        return major;
    double fraction = minor;
    while (fraction > 1)
        fraction /= 10;
    return major + fraction;
}

QString firmwareVersionText(const InstrumentMirror& mirror)
{
    return QLatin1String(mirror.bfDebugFirmware ? "DEBUG V" : "V") + values::decimalText(mirror.dblFirmwareMajor) +
           QLatin1Char('.') + values::decimalText(mirror.dblFirmwareMinor) + QLatin1String(" Build ") +
           values::decimalText(mirror.dblFirmwareBuild);
}

std::int16_t deviceTypeOfModel(const QString& strDeviceModel)
{
    if (strDeviceModel == kSamplingModel)
        return 2;
    return strDeviceModel == QLatin1String("T46") ? 1 : 0;
}
