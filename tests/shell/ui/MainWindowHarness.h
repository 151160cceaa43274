// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/ui/GraphView.h"
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/commands/ui/CommandSet.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/StatusBar.h"
#include "shell/ui/frmMain.h"
#include "support/FrameText.h"
#include "support/Press.h"
#include "support/RecordingMessages.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <gtest/gtest.h>

/// The real main window over an instrument in memory, with settings of its own.
class MainWindowHarness : public ::testing::Test
{
protected:
    MainWindowHarness()
        : store(folder.path())
        , preferences(store, state.gstrAppTitle)
        , devices(std::vector<std::unique_ptr<DeviceSource>>{})
        , device(devices)
    {
        // Each test has journals of its own.
        qputenv("XDG_STATE_HOME", QFile::encodeName(folder.filePath(QStringLiteral("state"))));
        preferences.setValue(options::kSplashScreen, false);
        preferences.setValue(options::kOpenSettings, false);
        for (const options::FolderOption& path : options::kFolders)
            preferences.setValue(path.option, folder.path());
        preferences.setValue(options::kWindowState, options::WindowNormal);
        preferences.setValue(options::kWindowWidth, 1200 * 15);
        preferences.setValue(options::kWindowHeight, 800 * 15);
        main = std::make_unique<frmMain>(ShellContext{state, preferences, devices, device, mirror, messages});
    }

    void load()
    {
        main->load([] {});
        settle();
    }

    static void settle()
    {
        for (int i = 0; i < 5; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    /// The instrument is plugged in and opened; what the program wrote so far is forgotten.
    void connectInstrument()
    {
        auto [transport, other] = MemoryTransport::makePair();
        peer = other;
        ASSERT_TRUE(device.OpenTransport(std::move(transport), QStringLiteral("TEST")));
        settle();
        peer->takeWritten();
    }

    QByteArray written()
    {
        device.Flush();
        settle();
        return peer->takeWritten();
    }

    static QByteArray frame(char code, int f = 0, double n1 = 0, double n2 = 0, double n3 = 0, double n4 = 0, int i = 0)
    {
        return frametext::numbers(code, static_cast<char>('0' + f), n1, n2, n3, n4, i);
    }
    void receive(const QByteArray& bytes)
    {
        peer->send(bytes);
        settle();
    }

    /// A new impedance document with 20 points in its first pen, saved as it were, and settled.
    PenDocument* measuredDocument()
    {
        PenDocument* const document = newDocument(PenDocument::Impedance);
        for (int i = 0; i < 20; ++i)
            document->AddImpedancePoint(1000 + 100 * i, 50 + i, 30, 1, i);
        document->setModified(false);
        settle();
        return document;
    }

    /// File New for that type, without its dialog.
    PenDocument* newDocument(int type)
    {
        mirror.bfAmplitudeTest = type == PenDocument::Amplitude;
        mirror.bfImpedanceTest = type == PenDocument::Impedance;
        if (type == PenDocument::Reactance) {
            state.giNewDocType = PenDocument::Reactance;
            PenDocument* document = main->gcolDocuments().LoadNewDoc();
            document->gbfSendZoom = true;
            document->graphSetDefaultView();
            main->documentArea().showDocument(*document);
        } else {
            trigger("mnuFileNew");
        }
        mirror.bfAmplitudeTest = mirror.bfImpedanceTest = true;
        settle();
        return main->activeDocument();
    }

    QAction& action(const char* name) { return main->commands().action(name); }
    void trigger(const char* name)
    {
        action(name).trigger();
        settle();
    }
    /// Pressed by mouse or keyboard in the window itself.
    testing::AssertionResult pressMenu(const char* name) { return press::menu(*main, QLatin1String(name)); }
    testing::AssertionResult pressShortcut(const char* keys)
    {
        return press::shortcut(*main, QKeySequence(QLatin1String(keys)));
    }
    testing::AssertionResult pressPopup(PenDocument* document, const QStringList& path)
    {
        GraphView& view = windowOf(document)->view();
        return press::popup(view, path, view.plotArea().center());
    }
    frmDocument* windowOf(PenDocument* document) { return main->documentArea().windowOf(*document); }

    static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }

    QTemporaryDir folder;
    ProgramState state;
    SettingsStore store;
    Preferences preferences;
    DeviceList devices;
    KorvaLink device;
    InstrumentMirror mirror;
    RecordingMessages messages;
    std::shared_ptr<MemoryPeer> peer;
    std::unique_ptr<frmMain> main;
};
