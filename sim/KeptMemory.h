// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/boot/Flash.h"
#include "sim/protocol/InstrumentState.h"
#include "values/Outcome.h"

#include <QByteArray>

namespace sim {

/// What survives switching off.
struct KeptMemory
{
    Model model = Model::T46;
    SweepSettings settings;
    InstrumentConstants constants;
    QByteArray script;
    Flash firmware;

    bool operator==(const KeptMemory&) const = default;

    QByteArray toJson() const;
    /// Values out of bounds are left at what a new instrument has. A failure says why the text is no memory.
    static ValueOr<KeptMemory> fromJson(const QByteArray& text);

    enum class Unreadable
    {
        Damaged,       ///< was a memory, or is empty
        OtherVersion,  ///< a memory that a program of another version can read
        SomethingElse, ///< was never a memory
    };
    /// What a text is that fromJson() has refused.
    static Unreadable judge(const QByteArray& text);
};

} // namespace sim
