// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "document/PenDocument.h"
#include "document/content/GraphScope.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/SweepRecorder.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "support/FrameText.h"
#include "support/RecordingMainWindow.h"
#include "support/RecordingMessages.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>

/// Devices that a test plugs in: each opens a memory transport to its peer.
class PeerSource : public DeviceSource
{
public:
    std::vector<DeviceEntry> devices() const override { return *entries; }
    std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const override
    {
        ++*opened;
        const auto number = static_cast<std::size_t>(device.path.toInt());
        return std::make_unique<MemoryTransport>(peers->at(number));
    }

    std::shared_ptr<std::vector<DeviceEntry>> entries = std::make_shared<std::vector<DeviceEntry>>();
    std::shared_ptr<std::vector<std::shared_ptr<MemoryPeer>>> peers =
        std::make_shared<std::vector<std::shared_ptr<MemoryPeer>>>();
    std::shared_ptr<int> opened = std::make_shared<int>(0);
};

/// A settings dialog that answers what the test wants.
class RecordingDialog : public SettingsDialogPort
{
public:
    bool monitorChecked() const override { return monitor; }
    void uncheckMonitor() override
    {
        monitor = false;
        ++unchecked;
    }
    QString lowFrequencyText() const override { return low; }
    QString highFrequencyText() const override { return high; }

    bool monitor = false;
    int unchecked = 0;
    QString low, high;
};

/// The instrument's side of the program on a memory transport, with real documents and a real settings store.
class LinkFixture : public ::testing::Test
{
protected:
    LinkFixture()
    {
        plug();
        run.setAnswerWait(0);
        QObject::connect(&module.events(), &InstrumentEvents::plottingChanged,
                         [this](bool plotting) { penBarEnabled = !plotting; });
        QObject::connect(&module.events(), &InstrumentEvents::changed, [this](MirrorPart part) {
            if (part == MirrorPart::Repeat)
                repeatStatus = mirror.bfRepeat;
        });
        QObject::connect(&module.events(), &InstrumentEvents::pointShown, [this] { ++pointsShown; });
        QObject::connect(&module.events(), &InstrumentEvents::loopViewWanted, [this](bool shown) {
            window.calls << (shown ? QStringLiteral("loop view wanted") : QStringLiteral("loop view ended"));
        });
        module.answers().setQuiet(0);
    }

    /// One more instrument to be found.
    std::shared_ptr<MemoryPeer> plug()
    {
        auto peer = std::make_shared<MemoryPeer>();
        m_peers->push_back(peer);
        const int number = static_cast<int>(m_peers->size()) - 1;
        m_entries->push_back({QStringLiteral("SN%1").arg(number), QString::number(number), {}});
        return peer;
    }
    MemoryPeer& peer(std::size_t number = 0) { return *m_peers->at(number); }

    /// Opens the instrument and forgets what the connection wrote.
    void connectDevice(int index = 0)
    {
        device.Configure(QStringLiteral("KorvaLink"), 1, 0, index);
        ASSERT_TRUE(device.Open()) << device.LastError().toStdString();
        peer(static_cast<std::size_t>(index)).takeWritten();
    }

    /// Frames arrive, and the event loop runs until they are handled.
    void send(const QByteArray& bytes, std::size_t number = 0)
    {
        peer(number).send(bytes);
        settle();
    }
    static void settle()
    {
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
    }
    QStringList written(std::size_t number = 0)
    {
        QStringList commands = QString::fromLatin1(peer(number).takeWritten()).split(u'\r');
        if (!commands.isEmpty() && commands.constLast().isEmpty())
            commands.removeLast();
        return commands;
    }

    std::unique_ptr<PenDocument> makeDocument(std::int16_t type)
    {
        auto document =
            std::make_unique<PenDocument>(DocumentContext{preferences, messages, plotSource, window.active});
        document->gstrKey = QStringLiteral("Doc%1").arg(++m_documentCounter);
        document->PrepareNew(type, QStringLiteral("Document %1").arg(m_documentCounter));
        return document;
    }
    void activate(const std::unique_ptr<PenDocument>& document) { window.active = document.get(); }

    /// A test has started on the active document.
    void startPlotting(double start = 1000, double end = 1000000)
    {
        send(frametext::numbers('D', '1', 1, start, end, 0, 0));
        ASSERT_TRUE(state.gbfPlotting);
    }
    QString panel(int index) { return window.panels[index]; }
    bool setting(const char* section, const char* key, const QVariant& value)
    {
        return store.SaveSetting(state.gstrAppTitle, QLatin1String(section), QLatin1String(key), value);
    }
    QString saved(const QString& section, const char* key)
    {
        return store.GetSetting(state.gstrAppTitle, section, QLatin1String(key), QStringLiteral("(none)"));
    }

    std::vector<std::unique_ptr<DeviceSource>> sources()
    {
        auto source = std::make_unique<PeerSource>();
        m_entries = source->entries;
        m_peers = source->peers;
        m_opened = source->opened;
        std::vector<std::unique_ptr<DeviceSource>> list;
        list.push_back(std::move(source));
        return list;
    }

    std::shared_ptr<std::vector<DeviceEntry>> m_entries;
    std::shared_ptr<std::vector<std::shared_ptr<MemoryPeer>>> m_peers;
    std::shared_ptr<int> m_opened;
    bool penBarEnabled = true;
    bool repeatStatus = false;
    int pointsShown = 0;
    int m_documentCounter = 0;

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    ProgramState state;
    Preferences preferences{store, state.gstrAppTitle};
    InstrumentMirror mirror;
    RecordingMessages messages;
    RecordingMainWindow window;
    DeviceList devices{sources()};
    KorvaLink device{devices};
    InstrumentPlotSource plotSource{device, mirror, state};
    DeviceModule module{LinkContext{device, mirror, state, preferences, messages, window, window.active}};
    TestRun run{module};
    RecordingDialog dialog;
};

/// The document counts as saved by a later program.
inline void setNewerFormat(PenDocument& document)
{
    {
        const TableScope scope(document.peGraph(), 2);
        document.peGraph().setTAText(0, 0, QStringLiteral("2"));
    }
    document.readFormat();
}
