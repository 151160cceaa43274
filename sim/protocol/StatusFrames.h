// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Frames.h"
#include "sim/protocol/InstrumentState.h"

#include <vector>

/// The frames that carry the state of the instrument; the columns are tabled in docs/instrument-protocol.md.
namespace sim::status {

Frame attenuation(const InstrumentState& state);           // A
Frame slope(const InstrumentState& state);                 // B
Frame phase(const InstrumentState& state);                 // C
Frame options(const InstrumentState& state);               // J
Frame sweepMode(const InstrumentState& state);             // K
Frame amplitudeLimits(const InstrumentState& state);       // L
Frame reactanceLimits(const InstrumentState& state);       // M
Frame impedanceLimits(const InstrumentState& state);       // N
Frame firmware(const InstrumentState& state);              // O
Frame points(const InstrumentState& state);                // P
Frame period(const InstrumentState& state);                // Q
Frame calibration(const InstrumentState& state);           // R
Frame sampling(const InstrumentState& state);              // S
Frame serial(const InstrumentState& state);                // V
Frame complete(const InstrumentState& state);              // X
Frame information(const InstrumentState& state, int slot); // l, slot 0 to 6
Frame frequencies(const InstrumentState& state);           // s
Frame frequencyCompensation(const InstrumentState& state); // t

/// "D" with the range of the run that begins.
Frame testStarted(const InstrumentState& state, double startFrequency, double endFrequency);
/// "E".
Frame testEnded(const InstrumentState& state);
/// "Y".
Frame pointsFinished();
/// "T": a notice for the user; an error, or information.
Frame notice(bool error, std::string_view text);
/// "r": a short text for the host's status panel.
Frame panelText(std::string_view text);
/// "k".
Frame scriptRunning(bool running);

/// Everything the host asks for with "enquire", in this order: O, V, l 0 to 6, L, M, N, A, B, C, J, K, P, Q, R, S, s,
/// t. The closing "X" is not among them, so that a notice may stand before it.
std::vector<Frame> everything(const InstrumentState& state);
/// What "default" may have changed: A, C, K, P, Q, S, s, J.
std::vector<Frame> settings(const InstrumentState& state);

} // namespace sim::status
