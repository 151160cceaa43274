// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"

/// The active document, to be set and used like a pointer.
struct SettableActive : ActiveDocument
{
    SettableActive& operator=(PenDocument* document)
    {
        set(document);
        return *this;
    }
    operator PenDocument*() const { return get(); }
    PenDocument* operator->() const { return get(); }
};
