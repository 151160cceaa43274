// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class DeviceModule;
class ScriptAnalysis;

/// Lets the instrument ask for an analysis, by message code "v". Both outlive what the link can still send.
void registerAnalysisFrames(DeviceModule& device, ScriptAnalysis& analysis);
