// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

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

/// The subtitle that shows the text: the blank of " | " and one more stand in place of it. Nothing without " | ".
std::optional<QString> subTitle(const QString& text);
/// The subtitle of a diagnosis: one blank stands in place of " | ". Nothing without " | ".
std::optional<QString> diagnoseSubTitle(const QString& text);

/// "major.minor" out of the software part, "0.0" when the text has none.
QString programVersion(const QString& text);

} // namespace VersionText
