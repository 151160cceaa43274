// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tarnload {

/// How long the loader waits, in milliseconds. An instrument forgets half a block after half a second of silence, so no
/// repetition may come before that.
struct Patience
{
    int answer = 1500;     ///< to anything but the next two
    int begin = 5000;      ///< to the header: the place for the image is erased
    int change = 15000;    ///< to the change of images: the whole image is checked
    int comeBack = 20000;  ///< for an instrument that restarts, or whose cable was pulled
    int look = 100;        ///< between two looks for it
    int repetitions = 5;   ///< of one question that was not answered well
    int breaksInPlace = 3; ///< lost links without a block between them
};

} // namespace tarnload
