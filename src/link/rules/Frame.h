// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

/// One inbound frame: 67 bytes of ASCII in fixed columns, counted from 1.
///
///   1      message code              5-17, 19-31, 33-45, 47-59   numbers N1 to N4
///   2      ":"                       61-65                       integer I
///   3      integer F, one character  66                          carriage return
///   67     any byte                  5-65                        text, in frames of the text form
///
/// Columns between the fields are never read. Reading allocates nothing but where a QString is returned.
class Frame
{
public:
    static constexpr std::size_t kLength = 67;
    static constexpr std::size_t kReturnColumn = 66;

    /// Copies kLength bytes.
    explicit Frame(const char* bytes) { std::memcpy(m_bytes.data(), bytes, kLength); }

    char code() const { return m_bytes[0]; }
    /// Column 3 as it stands.
    char selector() const { return m_bytes[2]; }

    /// The strict reading of len columns from pos: the single text "A" is 10, any other text must be a number as a
    /// whole, blanks around it allowed; a fraction is rounded half to even. False: no number, result untouched.
    bool ParseField(int pos, int len, std::int32_t& result) const noexcept;
    bool ParseF(std::int32_t& result) const noexcept { return ParseField(3, 1, result); }
    bool ParseI(std::int32_t& result) const noexcept { return ParseField(61, 5, result); }

    /// The tolerant reading of the 13 columns from pos: leading blanks skipped, the longest numeric prefix, 0 if none.
    void ParseNumber(int pos, double& result) const noexcept;
    /// N1 to N4.
    double number(int n) const noexcept
    {
        double result = 0;
        ParseNumber(5 + 14 * (n - 1), result);
        return result;
    }

    /// Whether N1 to N4 is a number as a whole, blanks around it allowed: what the tolerant reading makes of a damaged
    /// field is no number that the instrument sent.
    bool isNumber(int n) const noexcept;

    /// Columns 5 to 65 without leading and trailing blanks.
    void ParseText(QString& result) const;
    QString text() const
    {
        QString result;
        ParseText(result);
        return result;
    }

private:
    std::string_view columns(int pos, int len) const
    {
        return {m_bytes.data() + pos - 1, static_cast<std::size_t>(len)};
    }

    std::array<char, kLength> m_bytes;
};
