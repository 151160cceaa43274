// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recovery/Record.h"

namespace recovery {

/// The pen as the text that a document pastes (PenGrid.h). Its values come back bit for bit.
QString penText(const PenRecord& pen);

} // namespace recovery
