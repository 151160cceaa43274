// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AnalysisFrames.h"

#include "analysis/rules/ScriptAnalysis.h"
#include "link/DeviceModule.h"
#include "values/Conversions.h"

void registerAnalysisFrames(DeviceModule& device, ScriptAnalysis& analysis)
{
    device.registerHandler('v', [&analysis](const Frame& frame) {
        std::int32_t pen = 0;
        std::int32_t mode = 0;
        if (!frame.ParseF(pen) || !frame.ParseI(mode))
            return false;
        analysis.analyse(pen, values::roundToInt32(frame.number(1)), static_cast<std::int16_t>(mode));
        return true;
    });
}
