// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/CommandParser.h"

#include <gtest/gtest.h>

using sim::CommandParser;
using Kind = sim::CommandParser::Kind;

namespace {

const sim::Moment kStart = std::chrono::seconds(10);
const sim::Moment kLater = kStart + CommandParser::kBlankPause;

/// All inputs as one text: words in brackets, "!" acknowledgement, "#" stop of a script.
std::string inputs(CommandParser& parser, sim::Moment now)
{
    std::string text;
    while (const auto input = parser.next(now)) {
        switch (input->kind) {
        case Kind::Command:
            text += '[' + input->word + (input->argument.empty() ? "" : ":" + input->argument) + ']';
            break;
        case Kind::Acknowledge:
            text += '!';
            break;
        case Kind::StopScript:
            text += '#';
            break;
        case Kind::Block:
            text += '{' + input->argument + '}';
            break;
        }
    }
    return text;
}

std::string parsed(std::string_view bytes)
{
    CommandParser parser;
    parser.feed(bytes, kStart);
    return inputs(parser, kLater);
}

} // namespace

TEST(CommandParser, CutsCommandsAtCarriageReturns)
{
    EXPECT_EQ(parsed("startfreq 1000\rpoints 64\ry\rimptest\r"), "[startfreq:1000][points:64][y][imptest]");
}

TEST(CommandParser, KeepsTheSecondNumberWithTheArgument)
{
    EXPECT_EQ(parsed("setvref 12 0\r"), "[setvref:12 0]");
    EXPECT_EQ(parsed("phasecal \r"), "[phasecal]");
}

TEST(CommandParser, WaitsForTheRestOfACommand)
{
    CommandParser parser;
    parser.feed("points 10", kStart);
    EXPECT_EQ(inputs(parser, kLater), "");
    parser.feed("24\r", kLater);
    EXPECT_EQ(inputs(parser, kLater), "[points:1024]");
}

TEST(CommandParser, ALoneBlankIsAnAcknowledgementAfterAPause)
{
    CommandParser parser;
    parser.feed(" ", kStart);
    EXPECT_EQ(inputs(parser, kStart), "");
    ASSERT_TRUE(parser.nextDue());
    EXPECT_EQ(*parser.nextDue(), kLater);
    EXPECT_EQ(inputs(parser, kLater), "!");
    EXPECT_FALSE(parser.nextDue());
}

TEST(CommandParser, ABlankAndYStopsTheScriptEvenWhenItComesInPieces)
{
    EXPECT_EQ(parsed(" y\r"), "#");
    CommandParser parser;
    for (const char* piece : {" ", "y", "\r"}) {
        EXPECT_EQ(inputs(parser, kStart), "");
        parser.feed(piece, kStart);
    }
    EXPECT_EQ(inputs(parser, kStart), "#");
}

TEST(CommandParser, ABlankAheadOfAnotherCommandIsAnAcknowledgement)
{
    EXPECT_EQ(parsed(" points 5\r"), "![points:5]");
    EXPECT_EQ(parsed(" yes\r"), "![yes]");
    EXPECT_EQ(parsed("  "), "!!");
    EXPECT_EQ(parsed(" \r"), "!");
}

TEST(CommandParser, HandsOutAnnouncedBytesAsTheyStand)
{
    CommandParser parser;
    parser.feed("loadscript 6\r", kStart);
    EXPECT_EQ(inputs(parser, kStart), "[loadscript:6]");
    parser.expectBlock(6);
    parser.feed(" y\r", kStart);
    EXPECT_EQ(inputs(parser, kStart), "{ y\r}");
    parser.feed("\n\x01zrun\r", kStart);
    EXPECT_EQ(inputs(parser, kStart), "{\n\x01z}[run]");
}

TEST(CommandParser, PassesOverControlCharactersAndEmptyLines)
{
    EXPECT_EQ(parsed(std::string_view("\0\n\r\r\npoi\x02nts 5\r\n", 15)), "[points:5]");
}

TEST(CommandParser, DropsALineTooLongAndFindsTheNext)
{
    std::string rubbish(5000, 'z');
    rubbish += "\rpoints 5\r";
    EXPECT_EQ(parsed(rubbish), "[points:5]");
    CommandParser parser;
    for (int i = 0; i < 100; ++i) {
        parser.feed(std::string(1000, 'q'), kStart);
        EXPECT_EQ(inputs(parser, kStart), "");
    }
    parser.feed("\rpoints 5\r", kStart);
    EXPECT_EQ(inputs(parser, kStart), "[points:5]");
}

TEST(CommandParser, EverySplitOfAStreamGivesTheSameInputs)
{
    const std::string stream = "points 10\r y\rstartfreq 1.5\rampspot 2000\r";
    const std::string whole = parsed(stream);
    for (std::size_t i = 0; i <= stream.size(); ++i) {
        for (std::size_t j = i; j <= stream.size(); ++j) {
            CommandParser parser;
            std::string seen;
            for (const auto& [from, to] : {std::pair{std::size_t{0}, i}, {i, j}, {j, stream.size()}}) {
                parser.feed(std::string_view(stream).substr(from, to - from), kStart);
                seen += inputs(parser, kStart);
            }
            ASSERT_EQ(seen, whole) << i << ' ' << j;
        }
    }
}
