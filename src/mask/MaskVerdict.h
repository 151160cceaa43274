// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mask/MaskTest.h"

#include <QString>

class PenDocument;
class UserMessages;

/// What the test of a pen came to.
struct MaskVerdict
{
    bool inside = true;
    bool hasData = false;
    std::optional<WorstMaskPoint> worst; ///< of all points of the pen; nothing where none has a limit
};

/// What a mask test says to the user, whichever road leads to it.
namespace maskverdict {

enum class Readiness
{
    Ready,
    NoMask,    ///< the marker is not there
    Unordered, ///< the frequencies of a line do not ascend
    NewFormat  ///< the plot was saved by a later program
};

MaskVerdict of(GraphModel& graph, int pen);

/// "Worst point: 40120 Hz, ..." in the unit of the axis.
QString details(const MaskVerdict& verdict, std::int16_t testType);
/// "Ohm" or "dB".
QString unit(std::int16_t testType);

/// Tells why there is no test; nothing for Ready.
void tellRefusal(Readiness reason, UserMessages& messages);
/// Tells the verdict on the pen of that number (from 1).
void tell(const MaskVerdict& verdict, int penNumber, std::int16_t testType, UserMessages& messages);

/// The menu's road: tests the current pen.
void checkCurrentPen(PenDocument& document, UserMessages& messages);

} // namespace maskverdict
