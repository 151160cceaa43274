// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/TestSchedule.h"

#include "controls/korvalink/KorvaLink.h"
#include "prefs/Preferences.h"
#include "values/Conversions.h"

bool testschedule::isOn(const Preferences& preferences)
{
    return values::tolerantNumber(preferences.text(options::kTestSchedule)) != 0;
}

void testschedule::set(bool on, Preferences& preferences, KorvaLink& device)
{
    preferences.setValue(options::kTestSchedule, on);
    device.SetTestMode(on ? 1 : 0);
}
