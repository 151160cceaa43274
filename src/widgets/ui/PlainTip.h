// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTextDocument>

/// A tool tip that shows the text letter by letter. Tool tips guess what is rich text, and rich text opens files: what
/// comes from a file, an instrument or the settings must not reach them as it is.
inline QString plainTip(const QString& text)
{
    return text.isEmpty() ? QString() : Qt::convertFromPlainText(text);
}
