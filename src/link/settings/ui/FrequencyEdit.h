// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

/// A box for a frequency with suffixes: typed keys pass FilterFrequencyKey. Moving, editing and clipboard keys work as
/// everywhere; what is pasted is filtered character by character.
class FrequencyEdit : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

Q_SIGNALS:
    /// Enter was pressed; the key goes no further.
    void entered();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
};
