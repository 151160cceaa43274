// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>

/// The host's mirror of the instrument: what its status frames last said and what the user last set. Frequencies in Hz,
/// levels in dB, impedances in Ohm, times in milliseconds. Written by DeviceModule and the settings dialog, read by
/// all.
struct InstrumentMirror
{
    // Sweep settings, saved per instrument under the names of the variables.
    double dblStartFrequency = 1000;
    double dblEndFrequency = 1000000;
    double dblSpotFrequency = 1000;
    double dblIdleFrequency = -1; ///< 0 off, -1 the start frequency, else Hz
    std::int16_t iNumPoints = 100;
    std::int16_t iTestPeriod = 0;      ///< ms a point
    std::int16_t iAttenuationCode = 0; ///< dB is the code times dblAttenuationStep
    bool bfRepeat = false;
    std::int16_t iSweepMode = 2; ///< 0 "A to B", 1 "B to A", 2 "Alternate"
    bool bfPhaseOn = true;
    bool bfGraphExtents = false; ///< the sweep follows the graph's extents

    // Limits, written by frames "L", "N" and "M".
    double dblAmpMinFreq = 10;
    double dblAmpMaxFreq = 50000000;
    double dblAmpMinDb = -90;
    double dblAmpMaxDb = 10;
    double dblImpMinOhms = 0.01;
    double dblImpMaxOhms = 999999;
    double dblReactanceMin = 0;
    double dblReactanceMax = 0;

    // Fixed axis ranges.
    double dblReactanceAxisMin = -50000, dblReactanceAxisMax = 50000;
    double dblResistanceAxisMin = 0, dblResistanceAxisMax = 500000;
    double dblSusceptanceAxisMin = -500, dblSusceptanceAxisMax = 500;
    double dblConductanceAxisMin = 0, dblConductanceAxisMax = 100;

    // What the frames say of the instrument; the letter is the frame's code.
    bool bfAttenuationAvailable = false;                                                           ///< A
    double dblAttenuationStep = 0;                                                                 ///< A
    std::int16_t iAttenuationSteps = 0;                                                            ///< A
    bool bfLoopBack = false;                                                                       ///< B, J
    double dblOscFrequencyB = 0;                                                                   ///< B
    double dblCalOffset = 0;                                                                       ///< B
    double dblCalSlope = 0;                                                                        ///< B
    double dblOscFrequencyC = 0;                                                                   ///< C
    double dblVrefLevel = 0, dblVdutLevel = 0;                                                     ///< C
    std::int16_t iVrefCode = 0, iVdutCode = 0;                                                     ///< C
    bool bfRunning = false;                                                                        ///< D, E, P
    bool bfIdleOutput = false;                                                                     ///< D, E, L
    bool bfOption1 = false, bfOption2 = false, bfOption3 = false, bfOption4 = false;               ///< J
    std::int16_t iSweepDirection = 0;                                                              ///< K
    bool bfAmplitudeTest = false;                                                                  ///< L
    bool bfReactanceTest = false;                                                                  ///< M
    bool bfImpedanceTest = false;                                                                  ///< N
    bool bfDebugFirmware = false;                                                                  ///< O
    double dblFirmwareMajor = 0, dblFirmwareMinor = 0, dblFirmwareBuild = 0, dblFirmwareBoard = 0; ///< O
    double dblFirmwareVersion = 0;  ///< O: major plus the minor divided by 10 while it is above 1
    std::int16_t iPointsInTest = 0; ///< P, X
    std::int16_t iCurrentPoint = 0; ///< F, H: number of the last point, from 0
    double iTestParam1 = 0, iTestParam2 = 0, iTestParam3 = 0, iTestParam4 = 0; ///< P, S
    double iTestParam5 = 0, iTestParam6 = 0, iTestParam7 = 0;                  ///< Q, X
    bool bfApplyCal = false, bfCalibrated = false;                             ///< R
    double iCalParam1 = 0, iCalParam2 = 0;                                     ///< R
    double dblFreqComp = 0;                                                    ///< t
    QString strDeviceSerial = QStringLiteral("Device"); ///< V; also the section of the per-instrument settings
    std::array<QString, 6> strDeviceInfo;               ///< l, slots 0 to 5: strDeviceInfo0 to strDeviceInfo5
    QString strDeviceModel;                             ///< l, slot 6

    /// Back to the values of a program that has met no instrument.
    void reset() { *this = InstrumentMirror(); }
};
