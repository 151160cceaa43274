// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/Frames.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace sim {

namespace {

constexpr std::size_t kNumberAt[] = {4, 18, 32, 46};
constexpr std::size_t kIntegerAt = 60;
constexpr std::size_t kIntegerWidth = 5;
constexpr std::size_t kTextAt = 4;

Frame emptyFrame(char code, char column3)
{
    Frame frame;
    frame.fill(' ');
    frame[0] = code;
    frame[1] = ':';
    frame[2] = column3;
    frame[65] = '\r';
    frame[66] = '\n';
    return frame;
}

char fieldCharacter(int field)
{
    if (field == 10)
        return 'A';
    return field >= 0 && field <= 9 ? static_cast<char>('0' + field) : '0';
}

void place(std::string_view text, char* columns, std::size_t width)
{
    std::memset(columns, ' ', width - text.size());
    std::memcpy(columns + (width - text.size()), text.data(), text.size());
}

/// Takes the sign "+" and leading zeros out of the exponent, which buys up to two digits.
std::size_t shortenExponent(char* text, std::size_t length)
{
    char* const end = text + length;
    char* mark = std::find(text, end, 'e');
    if (mark == end)
        return length;
    char* from = mark + 1;
    char* to = mark + 1;
    if (from != end && *from == '+')
        ++from;
    else if (from != end && *from == '-')
        *to++ = *from++;
    while (from + 1 < end && *from == '0')
        ++from;
    while (from != end)
        *to++ = *from++;
    return static_cast<std::size_t>(to - text);
}

} // namespace

void writeNumber(double value, char* columns)
{
    if (std::isnan(value) || value == 0.0)
        value = 0.0; // also takes the sign of -0
    value = std::clamp(value, -1e300, 1e300);

    char text[400];
    const double magnitude = std::fabs(value);
    const bool plain = magnitude == 0.0 || (magnitude >= 1e-3 && magnitude < 1e12);
    if (plain) {
        auto written = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
        auto length = static_cast<std::size_t>(written.ptr - text);
        const auto whole = static_cast<std::size_t>(std::find(text, text + length, '.') - text);
        if (length > kNumberWidth) {
            // Rounding up may add a digit in front (9.99... becomes 10.0...), hence the second try.
            for (int precision = static_cast<int>(kNumberWidth - std::min(whole + 1, kNumberWidth)); precision >= 0;
                 --precision) {
                written = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision);
                length = static_cast<std::size_t>(written.ptr - text);
                if (length <= kNumberWidth)
                    break;
            }
        }
        if (length <= kNumberWidth) {
            place({text, length}, columns, kNumberWidth);
            return;
        }
    }
    auto written = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific);
    std::size_t length = shortenExponent(text, static_cast<std::size_t>(written.ptr - text));
    for (int precision = 11; length > kNumberWidth && precision >= 0; --precision) {
        written = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, precision);
        length = shortenExponent(text, static_cast<std::size_t>(written.ptr - text));
    }
    place({text, length}, columns, kNumberWidth);
}

Frame numberFrame(char code, int field, const FrameNumbers& numbers)
{
    Frame frame = emptyFrame(code, fieldCharacter(field));
    writeNumber(numbers.n1, frame.data() + kNumberAt[0]);
    writeNumber(numbers.n2, frame.data() + kNumberAt[1]);
    writeNumber(numbers.n3, frame.data() + kNumberAt[2]);
    writeNumber(numbers.n4, frame.data() + kNumberAt[3]);
    char text[16];
    const auto written = std::to_chars(text, text + sizeof text, std::clamp(numbers.i, -9999, 99999));
    place({text, static_cast<std::size_t>(written.ptr - text)}, frame.data() + kIntegerAt, kIntegerWidth);
    return frame;
}

Frame selectorFrame(char code, char selector, std::string_view text)
{
    Frame frame = emptyFrame(code, selector);
    const std::size_t length = std::min(text.size(), kTextWidth);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), frame.begin() + kTextAt,
                   [](char c) { return c >= ' ' && c <= '~' ? c : '?'; });
    return frame;
}

Frame textFrame(char code, int field, std::string_view text)
{
    return selectorFrame(code, fieldCharacter(field), text);
}

} // namespace sim
