// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The text that tells where a plot comes from: program and version, " | ", instrument and firmware, " : ", date of the
/// first save. It rides in the title of the top X axis.
namespace VersionText {

struct Parts
{
    QString software;
    QString instrument; ///< "Old graph format" when the text has no " : "
    QString date;       ///< "Not available" when the text has no " : "
};

/// Takes a text apart. A text without " | " is all software.
Parts parts(const QString& text);

/// The text for the next save. The software part is always the running program's; instrument and date stay those of the
/// first save, but a plot saved without an instrument takes the connected one. instrument is empty when none is
/// connected.
QString next(const QString& old, const QString& software, const QString& instrument, const QString& today);

/// The text as a subtitle shows it: up to and including the blank that opens " | ", a blank, and what is behind that mark;
/// empty for a text without the mark.
QString subTitle(const QString& text);

/// "major.minor" out of the software part, "0.0" when the text has none.
QString programVersion(const QString& text);

} // namespace VersionText
