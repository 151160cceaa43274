// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class Frame;

/// How a script wants its files, from one frame "m" to the next.
struct ScriptExportOptions
{
    std::int16_t iExportPenIndex = 0;  ///< 0 to 9, 10 all pens
    bool bfExportPhase = false;        ///< has no effect on a file
    bool bfExportSubset = false;       ///< the same
    std::int16_t iExportPrecision = 0; ///< the same
    bool bfExportNoStamp = false;      ///< names take no date, time and serial number
    bool bfExportHeader = false;
    bool bfExportComma = false;
    bool bfExportUnix = false;

    /// Takes the fields of a frame "m". False, with nothing changed, when F or I is no number; an I outside 0 to 7
    /// leaves the last three as they were.
    bool read(const Frame& frame);

    bool operator==(const ScriptExportOptions&) const = default;
};
