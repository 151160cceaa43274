// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptExportOptions.h"

#include "link/rules/Frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int32_t kHeader = 1, kComma = 2, kUnix = 4, kAllFlags = 7;

std::int16_t shortOf(double value)
{
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(
        std::clamp<double>(std::nearbyint(value), double{Limits::min()}, double{Limits::max()}));
}

} // namespace

bool ScriptExportOptions::read(const Frame& frame)
{
    std::int32_t pen = 0, flags = 0;
    if (!frame.ParseF(pen) || !frame.ParseI(flags))
        return false;
    iExportPenIndex = static_cast<std::int16_t>(pen);
    bfExportPhase = frame.number(1) != 0;
    bfExportSubset = frame.number(2) != 0;
    iExportPrecision = shortOf(frame.number(3));
    bfExportNoStamp = frame.number(4) != 0;
    if (flags >= 0 && flags <= kAllFlags) {
        bfExportHeader = (flags & kHeader) != 0;
        bfExportComma = (flags & kComma) != 0;
        bfExportUnix = (flags & kUnix) != 0;
    }
    return true;
}
