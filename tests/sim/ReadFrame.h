// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Conversions.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

/// A frame read back the way a host reads it.
struct ReadFrame
{
    char code = 0;
    char field = 0;
    double n1 = 0, n2 = 0, n3 = 0, n4 = 0;
    int i = 0;
    std::string text;
};

inline ReadFrame readFrame(std::string_view bytes)
{
    ReadFrame read;
    EXPECT_EQ(bytes.size(), 67u);
    if (bytes.size() != 67)
        return read;
    EXPECT_EQ(bytes[1], ':');
    EXPECT_EQ(bytes[65], '\r');
    read.code = bytes[0];
    read.field = bytes[2];
    read.n1 = values::tolerantNumber(bytes.substr(4, 13));
    read.n2 = values::tolerantNumber(bytes.substr(18, 13));
    read.n3 = values::tolerantNumber(bytes.substr(32, 13));
    read.n4 = values::tolerantNumber(bytes.substr(46, 13));
    read.i = values::strictInt32(bytes.substr(60, 5)).value_or(-1);
    const std::string_view text = bytes.substr(4, 61);
    const std::size_t last = text.find_last_not_of(' ');
    read.text = last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
    return read;
}

inline ReadFrame readFrame(const std::array<char, 67>& frame)
{
    return readFrame(std::string_view(frame.data(), frame.size()));
}

/// The codes in order, for example "DFFFEY".
inline std::string codesOf(const std::vector<ReadFrame>& frames)
{
    std::string codes;
    for (const ReadFrame& frame : frames)
        codes += frame.code;
    return codes;
}

inline std::vector<ReadFrame> framesOf(const std::vector<ReadFrame>& frames, char code)
{
    std::vector<ReadFrame> found;
    for (const ReadFrame& frame : frames) {
        if (frame.code == code)
            found.push_back(frame);
    }
    return found;
}
