// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/SweptPens.h"
#include "document/DocumentBench.h"

/// Documents, and ways to fill their pens.
struct AnalysisBench : DocumentBench, SweptPens
{};
