// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/KeptMemory.h"

#include "sim/ScriptSlot.h"
#include "sim/protocol/SerialNumber.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

const QLatin1String kFormat("marrowick-sim memory");
constexpr int kVersion = 1;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::KeptMemory", text);
}

/// Within the bounds, or as it was.
void take(const QJsonObject& object, const char* key, double& value, double low, double high)
{
    const double number = object.value(QLatin1String(key)).toDouble(value);
    if (number >= low && number <= high)
        value = number;
}

void take(const QJsonObject& object, const char* key, int& value, int low, int high)
{
    double number = value;
    take(object, key, number, low, high);
    value = static_cast<int>(number);
}

void take(const QJsonObject& object, const char* key, bool& value)
{
    value = object.value(QLatin1String(key)).toBool(value);
}

} // namespace

QByteArray KeptMemory::toJson() const
{
    const SweepSettings& s = settings;
    const InstrumentConstants& c = constants;
    QJsonArray deviation;
    for (const double value : c.calibration.deviation)
        deviation.append(value);
    const QJsonObject settingsObject{
        {"startFrequency", s.startFrequency},
        {"endFrequency", s.endFrequency},
        {"spotFrequency", s.spotFrequency},
        {"idleFrequency", s.idleFrequency},
        {"points", s.points},
        {"period", s.period},
        {"attenuation", s.attenuation},
        {"repeat", s.repeat},
        {"sweepMode", s.sweepMode},
        {"phase", s.phase},
        {"linear", s.linear},
        {"samples", s.samples},
        {"pin", s.pin},
    };
    const QJsonObject constantsObject{
        {"serial", QString::fromLatin1(c.serial)},
        {"vrefCode", c.vrefCode},
        {"vdutCode", c.vdutCode},
        {"frequencyCompensation", c.frequencyCompensation},
        {"calibrationOffset", c.calibrationOffset},
        {"calibrationSlope", c.calibrationSlope},
        {"applyCalibration", c.applyCalibration},
        {"calibrated", c.calibration.valid},
        {"calibrationStamp", QString::fromLatin1(c.calibration.stamp)},
        {"calibrationDeviation", deviation},
    };
    return QJsonDocument(QJsonObject{{"format", kFormat},
                                     {"model", QLatin1String(ModelFacts::of(model).name)},
                                     {"version", kVersion},
                                     {"settings", settingsObject},
                                     {"constants", constantsObject},
                                     {"firmware", firmware.toJson()},
                                     {"script", QString::fromLatin1(script.toBase64())}})
        .toJson();
}

ValueOr<KeptMemory> KeptMemory::fromJson(const QByteArray& text)
{
    const QJsonObject root = QJsonDocument::fromJson(text).object();
    if (root.value(QLatin1String("format")).toString() != kFormat)
        return Outcome::failure(tr("This is not the memory of a simulated instrument."));
    if (root.value(QLatin1String("version")).toInt() != kVersion)
        return Outcome::failure(tr("The memory is of a version that this program does not know."));
    KeptMemory memory;
    const QString model = root.value(QLatin1String("model")).toString();
    if (model == QLatin1String(ModelFacts::of(Model::DT46).name))
        memory.model = Model::DT46;
    else if (model != QLatin1String(ModelFacts::of(Model::T46).name))
        return Outcome::failure(tr("The memory is of an unknown model."));
    SweepSettings& s = memory.settings;
    const QJsonObject settings = root.value(QLatin1String("settings")).toObject();
    take(settings, "startFrequency", s.startFrequency, 1, 1e9);
    take(settings, "endFrequency", s.endFrequency, 1, 1e9);
    take(settings, "spotFrequency", s.spotFrequency, 1, 1e9);
    take(settings, "idleFrequency", s.idleFrequency, -1, 1e9);
    take(settings, "points", s.points, 1, kMostPoints);
    take(settings, "period", s.period, 0, kLongestPeriod);
    take(settings, "attenuation", s.attenuation, 0, 99);
    take(settings, "repeat", s.repeat);
    take(settings, "sweepMode", s.sweepMode, 0, 2);
    take(settings, "phase", s.phase);
    take(settings, "linear", s.linear);
    take(settings, "samples", s.samples, 1, kMostSamples);
    take(settings, "pin", s.pin, 1, 2);

    InstrumentConstants& c = memory.constants;
    const QJsonObject constants = root.value(QLatin1String("constants")).toObject();
    c.serial = constants.value(QLatin1String("serial")).toString().toLatin1();
    if (!isSerialNumber(c.serial))
        return Outcome::failure(tr("The memory holds no valid serial number."));
    take(constants, "vrefCode", c.vrefCode, 0, kHighestTrimCode);
    take(constants, "vdutCode", c.vdutCode, 0, kHighestTrimCode);
    take(constants, "frequencyCompensation", c.frequencyCompensation, 999000, 1001000);
    take(constants, "calibrationOffset", c.calibrationOffset, -100, 100);
    take(constants, "calibrationSlope", c.calibrationSlope, 0.1, 10);
    take(constants, "applyCalibration", c.applyCalibration);
    take(constants, "calibrated", c.calibration.valid);
    c.calibration.stamp = constants.value(QLatin1String("calibrationStamp")).toString().toLatin1().left(61);
    for (const auto& value : constants.value(QLatin1String("calibrationDeviation")).toArray())
        c.calibration.deviation.push_back(std::clamp(value.toDouble(), -100.0, 100.0));
    if (c.calibration.deviation.size() != static_cast<std::size_t>(kCalibrationPoints))
        c.calibration = Calibration();
    memory.script = QByteArray::fromBase64(root.value(QLatin1String("script")).toString().toLatin1())
                        .left(ScriptSlot::kLongestScript);
    memory.firmware = Flash::fromJson(root.value(QLatin1String("firmware")).toObject());
    return memory;
}

KeptMemory::Unreadable KeptMemory::judge(const QByteArray& text)
{
    // Bytes that were never written, as a power failure leaves them, are as good as none.
    const QByteArray written = QByteArray(text).replace('\0', "").trimmed();
    if (written.isEmpty())
        return Unreadable::Damaged;
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isNull())
        return written.startsWith('{') ? Unreadable::Damaged : Unreadable::SomethingElse;
    const QJsonObject root = document.object();
    if (root.value(QLatin1String("format")).toString() != kFormat)
        return Unreadable::SomethingElse;
    return root.value(QLatin1String("version")).toInt() > kVersion ? Unreadable::OtherVersion : Unreadable::Damaged;
}

} // namespace sim
