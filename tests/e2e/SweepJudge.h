// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/instrument/ScriptedInstrument.h"

#include <QString>
#include <QStringList>

namespace e2e {

/// What "marrowick sweep" is asked for, in the units of its options.
struct AskedSweep
{
    QString type = QStringLiteral("impedance");
    double from = 38000, to = 42000;
    int points = 100;
    QString direction = QStringLiteral("up");
    double attenuation = 0; ///< dB; the played instrument has steps of 10
    bool linear = false, phase = true;
    int period = 0; ///< ms
    int repeat = 1;

    /// The command line that says so, and says nothing that is not asked.
    QStringList options() const;
    /// Hz of a point in the order of measuring.
    double frequency(int point) const;
};

/// Judges a run by the instrument: what was in force there when each sweep began, and what it swept. The program's own
/// reports are not looked at. Failures are those of the running test.
void judgeSwept(const AskedSweep& asked, const played::Settings& before, const std::vector<played::Sweep>& sweeps);

/// The same of sweeps that a bad line may have cut short or kept unheard: none was begun that nobody asked for.
void judgeBegun(const AskedSweep& asked, const played::Settings& before, const std::vector<played::Sweep>& sweeps);

/// Judges the plot file, read by a stock CBOR library, by the closed form of the part at the frequencies asked for:
/// each point of all four views of each pen.
void judgePlot(const AskedSweep& asked, const SeriesPart& part, const QString& plotFile);

/// The same for what a bad line has left of a run: each point that was stored is the one measured there, but for those
/// whose numbers the line itself has spoilt. Answers with how many values were judged.
int judgeStored(const AskedSweep& asked, const played::ScriptedInstrument& instrument, const QString& plotFile);

} // namespace e2e
