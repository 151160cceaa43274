// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/MeasuredLevels.h"

#include "values/Conversions.h"

namespace sim {
namespace {

double numberAt(const Frame& frame, std::size_t column)
{
    return values::tolerantNumber(std::string_view(frame.data() + column, kNumberWidth));
}

constexpr std::size_t kN1 = 4;
constexpr std::size_t kN2 = 18;

} // namespace

void MeasuredLevels::send(const Frame& frame)
{
    m_sink.send(frame);
    switch (frameCode(frame)) {
    case 'D':
        m_measured.smallestLevel.reset();
        m_measured.largestLevel.reset();
        m_measured.frequencyOfSmallest.reset();
        m_measured.frequencyOfLargest.reset();
        break;
    case 'F':
    case 'H':
        note(numberAt(frame, kN1), numberAt(frame, kN2));
        break;
    case 'G':
    case 'I':
        m_measured.lastLevel = numberAt(frame, kN2);
        break;
    default:
        break;
    }
}

void MeasuredLevels::note(double frequency, double level)
{
    m_measured.lastLevel = level;
    if (!m_measured.smallestLevel || level < *m_measured.smallestLevel) {
        m_measured.smallestLevel = level;
        m_measured.frequencyOfSmallest = frequency;
    }
    if (!m_measured.largestLevel || level > *m_measured.largestLevel) {
        m_measured.largestLevel = level;
        m_measured.frequencyOfLargest = frequency;
    }
}

} // namespace sim
