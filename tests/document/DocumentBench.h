// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ActiveDocument.h"
#include "document/ClipboardPort.h"
#include "document/FilePicker.h"
#include "document/PenDocument.h"
#include "document/content/GraphScope.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "support/RecordingMessages.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <utility>

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

    QString openFileName(const QString& askedTitle, const QString& askedFilters, const QString& askedFolder) override
    {
        return saveFileName(askedTitle, askedFilters, askedFolder, {});
    }

    QString answer; ///< empty: cancelled
    int asked = 0;
    QString title, filters, folder, name;
};

/// An instrument as documents see it, for the test to set.
class SettablePlotSource : public PlotSource
{
public:
    QString instrument() const override { return name; }
    Limits limits() const override { return ranges; }
    bool extentHeld() const override { return held; }
    bool followsExtent() const override { return follows; }

    QString name;
    Limits ranges;
    bool held = false;
    bool follows = false;
};

/// Everything around a document. There is no instrument and no link.
struct DocumentBench
{
    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    ProgramState state;
    RecordingMessages messages;
    SettablePlotSource source;
    ActiveDocument active;
    MemoryClipboard clipboard;
    RecordingFilePicker picker;
    DocumentContext context{preferences, messages, source, active, &clipboard, &picker};

    int penChanges = 0; ///< pensChanged()
    QStringList quickFiles;
    QList<int> currentPens; ///< currentPenChanged()
    QStringList extents;    ///< testExtentChanged() as "1000 to 9000 linear"
    QStringList events;     ///< "closed"

    /// Records what the document says.
    void listen(PenDocument& document)
    {
        QObject::connect(&document, &PenDocument::pensChanged, [this] { ++penChanges; });
        QObject::connect(&document, &PenDocument::fileUsed, [this](const QString& file) { quickFiles << file; });
        QObject::connect(&document, &PenDocument::currentPenChanged, [this](int pen) { currentPens << pen; });
        QObject::connect(&document, &PenDocument::closed, [this] { events << QStringLiteral("closed"); });
        QObject::connect(&document, &PenDocument::testExtentChanged, [this](double low, double high, bool linear) {
            extents << QStringLiteral("%1 to %2 %3")
                           .arg(QString::number(low, 'g', 12), QString::number(high, 'g', 12),
                                linear ? QStringLiteral("linear") : QStringLiteral("logarithmic"));
        });
    }
    /// What the document said of its extent since the last call.
    QStringList takeExtents() { return std::exchange(extents, {}); }
    /// A new document of that type, active.
    std::unique_ptr<PenDocument> document(std::int16_t type)
    {
        auto made = std::make_unique<PenDocument>(context);
        made->gstrKey = QStringLiteral("Doc1");
        made->PrepareNew(type, QStringLiteral("Document 1"));
        listen(*made);
        active.set(made.get());
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

/// The document counts as saved by a later program.
inline void setNewerFormat(PenDocument& document)
{
    {
        const TableScope scope(document.peGraph(), 2);
        document.peGraph().setTAText(0, 0, QStringLiteral("2"));
    }
    document.readFormat();
}
