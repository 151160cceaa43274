// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QDialog;
class QLayout;

/// The foot of the export dialogs: btnSaveImage, which runs that, and Cancel.
QLayout* saveButtons(QDialog& dialog, const std::function<void()>& save);
