// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/RangeWatch.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::RangeWatch", text);
}

QString hertz(double frequency)
{
    return QString::number(frequency, 'g', 10);
}

} // namespace

RangeWatch::RangeWatch(const Specimen& specimen, std::function<void(const QString&)> tell)
    : m_specimen(specimen)
    , m_tell(std::move(tell))
{}

void RangeWatch::begins(const QString& what, double from, double to) const
{
    const std::optional<Specimen::Range> known = m_specimen.knownRange();
    if (!m_tell || !known || (std::min(from, to) >= known->low && std::max(from, to) <= known->high))
        return;
    const QString place =
        from == to ? tr("at %1 Hz").arg(hertz(from)) : tr("from %1 to %2 Hz").arg(hertz(from), hertz(to));
    m_tell(
        tr("The %1 %2 leaves the table \"%3\", which goes from %4 to %5 Hz: beyond its ends its first and last points "
           "are repeated.")
            .arg(what, place, m_specimen.name(), hertz(known->low), hertz(known->high)));
}

void RangeWatch::idlesAt(double frequency)
{
    if (std::exchange(m_idle, frequency) != frequency)
        begins(tr("level between tests"), frequency, frequency);
}

} // namespace sim
