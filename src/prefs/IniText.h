// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

/// The text of a settings file: sections in brackets, lines of the form key=value, comments that begin with ";" or "#".
///
/// UTF-8. Any text can be a section, a key or a value: a backslash begins an escape (\\ itself, \n, \r, \t, \s for a
/// blank at either end, \uXXXX for a UTF-16 unit); a backslash before anything else stands for itself. Blanks around
/// keys and values do not count. A key that occurs twice has its last value. Comments and order survive changes.
class IniText
{
public:
    /// Nothing when the bytes are damaged: not UTF-8, a zero byte, a line of no known form, or a file that this class
    /// wrote and that has lost its last line.
    static std::optional<IniText> parse(const QByteArray& bytes);

    /// Ends with a line by which parse() knows a file cut short.
    QByteArray bytes() const;

    std::optional<QString> value(const QString& section, const QString& key) const;
    void setValue(const QString& section, const QString& key, const QString& value);

private:
    using Place = QPair<QString, QString>;
    void index(int line, const QString& section, const QString& key);

    QList<QString> m_lines;     ///< as in the file, without the line that ends it
    QHash<Place, int> m_lineOf; ///< (section, key) to line
    QHash<Place, QString> m_values;
    QHash<QString, int> m_lastLineOf; ///< last line of a section that holds a key, or its heading
};
