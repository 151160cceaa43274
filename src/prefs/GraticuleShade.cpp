// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/GraticuleShade.h"

#include "prefs/Options.h"

namespace GraticuleShade {

int stopOf(const QString& text)
{
    for (std::size_t stop = 0; stop < options::kShadeStops.size(); ++stop) {
        if (text == QString::number(options::kShadeStops[stop]))
            return static_cast<int>(stop);
    }
    return 0;
}

std::optional<std::uint32_t> colourOf(int stop)
{
    if (stop < 0 || stop >= static_cast<int>(options::kShadeStops.size()))
        return {};
    return options::kShadeStops[static_cast<std::size_t>(stop)];
}

} // namespace GraticuleShade
