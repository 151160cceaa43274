// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class PenDocument;

/// What documents need of the main window. frmMain implements it; tests and the command-line program bring their own.
class DocumentHost
{
public:
    virtual ~DocumentHost() = default;

    /// The document whose window is active, or null.
    virtual PenDocument* activeDocument() const = 0;
    /// The pen bar, toolbar and menus take the state of this document (pens, locks, colours, zoom, paste).
    virtual void updateToolBars(PenDocument& document) = 0;
    /// As after the last document has closed.
    virtual void defaultToolBars() = 0;
    /// The current pen changed: panel 2 and the pen bar follow, and the instrument's pin is selected.
    virtual void penShowCurrent(int iPenNumber) = 0;
    /// Asks whether the running test may be stopped. True: the test goes on and the caller gives up its own action.
    virtual bool QuestionTestCancel() = 0;
    /// Puts the file on top of the quick file list.
    virtual void UpdateQuickFileList(const QString& strFilePathName) = 0;
    /// The document has ended its life: the list forgets it.
    virtual void removeDocument(const QString& strKey) = 0;
    /// Lets pending events run; returns when they have. Documents may close meanwhile.
    virtual void processEvents() = 0;
};
