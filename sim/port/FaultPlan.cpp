// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/FaultPlan.h"

#include <QCoreApplication>

#include <algorithm>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::FaultPlan", text);
}

struct Kind
{
    const char* name;
    std::uint32_t every; ///< unless the user says otherwise
    const char* explanation;
};

constexpr std::array<Kind, kFaultCount> kKinds{{
    {"garbage", 40, QT_TRANSLATE_NOOP("sim::FaultPlan", "random bytes between frames")},
    {"lost", 60, QT_TRANSLATE_NOOP("sim::FaultPlan", "one to three bytes of a frame go missing")},
    {"split", 2, QT_TRANSLATE_NOOP("sim::FaultPlan", "a frame comes in pieces, with pauses of milliseconds")},
    {"stall", 200, QT_TRANSLATE_NOOP("sim::FaultPlan", "nothing comes for a part of a second")},
    {"unplug", 150,
     QT_TRANSLATE_NOOP("sim::FaultPlan", "the cable is pulled in mid-sweep, and put back after a while")},
    {"flood", 300, QT_TRANSLATE_NOOP("sim::FaultPlan", "a burst of 500 frames without meaning")},
    {"wrong-length", 40, QT_TRANSLATE_NOOP("sim::FaultPlan", "a frame is a few columns too long or too short")},
    {"non-numeric", 60, QT_TRANSLATE_NOOP("sim::FaultPlan", "a field holds no number")},
    {"power", 2, QT_TRANSLATE_NOOP("sim::FaultPlan", "power is lost in block N of a firmware update, once")},
    {"cable", 2, QT_TRANSLATE_NOOP("sim::FaultPlan", "the cable is pulled at block N of a firmware update, once")},
    {"dead-image", 1, QT_TRANSLATE_NOOP("sim::FaultPlan", "the next N new firmware images do not report in")},
}};

} // namespace

bool FaultPlan::any() const
{
    return std::any_of(everyFrames.begin(), everyFrames.begin() + static_cast<std::ptrdiff_t>(Fault::PowerLost),
                       [](std::uint32_t every) { return every != 0; });
}

QStringList FaultPlan::names()
{
    QStringList names;
    for (const Kind& kind : kKinds)
        names.append(QLatin1String(kind.name));
    return names;
}

QStringList FaultPlan::explanations()
{
    QStringList texts;
    for (const Kind& kind : kKinds)
        texts.append(tr(kind.explanation));
    return texts;
}

Outcome FaultPlan::add(const QString& text)
{
    for (const QString& item : text.split(QLatin1Char(','))) {
        const QString name = item.section(QLatin1Char(':'), 0, 0).trimmed();
        const auto index = names().indexOf(name);
        if (index < 0)
            return Outcome::failure(
                tr("There is no fault \"%1\". The kinds are: %2.").arg(name, names().join(QLatin1String(", "))));
        const auto place = static_cast<std::size_t>(index);
        std::uint32_t every = kKinds[place].every;
        if (item.contains(QLatin1Char(':'))) {
            bool ok = false;
            every = item.section(QLatin1Char(':'), 1).trimmed().toUInt(&ok);
            if (!ok || every == 0)
                return Outcome::failure(
                    tr("Behind \"%1:\" stands in how many frames the fault strikes once, for example %1:%2.")
                        .arg(name)
                        .arg(kKinds[place].every));
        }
        everyFrames[place] = every;
    }
    return Outcome::success();
}

} // namespace sim
