#include "link/Frame.h"

#include "values/Conversions.h"

namespace {

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

bool Frame::ParseField(int pos, int len, std::int32_t& result) const noexcept
{
    const std::string_view field = columns(pos, len);
    // A count padded with blanks on the left is what instruments send; everything else takes the general road.
    std::size_t i = 0;
    while (i < field.size() && field[i] == ' ')
        ++i;
    std::int32_t value = 0;
    const std::size_t firstDigit = i;
    while (i < field.size() && isDigit(field[i]))
        value = value * 10 + (field[i++] - '0');
    if (i == field.size() && i > firstDigit) {
        result = value;
        return true;
    }
    if (field == "A") {
        result = 10;
        return true;
    }
    const auto strict = values::strictInt32(field);
    if (!strict)
        return false;
    result = *strict;
    return true;
}

void Frame::ParseNumber(int pos, double& result) const noexcept
{
    constexpr int kNumberWidth = 13;
    result = values::tolerantNumber(columns(pos, kNumberWidth));
}

void Frame::ParseText(QString& result) const
{
    constexpr int kTextColumn = 5;
    constexpr int kTextWidth = 61;
    std::string_view text = columns(kTextColumn, kTextWidth);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    result = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}
