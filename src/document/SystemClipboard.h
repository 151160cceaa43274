// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ClipboardPort.h"

/// The desktop's clipboard. Spreadsheets end their lines in LF alone on some systems: what is read here ends them in CR
/// LF.
class SystemClipboard : public ClipboardPort
{
public:
    QString text() const override;
    void setText(const QString& text) override;
};
