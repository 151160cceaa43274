// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Lexer.h"

#include "values/Conversions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace ferrolex {
namespace {

constexpr std::array<std::string_view, 5> kUnits{"Hz", "s", "Ohm", "dB", "F"};
constexpr std::size_t kLongestNumber = 64;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// What a suffix of component values multiplies by; 0 for any other letter.
double factorOf(char suffix)
{
    switch (suffix) {
    case 'c':
    case 'C':
        return 1e2;
    case 'k':
    case 'K':
        return 1e3;
    case 'M':
        return 1e6;
    case 'g':
    case 'G':
        return 1e9;
    case 't':
    case 'T':
        return 1e12;
    case 'm':
        return 1e-3;
    case 'u':
        return 1e-6;
    case 'n':
        return 1e-9;
    case 'p':
        return 1e-12;
    case 'a':
        return 1e-15;
    default:
        return 0;
    }
}

bool isUnit(std::string_view text)
{
    return std::any_of(kUnits.begin(), kUnits.end(), [text](std::string_view unit) { return sameWord(text, unit); });
}

/// A unit, or a suffix with a unit behind it; the factor of the suffix.
std::optional<double> factorOfUnit(std::string_view text)
{
    if (isUnit(text))
        return 1.0;
    if (text.size() > 1 && factorOf(text[0]) != 0 && isUnit(text.substr(1)))
        return factorOf(text[0]);
    return {};
}

/// "12", "1.5", "1e6", "4k7", "2M2Hz", "250ms"; plain is true when neither suffix nor unit has come.
std::optional<double> numberOf(std::string_view text, bool& plain)
{
    plain = true;
    if (text.size() > kLongestNumber)
        return {};
    std::string digits;
    std::size_t at = 0;
    const auto takeDigits = [&] {
        while (at < text.size() && isDigit(text[at]))
            digits += text[at++];
    };
    takeDigits();
    bool pointSeen = false;
    if (at < text.size() && text[at] == '.') {
        pointSeen = true;
        digits += text[at++];
        takeDigits();
    }
    if (at < text.size() && lower(text[at]) == 'e') {
        digits += text[at++];
        if (at < text.size() && (text[at] == '+' || text[at] == '-'))
            digits += text[at++];
        takeDigits();
    }
    double factor = 1;
    std::string_view rest = text.substr(at);
    if (!rest.empty()) {
        plain = false;
        if (const auto unit = factorOfUnit(rest)) {
            factor = *unit;
        } else if (factor = factorOf(rest[0]); factor != 0) {
            ++at;
            if (!pointSeen && at < text.size() && isDigit(text[at])) {
                digits += '.';
                takeDigits();
            }
            rest = text.substr(at);
            if (!rest.empty() && !isUnit(rest))
                return {};
        } else {
            return {};
        }
    }
    const std::optional<double> number = values::strictNumber(std::string_view(digits));
    if (!number || !std::isfinite(*number * factor))
        return {};
    // A division keeps 250ms the double nearest to 0.25, which a product with 1e-3 does not.
    return factor < 1 ? *number / std::round(1 / factor) : *number * factor;
}

class Line
{
public:
    Line(std::string_view text, std::uint32_t offset)
        : m_text(text)
        , m_offset(offset)
    {}

    Token next()
    {
        while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\t' || m_text[m_at] == '\f'))
            ++m_at;
        if (m_at == m_text.size() || m_text[m_at] == '#')
            return token(Token::Kind::End, 0);
        const char c = m_text[m_at];
        if (isLetter(c))
            return token(Token::Kind::Word, wordLength(m_at));
        if (isDigit(c))
            return number();
        if (c == '"')
            return quoted();
        const std::string_view pair = m_text.substr(m_at, 2);
        if (pair == "<=" || pair == ">=" || pair == "<>")
            return token(Token::Kind::Symbol, 2);
        if (std::string_view("+-*/()=<>,{}:").find(c) != std::string_view::npos)
            return token(Token::Kind::Symbol, 1);
        std::size_t length = 1;
        while (m_at + length < m_text.size() && (static_cast<unsigned char>(m_text[m_at + length]) & 0xC0U) == 0x80U)
            ++length;
        return token(Token::Kind::BadCharacter, length);
    }

private:
    Token token(Token::Kind kind, std::size_t length)
    {
        Token token;
        token.kind = kind;
        token.text = m_text.substr(m_at, length);
        token.offset = m_offset + static_cast<std::uint32_t>(m_at);
        m_at += length;
        return token;
    }

    std::size_t wordLength(std::size_t from) const
    {
        std::size_t to = from;
        while (to < m_text.size() && (isLetter(m_text[to]) || isDigit(m_text[to])))
            ++to;
        return to - from;
    }

    Token number()
    {
        std::size_t to = m_at;
        const auto isExponentSign = [&] {
            return (m_text[to] == '+' || m_text[to] == '-') && lower(m_text[to - 1]) == 'e' && to + 1 < m_text.size() &&
                   isDigit(m_text[to + 1]) && isDigit(m_text[to - 2]);
        };
        while (to < m_text.size() && (isDigit(m_text[to]) || isLetter(m_text[to]) || m_text[to] == '.' ||
                                      (to > m_at + 1 && isExponentSign())))
            ++to;
        bool plain = true;
        const std::optional<double> value = numberOf(m_text.substr(m_at, to - m_at), plain);
        Token result = token(value ? Token::Kind::Number : Token::Kind::BadNumber, to - m_at);
        if (!value)
            return result;
        result.number = *value;
        if (plain)
            takeUnitBehind(result);
        return result;
    }

    /// "10 kHz": the unit may stand behind a blank.
    void takeUnitBehind(Token& number)
    {
        std::size_t at = m_at;
        while (at < m_text.size() && m_text[at] == ' ')
            ++at;
        const std::size_t length = at == m_text.size() || !isLetter(m_text[at]) ? 0 : wordLength(at);
        if (length == 0)
            return;
        const std::optional<double> factor = factorOfUnit(m_text.substr(at, length));
        if (!factor)
            return;
        number.number = *factor < 1 ? number.number / std::round(1 / *factor) : number.number * *factor;
        m_at = at + length;
    }

    Token quoted()
    {
        std::size_t to = m_at + 1;
        while (to < m_text.size()) {
            if (m_text[to] == '"') {
                if (to + 1 >= m_text.size() || m_text[to + 1] != '"')
                    break;
                ++to;
            }
            ++to;
        }
        const bool closed = to < m_text.size();
        Token result = token(closed ? Token::Kind::Text : Token::Kind::OpenText, to - m_at + (closed ? 1 : 0));
        result.text = result.text.substr(1, result.text.size() - (closed ? 2 : 1));
        return result;
    }

    std::string_view m_text;
    std::uint32_t m_offset;
    std::size_t m_at = 0;
};

} // namespace

void lexLine(std::string_view text, std::uint32_t offset, std::vector<Token>& tokens)
{
    tokens.clear();
    Line line(text, offset);
    do
        tokens.push_back(line.next());
    while (tokens.back().kind != Token::Kind::End);
}

bool sameWord(std::string_view one, std::string_view other)
{
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(), [](char a, char b) { return lower(a) == lower(b); });
}

} // namespace ferrolex
