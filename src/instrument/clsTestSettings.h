// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>

/// The sweep settings that a plot file records beside its curves. Frequencies in Hz, level in dB.
///
/// Text form: the eight fields in the order below, joined by "," without blanks. Numbers are ordinary decimal texts,
/// flags "True" or "False". The form carries neither a version mark nor a field count.
class clsTestSettings
{
public:
    double dblUpperFrequency = 0;     ///< sweep end
    double dblLowerFrequency = 0;     ///< sweep start
    bool boolUseXAxisExtents = false; ///< the sweep was taken from the graph's extents
    bool boolInvertSweep = false;     ///< the sweep ran downward
    std::int32_t lPoints = 0;
    double dblIdleOutputFrequency = 0;
    double dblSweepSpeed = 0;
    double dblOutputLevel = 0;

    QString SaveToString() const;

    /// Reads the text form. Numbers are read tolerantly (0 where there is none, also for fields that the text does not
    /// have); the count of points and the flags must be a number and flags as a whole, otherwise result is false and
    /// the record keeps its values. What follows an eighth comma is ignored.
    void InitaliseFromString(QStringView strValues, bool& result);

    bool operator==(const clsTestSettings&) const = default;
};
