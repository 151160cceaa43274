// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "update/web/UpdateOffers.h"
#include "values/Outcome.h"

#include <QString>

class QWidget;

/// What the update windows need of the program around them. May run nested event loops in every call that shows
/// something.
class UpdateHost
{
public:
    virtual ~UpdateHost() = default;

    virtual const FirmwareSide& firmware() const = 0;
    /// False where there is no wizard: then firmware is not offered.
    virtual bool hasFirmwareWizard() const = 0;
    /// The wizard, modally over the owner.
    virtual void showFirmwareWizard(QWidget& owner) = 0;

    /// Closes every document with its save question; false when one stays open.
    virtual bool closeAllDocuments() = 0;
    /// The file dialog of the main window for one file that exists; empty when the user cancelled. filters as in
    /// FilePicker.
    virtual QString openFileName(const QString& title, const QString& filters, const QString& folder,
                                 const QString& name) = 0;
    /// Why the file may not be started as an installer, or success.
    virtual Outcome mayStart(const QString& file) = 0;
    /// Hands a package to the desktop's package installer, or runs a program. Failure: nothing was started.
    virtual Outcome start(const QString& file) = 0;
    /// Ends the program at once.
    virtual void endProgram() = 0;
};
