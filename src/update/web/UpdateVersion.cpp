// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/UpdateVersion.h"

#include "program/Version.h"
#include "values/Conversions.h"

#include <array>

namespace {

constexpr std::array kSeparators{u'R', u'D', u'U'};

/// The letters from start up to but without end; 0 when that is no integer.
std::int16_t integerBetween(const QString& name, qsizetype start, qsizetype end)
{
    return end < start ? std::int16_t(0)
                       : values::strictInt16(QStringView(name).sliced(start, end - start)).value_or(0);
}

} // namespace

std::int16_t updateversion::GetFileMajorVersion(const QString& strFileName)
{
    const qsizetype start = strFileName.indexOf(u'V') + 1;
    for (const char16_t separator : kSeparators) {
        // A separator that is the very first letter counts as none.
        if (const qsizetype end = strFileName.indexOf(separator, start); end >= 1)
            return integerBetween(strFileName, start, end);
    }
    return 0;
}

std::int16_t updateversion::GetFileMinorVersion(const QString& strFileName)
{
    qsizetype start = 0;
    for (const char16_t separator : kSeparators) {
        start = strFileName.indexOf(separator) + 1;
        if (start > 0)
            break;
    }
    return integerBetween(strFileName, start, strFileName.indexOf(u'B', start));
}

double updateversion::GetVersionFromFileName(const QString& strFileName)
{
    return versionNumber(GetFileMajorVersion(strFileName), GetFileMinorVersion(strFileName));
}

double updateversion::versionNumber(double major, double minor)
{
    return values::tolerantNumber(values::decimalText(major) + u'.' + values::decimalText(minor));
}

double updateversion::programVersion()
{
    return versionNumber(version::majorNumber(), version::minorNumber());
}
