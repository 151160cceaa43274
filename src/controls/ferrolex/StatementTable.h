// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/DeviceRanges.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ferrolex {

/// A sum of arguments and constants, by which an action fills a field of a frame or an argument of a command.
struct Sum
{
    struct Term
    {
        double factor = 1;
        int slot = -1; ///< -1: the factor alone
        int bit = -1;  ///< of the slot's whole number; -1: all of it
    };
    std::vector<Term> terms;
};

/// One thing that an action does.
struct Step
{
    enum class Kind
    {
        Command,  ///< writes a command word to the instrument itself
        SweepEnd, ///< waits for the end of the sweep
        Pause,    ///< waits for the time, s
        Frame     ///< asks the host
    };
    Kind kind = Kind::Frame;
    std::string word;        ///< Command: its word; Frame: a text that stands
    std::vector<Sum> values; ///< Command: its argument, one number directly behind the other; Pause: the time
    char code = 0;
    bool textForm = false;
    bool keepsNumbers = false; ///< Frame: N1 to N4 and I are those of the last frame of this code in the run
    Sum field, n1, n2, n3, n4, i;
    int textSlot = -1; ///< of the text; -1: the word is the text
};

/// A statement that acts: how it is written, and the road from it to commands and frames.
struct Action
{
    enum Trait : unsigned
    {
        Measures = 1,       ///< a sweep or a level
        Asks = 2,           ///< waits for the user
        Keeps = 4,          ///< results are saved, exported or printed
        Opens = 8,          ///< a graph is there afterwards
        Loads = 16,         ///< the graph may have masks
        TestsMask = 32,     //
        Analyses = 64,      //
        EndsScript = 128,   //
        NeedsGraph = 256,   ///< does nothing without a graph
        Sweeps = 512,       ///< a whole sweep, up to its end
        StartsSweep = 1024, ///< and leaves it running
        Saves = 2048        ///< a plot
    };
    struct Slot
    {
        std::string name;
        ArgumentType type = ArgumentType::Number;
        std::vector<std::pair<std::string, double>> choices;
        double fallback = 0; ///< when its group is left out
    };
    struct Part
    {
        std::string word; ///< empty: an argument
        int slot = -1;
    };
    using Group = std::vector<Part>;

    std::string pattern; ///< as the documentation shows it
    std::string road;    ///< the same for what it causes
    unsigned traits = 0;
    Group head;
    std::vector<Group> options; ///< in any order, each at most once, each begun by a word of its own
    std::vector<Slot> slots;
    std::vector<Step> steps;
};

/// All actions; made once.
const std::vector<Action>& actions();

/// Whether the host answers a frame of this code by a blank.
bool isAnswered(char code);

} // namespace ferrolex
