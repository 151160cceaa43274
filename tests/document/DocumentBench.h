// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "document/ClipboardPort.h"
#include "document/FilePicker.h"
#include "document/GraphScope.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "support/RecordingMainWindow.h"
#include "support/RecordingMessages.h"

#include <QFile>
#include <QTemporaryDir>

#include <map>
#include <memory>

/// A clipboard of the test's own.
class MemoryClipboard : public ClipboardPort
{
public:
    QString text() const override { return content; }
    void setText(const QString& text) override { content = text; }

    QString content;
};

/// Answers with a name and keeps what it was asked.
class RecordingFilePicker : public FilePicker
{
public:
    QString saveFileName(const QString& askedTitle, const QString& askedFilters, const QString& askedFolder,
                         const QString& askedName) override
    {
        ++asked;
        title = askedTitle;
        filters = askedFilters;
        folder = askedFolder;
        name = askedName;
        return answer;
    }

    QString answer; ///< empty: cancelled
    int asked = 0;
    QString title, filters, folder, name;
};

/// Everything around a document, with an instrument in memory.
struct DocumentBench
{
    class Window : public RecordingMainWindow
    {
    public:
        void updateToolBars(PenDocument&) override { ++toolBarUpdates; }
        void defaultToolBars() override { calls << QStringLiteral("defaultToolBars"); }
        void UpdateQuickFileList(const QString& file) override { quickFiles << file; }

        int toolBarUpdates = 0;
        QStringList quickFiles;
    };

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>()};
    KorvaLink link{devices};
    std::shared_ptr<MemoryPeer> instrument;
    InstrumentMirror mirror;
    ProgramState state;
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    RecordingMessages messages;
    Window window;
    MemoryClipboard clipboard;
    RecordingFilePicker picker;
    DocumentContext context{link, mirror, state, preferences, messages, window, &clipboard, &picker};

    /// An instrument is plugged in.
    void connect()
    {
        auto [transport, peer] = MemoryTransport::makePair();
        instrument = peer;
        link.OpenTransport(std::move(transport));
        instrument->takeWritten();
    }
    /// What the instrument has been sent since the last call.
    QByteArray written()
    {
        link.Flush();
        return instrument ? instrument->takeWritten() : QByteArray();
    }
    /// A new document of that type, active.
    std::unique_ptr<PenDocument> document(std::int16_t type)
    {
        auto made = std::make_unique<PenDocument>(context);
        made->gstrKey = QStringLiteral("Doc1");
        made->PrepareNew(type, QStringLiteral("Document 1"));
        window.active = made.get();
        return made;
    }
    QString path(const QString& name) const { return folder.filePath(name); }
};

/// Properties of one Y axis or table, whatever is selected.
inline QString yTitle(PenDocument& document, int axis)
{
    const AxisScope scope(document.peGraph(), axis);
    return document.peGraph().YAxisLabel();
}

inline void setYTitle(PenDocument& document, int axis, const QString& title)
{
    const AxisScope scope(document.peGraph(), axis);
    document.peGraph().setYAxisLabel(title);
}

inline QString cellText(PenDocument& document, int table, int row = 0, int column = 0)
{
    const TableScope scope(document.peGraph(), table);
    return document.peGraph().TAText(row, column);
}

inline void setMasks(PenDocument& document, bool on)
{
    const TableScope scope(document.peGraph(), 1);
    document.peGraph().setTAText(0, 0, on ? QStringLiteral("MASK") : QString());
}
