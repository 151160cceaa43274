// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/PenText.h"

#include "document/content/GraphTexts.h"
#include "document/content/PenGrid.h"
#include "values/Conversions.h"

namespace recovery {

QString penText(const PenRecord& pen)
{
    QString text = PenGrid::headerText({graphtexts::kFrequency, pen.name, pen.testType}) + QStringLiteral("\r\n");
    for (std::size_t point = 0; point < pen.data.x.size(); ++point) {
        text += values::decimalText(pen.data.x[point]);
        for (const std::size_t part : {0U, 1U, 3U, 2U})
            text += QLatin1Char('\t') + values::decimalText(pen.data.y[part][point]);
        text += QStringLiteral("\r\n");
    }
    return text;
}

} // namespace recovery
