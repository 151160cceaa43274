// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

/// The one vocabulary of commands to the instrument: every text the host writes is made here. Each is a word, its
/// argument behind a blank, and a carriage return; numbers are plain decimals without an exponent, flags 1 or 0.
namespace command {

// Sweep settings.
QString startFreq(double hertz);
QString endFreq(double hertz);
/// Output between tests: 0 off, -1 the start frequency, else Hz.
QString idleFreq(double hertz);
QString spotFreq(double hertz);
QString points(int count);
/// Step of the attenuator.
QString atten(int code);
QString repeat(bool on);
/// 0 "A to B", 1 "B to A", 2 "Alternate".
QString sweepMode(int mode);
/// Milliseconds a point.
QString period(int milliseconds);
QString phase(bool on);
/// Samples averaged for each point.
QString samples(int count);
/// Spacing of the frequencies: linear, else logarithmic.
QString linear(bool on);
/// Selects the output pin: 2 for documents of test type 1 (amplitude), 1 for any other, with the user's number of the
/// pen (1 to 10) directly behind.
QString setPin(std::int16_t testType, int penNumber);

// Tests.
QString ampTest();
QString impTest();
QString ampSpot(double hertz);
QString impSpot(double hertz);
/// Ends the running sweep and the running script. Never written behind a lone acknowledge().
QString stop();
/// Ends the running sweep like stop(), where the host refuses what arrives or lets its document go.
QString refuse();
/// Asks for all state; the instrument is told the version of the program, "major.minor".
QString enquire(const QString& version);

// Scripts.
QString run();
/// Announces a script of that many bytes.
QString loadScript(qsizetype bytes);
/// Answers yes to a prompt of the instrument's script.
QString yes();
/// Acknowledges an action of the script: a lone blank without a carriage return.
QString acknowledge();

// Calibration and service.
/// Levels of the reference and of the device under test; their trailing 0 is part of the command.
QString setVref(int code);
QString setVdut(int code);
QString setFreqComp(std::int32_t value);
QString setSerial(const QString& serial);
QString calOn(bool on);
QString loopback(bool on);
QString phaseCal();
/// "calibrate CAL-" and the stamp.
QString calibrate(const QString& stamp);
QString zeroCal();
QString diagnose();
/// Factory settings; lost with the power unless save() follows.
QString factoryDefault();
QString save();

} // namespace command
