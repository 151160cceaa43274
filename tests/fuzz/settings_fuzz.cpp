// SPDX-License-Identifier: GPL-3.0-or-later
// Settings files: any bytes. What is read must be written so that it is read again as the same, and a change must not
// touch anything else.
#include "prefs/IniText.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    std::optional<IniText> text = IniText::parse(bytes);
    if (!text)
        return 0;
    const std::optional<IniText> again = IniText::parse(text->bytes());
    if (!again || again->bytes() != text->bytes())
        std::abort();

    const QString section = QStringLiteral("Paths");
    const QString key = QStringLiteral("PlotFiles");
    const QString other = QStringLiteral("ExportFiles");
    const std::optional<QString> before = text->value(section, other);
    const QString value = QString::fromUtf8(bytes);
    text->setValue(section, key, value);
    const std::optional<IniText> changed = IniText::parse(text->bytes());
    if (!changed || changed->value(section, key) != value || changed->value(section, other) != before)
        std::abort();
    return 0;
}
