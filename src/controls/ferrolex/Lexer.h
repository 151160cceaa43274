// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ferrolex {

struct Token
{
    enum class Kind
    {
        Word,   ///< letters, digits and "_", beginning with a letter
        Number, ///< with suffix and unit taken into account
        Text,   ///< between the quotes; doubled quotes and braces are still as written
        Symbol,
        End, ///< of the line
        BadNumber,
        OpenText, ///< no closing quote
        BadCharacter
    };
    Kind kind = Kind::End;
    std::string_view text;
    std::uint32_t offset = 0; ///< into the script
    double number = 0;
};

/// Cuts one line into tokens, of which the last is always an End; a comment is passed over. Numbers are in base units:
/// "4k7" is 4700, "10 kHz" 10000, "250ms" 0.25.
void lexLine(std::string_view line, std::uint32_t offset, std::vector<Token>& tokens);

/// Letters of ASCII compare without regard to case.
bool sameWord(std::string_view one, std::string_view other);

} // namespace ferrolex
