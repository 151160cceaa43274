// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>

#include <cstdint>
#include <string_view>
#include <vector>

namespace ferrolex {

/// The text of a script: UTF-8 with or without a byte order mark, any line ends.
class Source
{
public:
    static constexpr qsizetype kLargest = 1024 * 1024; ///< bytes

    /// The sentence of a failure says why this is no script: too large, or no text.
    static ValueOr<Source> of(const QByteArray& bytes);

    int lineCount() const { return static_cast<int>(m_lineStarts.size()); }
    /// Without its line end. Lines count from 1.
    std::string_view line(int number) const;
    std::uint32_t lineStart(int number) const { return m_lineStarts[static_cast<std::size_t>(number - 1)]; }
    int lineOf(std::uint32_t offset) const;

private:
    explicit Source(QByteArray text);

    QByteArray m_text;
    std::vector<std::uint32_t> m_lineStarts;
    std::vector<std::uint32_t> m_lineLengths;
};

} // namespace ferrolex
