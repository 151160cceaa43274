// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

struct InstrumentMirror;

/// The version that scripts compare with: major plus the minor divided by 10 as long as it is above 1. Minor 23 adds
/// 0.23; minor 10 and minor 1 both add 1. A minor that is no finite number adds nothing.
double firmwareVersionNumber(double major, double minor);

/// "V" or, for a debug firmware, "DEBUG V", then major, ".", minor, " Build " and build.
QString firmwareVersionText(const InstrumentMirror& mirror);

/// Kind of the device as the link knows it: 2 for a sampling instrument (DT46), 1 for a T46, 0 for any other model.
std::int16_t deviceTypeOfModel(const QString& strDeviceModel);

/// The text by which the DT46 names itself.
inline constexpr QLatin1String kSamplingModel("PELLFERN");
