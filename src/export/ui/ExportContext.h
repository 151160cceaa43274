// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class FilePicker;
class Preferences;
class UserMessages;

/// What the export windows work with; all of it outlives them.
struct ExportContext
{
    Preferences& preferences;
    UserMessages& messages;
    FilePicker& filePicker;
};
