// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QPlainTextEdit;
class ScriptChecker;

/// Shows what the checker said about the script last checked, from its first finding on. The text may be scrolled,
/// marked and copied.
class frmMessages : public QDialog
{
    Q_OBJECT

public:
    explicit frmMessages(ScriptChecker& checker, QWidget* parent = nullptr);

private:
    QPlainTextEdit* txtMessages;
};
