// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmAddText.h"
#include "document/ui/frmFileProperties.h"
#include "link/settings/ui/frmSettings.h"
#include "link/ui/frmAbout.h"
#include "link/ui/frmDevice.h"
#include "link/ui/frmDeviceProperties.h"
#include "link/ui/frmTestSchedule.h"
#include "prefs/ui/frmPreferences.h"
#include "shell/ui/MainWindowHarness.h"
#include "view/ui/GraphViewXRGB.h"
#include "view/ui/frmOptions.h"

#include <QFile>
#include <QTabWidget>
#include <QTimer>

namespace {

class FrmMainDialogsTest : public MainWindowHarness
{
protected:
    /// Does this with the modal dialog of that kind as soon as it is on the screen.
    template <typename Dialog>
    void whenShown(const std::function<void(Dialog&)>& then)
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this, then] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_poll.stop();
            ++seen;
            then(*dialog);
        });
        m_poll.start(2);
    }

    QTimer m_poll;
    int seen = 0;
};

TEST_F(FrmMainDialogsTest, withoutPathsTheUserIsToldAndGetsTheGeneralPageBeforeTheWindowShows)
{
    ASSERT_TRUE(QFile::remove(store.fileOf(state.gstrAppTitle)));
    preferences.setValue(options::kOpenSettings, false);
    bool windowVisible = true;
    int tab = -1;
    whenShown<frmPreferences>([&](frmPreferences& form) {
        windowVisible = main->isVisible();
        tab = form.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->currentIndex();
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    load();
    EXPECT_EQ(seen, 1);
    EXPECT_FALSE(windowVisible);
    EXPECT_EQ(tab, 4);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Paths not set"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Please enter the paths to your files."));
    EXPECT_TRUE(main->boolArePathsSet()) << "leaving the dialog stores what it shows";
    EXPECT_TRUE(main->isVisible());
}

