// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

class UserMessages;

/// Small helpers of the whole program. Colours are 0x00BBGGRR: red is the low byte.
namespace MainModule {

inline constexpr std::int32_t kWhite = 0xFFFFFF;
inline constexpr std::int32_t kBlack = 0;

/// The program's title without instance number; key of the settings store.
QString programTitle();
// The program's version.
int versionMajor();
int versionMinor();
int versionRevision();
/// "1.28.0"
QString versionText();

/// Largest number ParseEngineeringValue gives. There is no smallest.
inline constexpr double kLargestParsedValue = 2147483646.0;

/// The number meant by a text as people write component values, as ordinary decimal text: "4k7" is 4700, "2M2" 2200000.
/// The text is trimmed in place. A "-" anywhere negates. Digits count, the first decimal point counts, suffix letters
/// scale and take the place of the point (k K M g G t T c C, m u n p, and a for 1e-15); all else is skipped. Several
/// suffixes multiply. Never fails: no digit gives "0".
QString ParseEngineeringValue(QString& strValue);

/// All up to and including the last folder separator ("/" or "\"); empty when there is none.
QString PathOfFile(const QString& strFileName);
/// All behind the last folder separator; the whole text when there is none.
QString FileOfPath(const QString& strFileName);
/// No separator, ":", "*", "?", double quote, "<", ">" or "|" in the text. An empty text passes.
bool IsValidFileName(const QString& strFileName);
/// Every double quote is removed from the text, which is also the result.
QString RemoveQuotes(QString& strText);

/// Components 0 to 255; -1 for a value that is no colour (below 0 or above 0xFFFFFF).
std::int16_t ColourRed(std::int32_t lColour);
std::int16_t ColourGreen(std::int32_t lColour);
std::int16_t ColourBlue(std::int32_t lColour);
/// White or black, whichever is readable on the colour; white for a value that is no colour.
std::int32_t ContrastColour(std::int32_t lColour);
/// The same for the number on a pen's label.
std::uint32_t penLabelTextColour(std::uint32_t lColour);

/// 1 or 0, for commands.
int BoolToDigit(bool bfValue);

// Status texts: the ordinary decimal text and the unit.
QString frequencyText(double value);    ///< " Hz"
QString pointsText(int value);          ///< " pts"
QString millisecondsText(double value); ///< " mS"
QString decibelText(double value);      ///< " dB"

/// May this file be written? True at once when there is no such file, else the user is asked.
bool QuestionOverwriteFile(const QString& strFileName, UserMessages& messages);

} // namespace MainModule
