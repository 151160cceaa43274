// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/UserMessages.h"
#include "values/Outcome.h"

#include <QTemporaryDir>

#include <memory>

namespace cli {

/// One document and what it works with; an instrument is not needed.
///
/// Settings are those of a fresh installation and are forgotten at the end: what a command does depends on its command
/// line alone, and the user's own settings stay as they are. Not shared between threads, but each may have one.
class Workspace
{
public:
    /// The messages outlive the workspace; so does the source of plots, when there is an instrument.
    explicit Workspace(UserMessages& messages, const PlotSource* source = nullptr);

    /// A new document of that type takes the place of the one before and is the active one: in the default view, with
    /// the phase when it is measured.
    PenDocument& newDocument(std::int16_t testType, bool withPhase);

    /// The plot of a file, "-" for standard input, takes the place of the document before, with the look that the file
    /// gives it.
    ValueOr<PenDocument*> openPlot(const QString& fileName);

    /// The document that was made last.
    PenDocument& document() { return *m_document; }
    ActiveDocument& active() { return m_active; }
    Preferences& preferences() { return m_preferences; }

private:
    PenDocument& replaceDocument();

    UserMessages& m_messages;
    const PlotSource m_noInstrument;
    const PlotSource& m_source;
    QTemporaryDir m_settingsFolder;
    SettingsStore m_store;
    Preferences m_preferences;
    ActiveDocument m_active;
    std::unique_ptr<PenDocument> m_document;
};

} // namespace cli
