// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

struct InstrumentMirror;

/// What a value read from a frame or from the settings store must be to be believed. Whatever is not keeps the value in
/// hand: it is never sent to an instrument.
namespace instrumentranges {

inline constexpr int kMostPoints = 1024; ///< as many as a pen holds

/// A frequency that the instrument can put out, by the limits that it has told; those of the program before.
bool isFrequency(const InstrumentMirror& mirror, double hertz);
/// The same, or 0 for off, or -1 for the start frequency.
bool isIdleFrequency(const InstrumentMirror& mirror, double hertz);
/// Limits that leave room between them; the lower one is positive.
bool areFrequencyLimits(double lowest, double highest);
/// Finite, and the lower one below the other.
bool areLimits(double lowest, double highest);
bool isPointCount(double points);
/// Milliseconds.
bool isPeriod(double milliseconds);
bool isSweepMode(double mode);
/// A code that the attenuator has; any that is not negative while its steps are not known.
bool isAttenuationCode(const InstrumentMirror& mirror, double code);
bool isSampleCount(double samples);

} // namespace instrumentranges
