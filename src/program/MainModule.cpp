// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/MainModule.h"

#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace {

qsizetype lastSeparator(const QString& path)
{
    return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
}

/// The power of ten of a suffix letter; 0 for a character that is none.
int powerOfSuffix(char16_t letter)
{
    switch (letter) {
    case u'c':
    case u'C':
        return 2;
    case u'k':
    case u'K':
        return 3;
    case u'M':
        return 6;
    case u'g':
    case u'G':
        return 9;
    case u't':
    case u'T':
        return 12;
    case u'm':
        return -3;
    case u'u':
        return -6;
    case u'n':
        return -9;
    case u'p':
        return -12;
    case u'a':
        return -15;
    default:
        return 0;
    }
}

constexpr bool isColour(std::int32_t colour)
{
    return colour >= 0 && colour <= 0xFFFFFF;
}

std::int16_t component(std::int32_t colour, int shift)
{
    return isColour(colour) ? static_cast<std::int16_t>((colour >> shift) & 0xFF) : std::int16_t{-1};
}

} // namespace

namespace MainModule {

QString programTitle()
{
    return QStringLiteral("MarrowickGraph");
}

int versionMajor()
{
    return MG_VERSION_MAJOR;
}

int versionMinor()
{
    return MG_VERSION_MINOR;
}

int versionRevision()
{
    return MG_VERSION_REVISION;
}

QString versionText()
{
    return QStringLiteral("%1.%2.%3").arg(versionMajor()).arg(versionMinor()).arg(versionRevision());
}

QString ParseEngineeringValue(QString& strValue)
{
    strValue = strValue.trimmed();
    QString number;
    bool hasPoint = false;
    std::int64_t power = 0;
    for (const QChar c : std::as_const(strValue)) {
        const char16_t unit = c.unicode();
        if (unit >= u'0' && unit <= u'9') {
            number += c;
        } else if (const int suffix = powerOfSuffix(unit); suffix != 0 || unit == u'.') {
            power += suffix;
            if (!hasPoint)
                number += u'.';
            hasPoint = true;
        }
    }
    // Every factor is a power of ten, so the text with that exponent is the exact product, rounded once: 4u7 is
    // 0.0000047.
    const double magnitude = values::tolerantNumber(number + u'e' + QString::number(power));
    const double value = strValue.contains(u'-') ? std::max(-magnitude, std::numeric_limits<double>::lowest())
                                                 : std::min(magnitude, kLargestParsedValue);
    return values::decimalText(value);
}

QString PathOfFile(const QString& strFileName)
{
    return strFileName.first(lastSeparator(strFileName) + 1);
}

QString FileOfPath(const QString& strFileName)
{
    return strFileName.sliced(lastSeparator(strFileName) + 1);
}

bool IsValidFileName(const QString& strFileName)
{
    static constexpr QStringView kForbidden = u"\\/:*?\"<>|";
    return std::none_of(strFileName.begin(), strFileName.end(), [](QChar c) { return kForbidden.contains(c); });
}

QString RemoveQuotes(QString& strText)
{
    return strText.remove(u'"');
}

std::int16_t ColourRed(std::int32_t lColour)
{
    return component(lColour, 0);
}

std::int16_t ColourGreen(std::int32_t lColour)
{
    return component(lColour, 8);
}

std::int16_t ColourBlue(std::int32_t lColour)
{
    return component(lColour, 16);
}

std::int32_t ContrastColour(std::int32_t lColour)
{
    const int weight = 5 * ColourGreen(lColour) + 2 * ColourRed(lColour) + ColourBlue(lColour);
    return weight < 401 ? kWhite : kBlack;
}

std::uint32_t penLabelTextColour(std::uint32_t lColour)
{
    const auto colour = static_cast<std::int32_t>(lColour & 0xFFFFFFu);
    return static_cast<std::uint32_t>(ContrastColour(colour));
}

int BoolToDigit(bool bfValue)
{
    return bfValue ? 1 : 0;
}

QString frequencyText(double value)
{
    return values::decimalText(value) + QLatin1String(" Hz");
}

QString pointsText(int value)
{
    return values::decimalText(value) + QLatin1String(" pts");
}

QString millisecondsText(double value)
{
    return values::decimalText(value) + QLatin1String(" mS");
}

QString decibelText(double value)
{
    return values::decimalText(value) + QLatin1String(" dB");
}

bool QuestionOverwriteFile(const QString& strFileName, UserMessages& messages)
{
    const QFileInfo file(strFileName);
    if (!file.exists() && !file.isSymLink())
        return true;
    const QString question = QCoreApplication::translate("MainModule", "The file \"%1\" already exists.\n"
                                                                       "Do you want to replace it?");
    const QString title = QCoreApplication::translate("MainModule", "Overwrite existing?");
    return messages.message(question.arg(strFileName), UserMessages::YesNo + UserMessages::Question, title) ==
           UserMessages::ReplyYes;
}

} // namespace MainModule
