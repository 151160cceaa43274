// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recovery/RecoveryStore.h"
#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

class RecoveryJournal;

/// Bring Back Pen Data and Reopen Closed Plot, and the question behind a crash.
class RecoveryCommands
{
    Q_DECLARE_TR_FUNCTIONS(RecoveryCommands)

public:
    /// Registers them. Both outlive the object. A journal that cannot be written is told once, after the sweep.
    RecoveryCommands(const CommandContext& context, RecoveryJournal& journal);

    void mnuEditBringBack_Click();
    void mnuFileReopenClosed_Click();
    /// Asks, once for all of it, whether to open what programs that have ended left unsaved; nothing when there is
    /// none. The window may have gone afterwards.
    void offerUnsaved();

private:
    void registerCommands();
    void tellFailure(const QString& sentence);
    RecoveryStore store() const;
    /// The chosen row, or -1.
    int choose(const QString& title, const QString& action, const QStringList& headings,
               const QList<QStringList>& rows) const;
    void bringBack(PenDocument& document, const RecoveryStore::Pen& pen) const;
    void open(const RecoveryStore::Plot& plot) const;

    const CommandContext& m_context;
    RecoveryJournal& m_journal;
};
