// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/Commands.h"

#include "values/Conversions.h"
#include "values/EngineeringText.h"

namespace command {
namespace {

using namespace Qt::StringLiterals;

constexpr std::int16_t kAmplitude = 1;

QString bare(QLatin1StringView word)
{
    return word + '\r'_L1;
}

QString with(QLatin1StringView word, const QString& argument)
{
    return word + ' '_L1 + argument + '\r'_L1;
}

QString with(QLatin1StringView word, double argument)
{
    return with(word, values::plainDecimalText(argument));
}

QString with(QLatin1StringView word, int argument)
{
    return with(word, QString::number(argument));
}

QString with(QLatin1StringView word, bool argument)
{
    return with(word, values::BoolToDigit(argument));
}

} // namespace

QString startFreq(double hertz)
{
    return with("startfreq"_L1, hertz);
}

QString endFreq(double hertz)
{
    return with("endfreq"_L1, hertz);
}

QString idleFreq(double hertz)
{
    return with("idlefreq"_L1, hertz);
}

QString spotFreq(double hertz)
{
    return with("spotfreq"_L1, hertz);
}

QString points(int count)
{
    return with("points"_L1, count);
}

QString atten(int code)
{
    return with("atten"_L1, code);
}

QString repeat(bool on)
{
    return with("repeat"_L1, on);
}

QString sweepMode(int mode)
{
    return with("sweepmode"_L1, mode);
}

QString period(int milliseconds)
{
    return with("period"_L1, milliseconds);
}

QString phase(bool on)
{
    return with("phase"_L1, on);
}

QString samples(int count)
{
    return with("samples"_L1, count);
}

QString linear(bool on)
{
    return with("linear"_L1, on);
}

QString setPin(std::int16_t testType, int penNumber)
{
    return with("setpin"_L1, QString::number(testType == kAmplitude ? 2 : 1) + QString::number(penNumber));
}

QString ampTest()
{
    return bare("amptest"_L1);
}

QString impTest()
{
    return bare("imptest"_L1);
}

QString ampSpot(double hertz)
{
    return with("ampspot"_L1, hertz);
}

QString impSpot(double hertz)
{
    return with("impspot"_L1, hertz);
}

QString stop()
{
    return bare("y"_L1);
}

QString refuse()
{
    return bare("x"_L1);
}

QString enquire(const QString& version)
{
    return with("enquire"_L1, version);
}

QString run()
{
    return bare("run"_L1);
}

QString loadScript(qsizetype bytes)
{
    return with("loadscript"_L1, QString::number(bytes));
}

QString yes()
{
    return bare(" y"_L1);
}

QString acknowledge()
{
    return u" "_s;
}

QString setVref(int code)
{
    return with("setvref"_L1, QString::number(code) + " 0"_L1);
}

QString setVdut(int code)
{
    return with("setvdut"_L1, QString::number(code) + " 0"_L1);
}

QString setFreqComp(std::int32_t value)
{
    return with("setfreqcomp"_L1, value);
}

QString setSerial(const QString& serial)
{
    return with("setserial"_L1, serial);
}

QString calOn(bool on)
{
    return with("calon"_L1, on);
}

QString loopback(bool on)
{
    return with("loopback"_L1, on);
}

QString phaseCal()
{
    // The blank is part of the word.
    return bare("phasecal "_L1);
}

QString calibrate(const QString& stamp)
{
    return with("calibrate"_L1, "CAL-"_L1 + stamp);
}

QString zeroCal()
{
    return bare("zerocal"_L1);
}

QString diagnose()
{
    return bare("diagnose"_L1);
}

QString factoryDefault()
{
    return bare("default"_L1);
}

QString save()
{
    return bare("save"_L1);
}

} // namespace command
