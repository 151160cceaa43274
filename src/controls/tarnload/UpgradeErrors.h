// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/file/FirmwareFile.h"

#include <QString>

#include <cstdint>

namespace tarnload {

inline constexpr int kLongestErrorText = 128; ///< characters

/// What ProgramDevice answers; 0 is success. Whatever fails before Interrupted has left the instrument as it was.
enum class UpgradeError : std::int16_t
{
    None = 0,
    NoFile = 1,
    Unreadable = 2,
    NotFirmware = 3,
    LaterFormat = 4,
    Damaged = 5,
    Unsigned = 6,
    NoTrustedKeys = 7,
    UnknownKey = 8,
    BadSignature = 9,
    Busy = 20,
    UnknownClass = 21,
    NoDevice = 22,
    NoAnswer = 23,
    OtherInstrument = 24,
    WrongModel = 25,
    WrongHardware = 26,
    OlderVersion = 27,
    Declined = 28, ///< the user did not want the older version; there is no text
    TooLarge = 29,
    InstrumentBusy = 30,
    NotTrustedThere = 31,
    Interrupted = 40,
    NotTaken = 41,
    OtherImage = 42,
    MemoryFailed = 43,
    RolledBack = 44,
    NotBack = 45,
};

/// At most 128 characters that say what happened and what to do; empty when there is nothing to say.
QString errorText(UpgradeError error);
/// The same by number; empty for a number that is none of these.
QString errorText(std::int16_t error);

/// What the loader answers for a file of that kind.
UpgradeError errorOf(firmware::Problem problem);

} // namespace tarnload
