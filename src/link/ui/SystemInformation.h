// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Facts of this computer and program that help with a bug report, one "name: value" a line: program, Qt, operating
/// system, kernel, processor, memory, screens, locale, folders. Nothing that tells who the user is beyond that.
///
/// What the system files below the root (default "/") say is taken from there; empty when none of them can be read.
QString systemInformation(const QString& root = QStringLiteral("/"));
