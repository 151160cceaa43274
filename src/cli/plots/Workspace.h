// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentHost.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Outcome.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace cli {

/// One document and what it works with; an instrument is not needed.
///
/// Settings are those of a fresh installation and are forgotten at the end: what a command does depends on its command
/// line alone, and the user's own settings stay as they are. Not shared between threads, but each may have one.
class Workspace
{
public:
    /// The messages outlive the workspace; so does the host, when there is one.
    explicit Workspace(UserMessages& messages, DocumentHost* host = nullptr);

    /// Told of each document before anything is done with it.
    std::function<void(PenDocument&)> onNewDocument;

    /// A new document of that type takes the place of the one before, in the default view, with the phase when it is
    /// measured. The sweep settings must stand in the mirror.
    PenDocument& newDocument(std::int16_t testType);

    /// The plot of a file, "-" for standard input, takes the place of the document before, with the look that the file
    /// gives it.
    ValueOr<PenDocument*> openPlot(const QString& fileName);

    DeviceList& devices() { return m_devices; }
    KorvaLink& device() { return m_device; }
    InstrumentMirror& mirror() { return m_mirror; }
    ProgramState& state() { return m_state; }
    Preferences& preferences() { return m_preferences; }
    UserMessages& messages() { return m_messages; }

private:
    class NoWindow;

    PenDocument& replaceDocument();

    std::shared_ptr<DocumentHost> m_ownHost; ///< null when the host is somebody else's
    DocumentHost& m_host;
    QTemporaryDir m_settingsFolder;
    SettingsStore m_store;
    ProgramState m_state;
    Preferences m_preferences;
    UserMessages& m_messages;
    DeviceList m_devices;
    KorvaLink m_device;
    InstrumentMirror m_mirror;
    std::unique_ptr<PenDocument> m_document;
};

} // namespace cli
