// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <array>
#include <charconv>

/// Frames as an instrument sends them: 67 bytes in fixed columns.
namespace frametext {

inline QByteArray decimal(double value)
{
    std::array<char, 40> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 10);
    return {text.data(), end.ptr - text.data()};
}

/// Fields as texts: N1 to N4 right-justified in 13 columns, I in 5.
inline QByteArray raw(char code, char f, const QByteArray& n1, const QByteArray& n2, const QByteArray& n3,
                      const QByteArray& n4, const QByteArray& i)
{
    QByteArray frame;
    frame.reserve(67);
    frame += code;
    frame += ':';
    frame += f;
    for (const QByteArray* number : {&n1, &n2, &n3, &n4}) {
        frame += ' ';
        frame += number->rightJustified(13, ' ', true);
    }
    frame += ' ';
    frame += i.rightJustified(5, ' ', true);
    frame += "\r\n";
    return frame;
}

inline QByteArray numbers(char code, char f, double n1 = 0, double n2 = 0, double n3 = 0, double n4 = 0, int i = 0)
{
    return raw(code, f, decimal(n1), decimal(n2), decimal(n3), decimal(n4), QByteArray::number(i));
}

/// The text form: F in column 3, a text in columns 5 to 65.
inline QByteArray text(char code, char f, const QByteArray& text)
{
    QByteArray frame;
    frame += code;
    frame += ':';
    frame += f;
    frame += ' ';
    frame += text.leftJustified(61, ' ', true);
    frame += "\r\n";
    return frame;
}

} // namespace frametext
