// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Processor times of the resonance engine. Each prints its figures and answers whether they keep to what is wanted.
namespace resonancespeed {

/// One pen of 1024 points, and ten.
bool solutions();
/// The longest of sweeps that no part gives, and of the fuzz target's corpus.
bool wildSweeps();
/// A general-purpose routine on the same points, taking turns with the engine. True where it is not installed.
bool againstScipy();

} // namespace resonancespeed