TEST_F(FrmMainDialogsTest, thePreferencesChangeThePenBar)
{
    load();
    whenShown<frmPreferences>([](frmPreferences& form) {
        QTest::mouseClick(form.findChild<QWidget*>(QStringLiteral("cmdDefault")), Qt::LeftButton);
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    preferences.setValue(options::kPens[3], 0x777777U);
    main->penInitialise();
    ASSERT_EQ(main->tbPenBar().lblPen(3).colour(), 0x777777U);
    trigger("mnuPreferences");
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(main->tbPenBar().lblPen(3).colour(), 0x0080FFU);
}

TEST_F(FrmMainDialogsTest, aConnectionTakesTheChooserDown)
{
    load();
    whenShown<frmDevice>([this](frmDevice&) { connectInstrument(); });
    trigger("mnuTestDevice");
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(device.Connected());
}

TEST_F(FrmMainDialogsTest, withThePromptTheChooserOpensAtLoad)
{
    preferences.setValue(options::kPromptDevice, true);
    whenShown<frmDevice>([](frmDevice& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    load();
    EXPECT_EQ(seen, 1);
}

TEST_F(FrmMainDialogsTest, startWithoutInstrumentOffersTheChooser)
{
    load();
    newDocument(PenDocument::Impedance);
    whenShown<frmDevice>([](frmDevice& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    trigger("mnuTestStart");
    EXPECT_EQ(seen, 1);
    EXPECT_FALSE(state.gbfPlotting);
}

TEST_F(FrmMainDialogsTest, devicePropertiesCloseWhenTheInstrumentIsLost)
{
    load();
    connectInstrument();
    trigger("mnuTestDeviceProperties");
    const QPointer<frmDeviceProperties> window = main->findChild<frmDeviceProperties*>();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    trigger("mnuTestDeviceProperties");
    EXPECT_EQ(main->findChildren<frmDeviceProperties*>().size(), 1);
    peer->unplug();
    EXPECT_TRUE(waitFor([&window] { return !window; }));
}

TEST_F(FrmMainDialogsTest, aboutAndTestScheduleOpen)
{
    load();
    whenShown<frmAbout>([](frmAbout& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    trigger("mnuHelpAbout");
    EXPECT_EQ(seen, 1);
    m_poll.disconnect();
    whenShown<frmTestSchedule>([](frmTestSchedule& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    trigger("mnuTestSchedule");
    EXPECT_EQ(seen, 2);
}

TEST_F(FrmMainDialogsTest, theSettingsOpenAtAConnectionWhenTheUserWantsThem)
{
    preferences.setValue(options::kOpenSettings, true);
    load();
    connectInstrument();
    const QPointer<frmSettings> settings = main->findChild<frmSettings*>();
    ASSERT_TRUE(settings);
    EXPECT_TRUE(settings->isVisible());
    EXPECT_FALSE(settings->isModal());
    peer->unplug();
    EXPECT_TRUE(waitFor([&settings] { return !settings; }));
}

TEST_F(FrmMainDialogsTest, withoutThatWishTheyOpenOnCommandOnlyAndOnce)
{
    load();
    connectInstrument();
    EXPECT_EQ(main->findChild<frmSettings*>(), nullptr);
    trigger("mnuTestSettings");
    trigger("mnuTestSettings");
    EXPECT_EQ(main->findChildren<frmSettings*>().size(), 1);
    main->findChild<frmSettings*>()->close();
    trigger("mnuTestSettings");
    ASSERT_EQ(main->findChildren<frmSettings*>().size(), 1);
    EXPECT_TRUE(main->findChild<frmSettings*>()->isVisible());
}

TEST_F(FrmMainDialogsTest, functionKeysWorkInTheSettings)
{
    load();
    connectInstrument();
    newDocument(PenDocument::Impedance);
    trigger("mnuTestSettings");
    auto* settings = main->findChild<frmSettings*>();
    ASSERT_NE(settings, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(settings));
    written();
    QTest::keyClick(settings, Qt::Key_F6);
    EXPECT_EQ(written(), QByteArray("y\r"));
}

TEST_F(FrmMainDialogsTest, theSettingsGoWithTheClickOnTheirOwnButton)
{
    load();
    connectInstrument();
    for (int round = 0; round < 3; ++round) {
        trigger("mnuTestSettings");
        const QPointer<frmSettings> settings = main->findChild<frmSettings*>();
        ASSERT_TRUE(settings);
        auto* ok = settings->findChild<QWidget*>(QStringLiteral("OKButton"));
        ASSERT_NE(ok, nullptr);
        QTest::mouseClick(settings->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          ok->mapTo(settings.data(), ok->rect().center()));
        settle();
        EXPECT_FALSE(settings);
    }
}

TEST_F(FrmMainDialogsTest, closingTheProgramTakesTheSettingsDown)
{
    load();
    connectInstrument();
    trigger("mnuTestSettings");
    main->close();
    settle();
    EXPECT_EQ(main->findChild<frmSettings*>(), nullptr);
}

TEST_F(FrmMainDialogsTest, addTextAndPropertiesOpenForTheActiveDocumentFromItsPopupToo)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    whenShown<frmAddText>([](frmAddText& form) {
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Add text: Document 1"));
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    trigger("mnuViewAddText");
    EXPECT_EQ(seen, 1);
    m_poll.start();
    Q_EMIT document->peGraph().CustomMenuClicked(PopupAddText, 0);
    settle();
    EXPECT_EQ(seen, 2);
    m_poll.disconnect();
    whenShown<frmFileProperties>([](frmFileProperties& form) { QTest::keyClick(&form, Qt::Key_Escape); });
    Q_EMIT document->peGraph().CustomMenuClicked(PopupProperties, 0);
    settle();
    EXPECT_EQ(seen, 3);
}

TEST_F(FrmMainDialogsTest, viewOptionsOpenForEachTypeFromMenuKeyToolBarAndPopup)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    const auto close = [](ViewDialog& form) { QTest::keyClick(&form, Qt::Key_Escape); };
    whenShown<frmOptions>(close);
    EXPECT_TRUE(pressMenu("mnuViewOptions"));
    EXPECT_EQ(seen, 1);
    m_poll.start();
    EXPECT_TRUE(pressShortcut("F3"));
    EXPECT_EQ(seen, 2);
    m_poll.start();
    main->buttonClick(QStringLiteral("GraphView"));
    EXPECT_EQ(seen, 3);
    m_poll.start();
    Q_EMIT document->peGraph().CustomMenuClicked(PopupViewOptions, 0);
    settle();
    EXPECT_EQ(seen, 4);
    m_poll.disconnect();
    newDocument(PenDocument::Reactance);
    whenShown<GraphViewXRGB>(close);
    trigger("mnuViewOptions");
    EXPECT_EQ(seen, 5);
}

TEST_F(FrmMainDialogsTest, thePopupOffersAllThatFitsTheDocument)
{
    load();
    PenDocument* document = newDocument(PenDocument::Impedance);
    for (const int item : {PopupViewOptions, PopupAddText, PopupAnalysis, PopupLoop, PopupView, PopupPhase, PopupCut,
                           PopupCopy, PopupExport, PopupProperties})
        EXPECT_EQ(document->peGraph().CustomMenuState(item), graph::MenuNormal) << item;
}

TEST_F(FrmMainDialogsTest, aMissingManualIsTold)
{
    load();
    const QString file = folder.filePath(QStringLiteral("Manual.pdf"));
    preferences.setValue(options::kManual, file);
    trigger("mnuManual");
    trigger("mnuInterimManual");
    ASSERT_EQ(messages.shown.size(), 2U);
    for (const auto& shown : messages.shown)
        EXPECT_EQ(shown.text, QStringLiteral("File not found ") + file);
}

} // namespace
