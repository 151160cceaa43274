// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Plain text in and out of the clipboard. Lines end in CR LF on this side of the interface.
class ClipboardPort
{
public:
    virtual ~ClipboardPort() = default;

    virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
};
