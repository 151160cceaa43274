// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace ferrolex {

/// What the argument of a statement is, and so which range holds for it.
enum class ArgumentType
{
    Number,
    Frequency,   ///< Hz
    Points,      ///< a sweep
    Period,      ///< s a point
    Attenuation, ///< step of the attenuator
    Samples,     ///< averaged a point
    Pen,         ///< the user's number
    Duration,    ///< s
    Digits,
    Mode,
    Text,
    FileName,
    Measures, ///< a list of F1, F2, Fr, Zr, Q
    Choice
};

struct Range
{
    double lowest;
    double highest;
    bool whole; ///< only whole numbers
};

/// The ranges of an instrument.
class DeviceRanges
{
public:
    /// By the model's text as the instrument tells it, or its name; the widest model for any other.
    explicit DeviceRanges(const QString& model);

    bool isWidest() const { return m_widest; }
    /// For people.
    QString modelName() const { return m_name; }
    /// Nothing for an argument that may be any number, or is none.
    std::optional<Range> of(ArgumentType type) const;
    /// Why the number cannot be; null when it can.
    QString fault(ArgumentType type, double number) const;

private:
    QString m_name;
    bool m_widest = false;
    double m_highestFrequency;
    double m_highestAttenuation;
};

} // namespace ferrolex
