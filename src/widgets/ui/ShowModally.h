// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPointer>

/// Runs the dialog modally and destroys it, unless whoever it was for has gone down with it.
inline void showModally(QDialog* form)
{
    const QPointer<QDialog> dialog(form);
    dialog->exec();
    delete dialog;
}
