// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/SerialTransport.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/TestRun.h"
#include "link/settings/SettingsDialogHost.h"
#include "link/settings/ui/frmSettings.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "support/FindControl.h"
#include "support/FrameText.h"
#include "support/RecordingMainWindow.h"
#include "support/RecordingMessages.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

/// The instrument's end of a pseudo-terminal.
class Terminal
{
public:
    Terminal()
        : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        EXPECT_GE(m_master, 0);
        EXPECT_EQ(::grantpt(m_master), 0);
        EXPECT_EQ(::unlockpt(m_master), 0);
        m_path = QString::fromLocal8Bit(::ptsname(m_master));
        // The other end stays open here: nothing is lost before the program has opened it.
        m_slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
        termios settings{};
        ::tcgetattr(m_slave, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(m_slave, TCSANOW, &settings);
    }
    ~Terminal()
    {
        ::close(m_slave);
        ::close(m_master);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    const QString& path() const { return m_path; }

    void send(const QByteArray& bytes)
    {
        ASSERT_EQ(::write(m_master, bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
    }
    /// What has arrived since the last call.
    QByteArray take()
    {
        QByteArray bytes;
        char chunk[4096];
        for (;;) {
            const ssize_t count = ::read(m_master, chunk, sizeof chunk);
            if (count <= 0)
                return bytes;
            bytes.append(chunk, static_cast<qsizetype>(count));
        }
    }

private:
    int m_master;
    int m_slave;
    QString m_path;
};

/// The settings dialog over a link on a pseudo-terminal: what is asserted is what arrives at the other end.
class SettingsFixture : public ::testing::Test, public SettingsDialogHost
{
protected:
    void SetUp() override
    {
        setting("Prompts", "OpenSettings", 0);
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(terminal.path()), QStringLiteral("pty")));
        ASSERT_TRUE(QTest::qWaitFor([this] {
            arrived += terminal.take();
            return arrived.count("enquire 1.28\r") == 2;
        }));
        arrived.clear();
        mirror.strDeviceSerial = QStringLiteral("S1");
        mirror.strDeviceModel = QStringLiteral("T46");
        mirror.bfAmplitudeTest = true;
        mirror.bfImpedanceTest = true;
        mirror.bfAttenuationAvailable = true;
        mirror.iAttenuationSteps = 3;
        mirror.dblAttenuationStep = 10;
        state.gbfDeviceReady = true;
    }
    void TearDown() override { delete form; }

    /// Opens the dialog for the mirror as it is.
    void open()
    {
        delete form;
        form = new frmSettings(module, *this);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
    }
    void openSampling()
    {
        mirror.strDeviceModel = QStringLiteral("PELLFERN");
        mirror.bfAttenuationAvailable = false;
        open();
    }

    /// Text from another program, as Ctrl+V puts it in the place of what stands in the box.
    void paste(const char* name, const char* text)
    {
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
        auto* const box = control<QLineEdit>(name);
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    }

    /// The commands that arrived at the instrument, joined by "|". A mark written behind them tells that all are there.
    QString commands()
    {
        const QByteArray mark = "mark\r";
        device.Write(QString::fromLatin1(mark));
        EXPECT_TRUE(QTest::qWaitFor([&] {
            arrived += terminal.take();
            return arrived.endsWith(mark);
        }));
        QString text = QString::fromLatin1(arrived.chopped(mark.size()));
        arrived.clear();
        if (text.endsWith(u'\r'))
            text.chop(1);
        text.replace(u'\r', u'|');
        // The pin follows documents and pens, whatever the dialog does.
        static const QRegularExpression pin(QStringLiteral("setpin \\d+\\|?"));
        return text.remove(pin);
    }
    /// A frame of the instrument, handled.
    void frame(const QByteArray& bytes)
    {
        bool handled = false;
        module.registerHandler('!', [&handled](const Frame&) { return handled = true; });
        terminal.send(bytes + frametext::numbers('!', '0'));
        ASSERT_TRUE(QTest::qWaitFor([&handled] { return handled; }));
        module.registerHandler('!', {});
    }

    template <typename Control>
    Control* control(const char* name)
    {
        return findControl<Control>(form, name);
    }
    /// Clicks at the indicator: the text may end before the middle of a wide control.
    void click(const char* name)
    {
        auto* const button = control<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }
    void type(const char* name, const char* text, bool enter = true)
    {
        auto* const box = control<QLineEdit>(name);
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, QLatin1String(text));
        if (enter)
            QTest::keyClick(box, Qt::Key_Return);
    }
    QString boxText(const char* name) { return control<QLineEdit>(name)->text(); }
    bool checked(const char* name) { return control<QAbstractButton>(name)->isChecked(); }
    /// Visible on its tab, whichever tab is in front.
    bool shown(const char* name) { return !control<QWidget>(name)->isHidden(); }
    void press(const char* slider, int key) { QTest::keyClick(control<QSlider>(slider), static_cast<Qt::Key>(key)); }

    bool setting(const char* section, const char* key, const QVariant& value)
    {
        return store.SaveSetting(state.gstrAppTitle, QLatin1String(section), QLatin1String(key), value);
    }
    QString saved(const char* section, const char* key)
    {
        return store.GetSetting(state.gstrAppTitle, QLatin1String(section), QLatin1String(key),
                                QStringLiteral("(none)"));
    }
    std::unique_ptr<PenDocument> makeDocument(std::int16_t type)
    {
        auto document =
            std::make_unique<PenDocument>(DocumentContext{preferences, messages, plotSource, window.active});
        document->gstrKey = QStringLiteral("Doc%1").arg(++m_documentCounter);
        document->PrepareNew(type, QStringLiteral("Document %1").arg(m_documentCounter));
        return document;
    }

    // SettingsDialogHost
    PenDocument* LoadNewDoc() override
    {
        if (roomForDocuments == 0)
            return nullptr;
        --roomForDocuments;
        documents.push_back(makeDocument(state.giNewDocType));
        window.active = documents.back().get();
        documents.back()->gbfSendZoom = sendZooms;
        return documents.back().get();
    }
    void showDocument(PenDocument& document) override { shownDocuments.push_back(&document); }
    void addFunctionKeys(QWidget& target) override { functionKeys = &target; }

    Terminal terminal;
    QByteArray arrived;
    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    ProgramState state;
    Preferences preferences{store, state.gstrAppTitle};
    InstrumentMirror mirror;
    RecordingMessages messages;
    RecordingMainWindow window;
    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>{}};
    KorvaLink device{devices};
    int m_documentCounter = 0;
    InstrumentPlotSource plotSource{device, mirror, state};
    DeviceModule module{LinkContext{device, mirror, state, preferences, messages, window, window.active}};
    TestRun run{module};
    std::vector<std::unique_ptr<PenDocument>> documents;
    std::vector<PenDocument*> shownDocuments;
    QWidget* functionKeys = nullptr;
    int roomForDocuments = 100;
    bool sendZooms = false; ///< of new documents
    QPointer<frmSettings> form;
};
