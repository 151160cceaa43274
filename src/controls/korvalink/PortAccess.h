// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QString>

/// Whether this process may read and write the device. A failure says what is missing: the group that owns the port, or
/// the udev rule that hands it to whoever sits at the computer.
Outcome portAccess(const QString& path);
