// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class KorvaLink;
class Preferences;

/// The privilege to run the test schedule, as its two windows show and set it.
namespace testschedule {

/// Any number but 0 counts, while other readers of the option take 1 alone for ticked.
bool isOn(const Preferences& preferences);
/// Saves the choice and switches the link's test mode.
void set(bool on, Preferences& preferences, KorvaLink& device);

} // namespace testschedule
