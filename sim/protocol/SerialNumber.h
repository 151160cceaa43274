// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace sim {

/// 1 to 32 letters, digits, ".", "_" and "-", not beginning with ".": what an instrument takes for a serial number, and
/// what is safe as the name of its entry and of its memory file.
bool isSerialNumber(const QByteArray& text);

} // namespace sim
