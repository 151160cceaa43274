// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QString>

/// Whether this process may read and write the device. A failure says what is missing: the group that owns the port, or
/// the udev rule that hands it to whoever sits at the computer.
Outcome portAccess(const QString& path);

/// Why a device that is there refuses: another program has it, or a lock file that a dead one of another user has left,
/// which is named then; the user's own are taken away unasked. The device's real path, and the name to tell it by.
QString portInUse(const QString& device, const QString& shownName);
