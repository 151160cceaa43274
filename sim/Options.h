// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/port/FaultPlan.h"
#include "sim/port/Pace.h"
#include "sim/protocol/ModelFacts.h"
#include "values/Outcome.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace sim {

/// What the user asked of marrowick-sim. The defaults stand here and nowhere else.
struct Options
{
    bool help = false;
    bool version = false;
    bool listParts = false;
    Model model = Model::T46;
    std::optional<QByteArray> serial; ///< else the first free number of the model, for example T46-0001
    QByteArray notOn;                 ///< terminal device that it must not come up on; empty for none
    QString part = QStringLiteral("langevin40k");
    QString replay; ///< file; empty for none
    Pace pace;
    std::uint64_t seed = 1;
    std::optional<double> noise; ///< else 1, and 0 with a replayed table, which has its own
    FaultPlan faults;
    std::optional<QString> memory; ///< file; empty for no file at all; else MemoryFile::defaultFileName()
    QString scriptFrames;
    double idleLevelsPerSecond = 2;
    QString trustedKeys;   ///< folder; empty for that of the host
    int firmwareMajor = 0; ///< unless chosen, the version of this program, with which a host of its own age agrees
    int firmwareMinor = 0;
    bool status = false; ///< also when standard error is no terminal

    /// The arguments without the program's name. The sentence of a failure says what to write instead.
    static ValueOr<Options> parse(const QStringList& arguments);
    static QString helpText();
};

} // namespace sim
