// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

#include <array>

namespace firmware {

/// What one model is called in three places.
struct ModelNames
{
    QLatin1String reported; ///< by the instrument, in slot 6 of frame "l"
    QLatin1String file;     ///< in a firmware file
    QLatin1String tag;      ///< at the beginning of a file's name in a listing
};

inline constexpr std::array<ModelNames, 2> kModels{{
    {QLatin1String("T46"), QLatin1String("T46"), QLatin1String("T46")},
    {QLatin1String("PELLFERN"), QLatin1String("DT46"), QLatin1String("PELLFERN")},
}};

/// Null for a model that is not known.
inline const ModelNames* modelReportedAs(const QString& reported)
{
    for (const ModelNames& model : kModels) {
        if (reported == model.reported)
            return &model;
    }
    return nullptr;
}

} // namespace firmware
