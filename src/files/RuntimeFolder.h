// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace files {

/// The user's folder for what lives as long as a session: $XDG_RUNTIME_DIR, or, where that is not the user's own
/// folder, "runtime-USER" of mode 0700 in the folder for temporary files, made when missing. Empty when there is
/// neither: when $XDG_RUNTIME_DIR is a relative path, or when the folder for temporary files is missing or the root of
/// the file system. Nothing is made in that case.
QString runtimeFolder();

} // namespace files
