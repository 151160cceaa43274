// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>

/// Texts that stand in a graph and are read back from it: axis titles tell a document's type and view, table cells its
/// format and masks. They are part of the plot file and therefore never translated.
namespace graphtexts {

inline constexpr QLatin1String kSwitchedOff("X");
inline constexpr QLatin1String kFrequency("Frequency - Hz");
inline constexpr QLatin1String kGain("Amplitude Gain - dB");
inline constexpr QLatin1String kLoss("Amplitude Loss - dB");
inline constexpr QLatin1String kImpedance("Modulus of Impedance - Ohms");
inline constexpr QLatin1String kAdmittance("Modulus of Admittance - Siemens");
inline constexpr QLatin1String kReactance("Reactance X - Ohms");
inline constexpr QLatin1String kSusceptance("Susceptance B - Siemens");
inline constexpr QLatin1String kPhase("Phase - Degrees");
inline constexpr QLatin1String kResistance("Resistance R - Ohms");
inline constexpr QLatin1String kConductance("Conductance G - Siemens");

inline constexpr QLatin1String kUnitPrefixes("p n u m k M G T ");
inline constexpr QLatin1String kNoTitle("Title"); ///< main title of a document that was never given one
inline constexpr QLatin1String kCredit("Produced by Marrowick Instruments");
inline constexpr QLatin1String kMask("MASK");
inline constexpr QLatin1String kTestSettings("Test Settings");
inline constexpr QLatin1String kCurrentFormat("1");

/// Tables of the graph by what they carry.
inline constexpr int kCreditTable = 0;
inline constexpr int kMaskTable = 1;
inline constexpr int kFormatTable = 2;
/// Annotation strings of the graph by what they carry.
inline constexpr int kSettingsString = 0;
inline constexpr int kSettingsMarker = 100;

} // namespace graphtexts
