// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/EngineeringText.h"

#include "values/Conversions.h"

#include <QRegularExpression>

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace values {

using namespace Qt::StringLiterals;

/// Puts a status text together.
class StatusTextWriter
{
public:
    StatusTextWriter& operator<<(std::string_view text)
    {
        assert(m_text.m_length + text.size() <= m_text.m_buffer.size());
        std::memcpy(end(), text.data(), text.size());
        m_text.m_length += text.size();
        return *this;
    }
    StatusTextWriter& operator<<(double value)
    {
        assert(m_text.m_length + kDecimalTextSize <= m_text.m_buffer.size());
        m_text.m_length += writeDecimal(value, end());
        return *this;
    }
    StatusTextWriter& operator<<(int value)
    {
        char* const limit = m_text.m_buffer.data() + m_text.m_buffer.size();
        m_text.m_length = static_cast<std::size_t>(std::to_chars(end(), limit, value).ptr - m_text.m_buffer.data());
        return *this;
    }
    operator StatusText() const { return m_text; }

private:
    char* end() { return m_text.m_buffer.data() + m_text.m_length; }
    StatusText m_text;
};

namespace {

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

/// The nearest number of so many significant digits.
double roundedTo(double value, int significant)
{
    char buffer[64];
    const auto written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, significant - 1);
    double rounded = value;
    std::from_chars(buffer, written.ptr, rounded);
    return rounded;
}

} // namespace

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
    const double magnitude = tolerantNumber(number + u'e' + QString::number(power));
    const double value = strValue.contains(u'-') ? std::max(-magnitude, std::numeric_limits<double>::lowest())
                                                 : std::min(magnitude, kLargestParsedValue);
    return decimalText(value);
}

std::optional<double> enteredNumber(const QString& text)
{
    QString number = text;
    number.replace(u',', u'.');
    if (number.contains(u'e', Qt::CaseInsensitive)) {
        const auto value = strictNumber(number);
        return value ? std::optional(std::min(*value, kLargestParsedValue)) : value;
    }
    static const QRegularExpression digit(u"[0-9]"_s);
    if (!number.contains(digit))
        return std::nullopt;
    return tolerantNumber(ParseEngineeringValue(number));
}

std::optional<double> frequencyOf(const QString& text)
{
    static const QRegularExpression suffixed(u"^(?=.*[0-9])[0-9]*(?:\\.[0-9]*)?[kKMgGtT]$|^[0-9]+[kKMgGtT][0-9]+$"_s);
    QString number = text.trimmed();
    if (number.endsWith("Hz"_L1))
        number = number.chopped(2).remove(u' ');
    if (suffixed.match(number).hasMatch())
        number = ParseEngineeringValue(number);
    return strictNumber(number);
}

QString engineeringText(double value, const QString& unit, int significant)
{
    if (!std::isfinite(value))
        return decimalText(value) + u' ' + unit;
    static constexpr std::array<const char*, 9> prefixes = {"p", "n", "u", "m", "", "k", "M", "G", "T"};
    // Rounded first: 999.96 becomes 1 k.
    const double rounded = QString::number(value, 'e', significant - 1).toDouble();
    int exponent = rounded == 0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(rounded)) / 3 + 1e-12));
    exponent = std::clamp(exponent, -4, 4);
    const double scaled = QString::number(rounded / std::pow(1000.0, exponent), 'g', significant).toDouble();
    const int prefix = exponent + 4;
    return decimalText(scaled) + u' ' + QLatin1String(prefixes[static_cast<std::size_t>(prefix)]) + unit;
}

int BoolToDigit(bool bfValue)
{
    return bfValue ? 1 : 0;
}

StatusText frequencyText(double hertz)
{
    return StatusTextWriter() << hertz << " Hz";
}

StatusText pointsText(double points)
{
    return StatusTextWriter() << points << " pts";
}

StatusText progressText(int point, int points)
{
    return StatusTextWriter() << point << "/" << points << " pts";
}

StatusText millisecondsText(double ms)
{
    return StatusTextWriter() << ms << " mS";
}

StatusText decibelText(double dB)
{
    // A step of 0.1 dB taken three times is 0.3 and not 0.30000000000000004.
    constexpr int kSignificant = 6;
    return StatusTextWriter() << roundedTo(dB, kSignificant) << " dB";
}

StatusText attenuationText(int code, double dblAttenuationStep)
{
    return decibelText(-(code * dblAttenuationStep));
}

} // namespace values
