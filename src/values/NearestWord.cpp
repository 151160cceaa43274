// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/NearestWord.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace values {
namespace {

// Optimal string alignment: insertions, deletions, substitutions and swaps of neighbours.
qsizetype distance(const QString& a, const QString& b)
{
    const auto width = static_cast<std::size_t>(b.size()) + 1;
    std::vector<qsizetype> twoAbove(width), above(width), row(width);
    std::iota(above.begin(), above.end(), 0);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const qsizetype changed = a[i - 1] == b[j - 1] ? 0 : 1;
            row[at] = std::min({above[at] + 1, row[at - 1] + 1, above[at - 1] + changed});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[at] = std::min(row[at], twoAbove[at - 2] + 1);
        }
        twoAbove.swap(above);
        above.swap(row);
    }
    return above.back();
}

} // namespace

QString nearestWord(const QString& word, const QStringList& candidates)
{
    constexpr qsizetype kLongestWord = 256; // beyond it nobody mistyped anything
    if (word.size() > kLongestWord)
        return {};
    QString nearest;
    qsizetype fewest = std::max<qsizetype>(1, word.size() / 3) + 1;
    for (const QString& candidate : candidates) {
        if (candidate.size() > kLongestWord)
            continue;
        const qsizetype wrong = distance(word.toLower(), candidate.toLower());
        if (wrong < fewest && wrong < candidate.size()) {
            fewest = wrong;
            nearest = candidate;
        }
    }
    constexpr qsizetype kShortestBeginning = 3;
    if (!nearest.isEmpty() || word.size() < kShortestBeginning)
        return nearest;
    const auto begun = std::find_if(candidates.begin(), candidates.end(), [&word](const QString& candidate) {
        return candidate.startsWith(word, Qt::CaseInsensitive);
    });
    return begun == candidates.end() ? QString() : *begun;
}

} // namespace values
