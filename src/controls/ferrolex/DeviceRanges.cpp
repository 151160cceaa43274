// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/DeviceRanges.h"

#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

namespace ferrolex {
namespace {

struct Facts
{
    const char* name;
    const char* text;
    double highestFrequency; // Hz
    double attenuationSteps;
};

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

bool belongsToTheModel(ArgumentType type)
{
    return type == ArgumentType::Frequency || type == ArgumentType::Attenuation;
}

QString shown(ArgumentType type, double number)
{
    constexpr int kSignificant = 10;
    if (type == ArgumentType::Frequency)
        return values::engineeringText(number, QStringLiteral("Hz"), kSignificant);
    if (type == ArgumentType::Period || type == ArgumentType::Duration)
        return values::decimalText(number) + QStringLiteral(" s");
    return values::decimalText(number);
}

QString nameOf(ArgumentType type)
{
    switch (type) {
    case ArgumentType::Frequency:
        return tr("The frequency");
    case ArgumentType::Points:
        return tr("The number of points");
    case ArgumentType::Period:
        return tr("The period");
    case ArgumentType::Attenuation:
        return tr("The attenuation step");
    case ArgumentType::Samples:
        return tr("The number of samples");
    case ArgumentType::Pen:
        return tr("The pen");
    case ArgumentType::Duration:
        return tr("The time");
    default:
        return tr("The number");
    }
}

constexpr double kLowestFrequency = 10; // Hz
constexpr std::array<Facts, 2> kModels{{{"T46", "T46", 50e6, 4}, {"DT46", "PELLFERN", 5e6, 0}}};

} // namespace

DeviceRanges::DeviceRanges(const QString& model)
{
    const auto found = std::find_if(kModels.begin(), kModels.end(), [&model](const Facts& facts) {
        return model.compare(QLatin1String(facts.name), Qt::CaseInsensitive) == 0 ||
               model.compare(QLatin1String(facts.text), Qt::CaseInsensitive) == 0;
    });
    m_widest = found == kModels.end();
    const Facts& facts = m_widest ? kModels.front() : *found;
    m_name = QLatin1String(facts.name);
    m_highestFrequency = facts.highestFrequency;
    m_highestAttenuation = facts.attenuationSteps;
}

std::optional<Range> DeviceRanges::of(ArgumentType type) const
{
    switch (type) {
    case ArgumentType::Frequency:
        return Range{kLowestFrequency, m_highestFrequency, false};
    case ArgumentType::Points:
    case ArgumentType::Samples:
        return Range{1, 1024, true};
    case ArgumentType::Period:
        return Range{0, 32.767, false};
    case ArgumentType::Attenuation:
        return Range{0, m_highestAttenuation, true};
    case ArgumentType::Pen:
        return Range{1, 10, true};
    case ArgumentType::Duration:
        return Range{0, 86400, false};
    case ArgumentType::Digits:
        return Range{0, 9, true};
    case ArgumentType::Mode:
        return Range{0, 9999, true};
    case ArgumentType::Number:
    case ArgumentType::Text:
    case ArgumentType::FileName:
    case ArgumentType::Measures:
    case ArgumentType::Choice:
        break;
    }
    return {};
}

QString DeviceRanges::fault(ArgumentType type, double number) const
{
    const std::optional<Range> range = of(type);
    if (!range)
        return {};
    if (!(number >= range->lowest && number <= range->highest)) {
        const QString where =
            !belongsToTheModel(type) ? QString()
            : m_widest ? tr(" (no known instrument is connected, so the widest model, the %1, was taken)").arg(m_name)
                       : tr(" of the %1").arg(m_name);
        return tr("%1 is %2, outside %3 to %4%5.")
            .arg(nameOf(type), shown(type, number), shown(type, range->lowest), shown(type, range->highest), where);
    }
    if (range->whole && number != std::nearbyint(number))
        return tr("%1 is %2, which is no whole number.").arg(nameOf(type), shown(type, number));
    return {};
}

} // namespace ferrolex
