// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Moment.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// Cuts what the host writes into commands, acknowledgements and script bytes, and lets garbage pass by.
///
/// A command is a word, a blank and an argument, ended by a carriage return. A blank with nothing behind it is the
/// acknowledgement of a script action; " y" and a carriage return is the stop of a script. Since the blank may have
/// come ahead of the rest, a lone one counts as acknowledgement only after kBlankPause. Line feeds and other control
/// characters are skipped; a line longer than kLongestLine is dropped whole.
class CommandParser
{
public:
    static constexpr std::size_t kLongestLine = 256;
    static constexpr Duration kBlankPause = std::chrono::milliseconds(5);

    enum class Kind
    {
        Command,
        Acknowledge,
        StopScript,
        Block
    };
    struct Input
    {
        Kind kind = Kind::Command;
        std::string word;     ///< of a command
        std::string argument; ///< of a command, without blanks around it; the bytes of a block
    };

    void feed(std::string_view bytes, Moment now);
    /// The next whole input, if one is there. To be called until there is none.
    std::optional<Input> next(Moment now);
    /// The next so many bytes are no commands; they are handed out as blocks as they come.
    void expectBlock(std::size_t bytes) { m_blockLeft = bytes; }
    std::size_t blockLeft() const { return m_blockLeft; }
    /// When a waiting blank turns into an acknowledgement.
    std::optional<Moment> nextDue() const;
    /// Forgets everything half received.
    void reset();

private:
    void dropFront(std::size_t bytes);
    std::string_view waiting() const { return std::string_view(m_buffer).substr(m_begin); }

    std::string m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_blockLeft = 0;
    bool m_skippingLine = false;
    Moment m_lastFeed{0};
};

} // namespace sim
