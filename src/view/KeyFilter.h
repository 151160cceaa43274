// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QString>

/// Which characters a box for a number takes: digits, signs and suffixes as they stand, a comma as decimal point, some
/// letters as the suffix of the other case that was meant. A null character is dropped.
namespace keyfilter {

/// Limits in Ohm, dB and Hz: "m" is "M".
QChar large(QChar typed);
/// Limits in Siemens: "M" is "m", "U" is "u".
QChar small(QChar typed);
/// Points of a mask: m is "M", e is "E", U is "u".
QChar mask(QChar typed);
/// Offsets: digits, "-" and the decimal point.
QChar offset(QChar typed);

using Filter = QChar (*)(QChar);
/// What is left of a text.
QString filtered(const QString& text, Filter filter);

} // namespace keyfilter
