// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmDevice.h"

#include "../LinkFixture.h"
#include "support/FindControl.h"

#include <QAction>
#include <QDesktopServices>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QUrl>

namespace {

class WebBrowser : public QObject
{
    Q_OBJECT

public:
    WebBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~WebBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened += url; }
};

class frmDeviceTest : public LinkFixture
{
protected:
    frmDeviceTest() { setting("Prompts", "OpenSettings", 0); }

    /// Shown, with its list filled.
    void show()
    {
        chooser = new frmDevice(device, preferences, messages);
        chooser->setAttribute(Qt::WA_DeleteOnClose);
        chooser->show();
        ASSERT_TRUE(
            QTest::qWaitFor([this] { return list()->count() == int(m_entries->size()) && refresh()->isEnabled(); }));
    }
    void TearDown() override { delete chooser; }

    QListWidget* list() { return findControl<QListWidget>(chooser, "lstDevice"); }
    QPushButton* refresh() { return findControl<QPushButton>(chooser, "cmdRefresh"); }
    QPushButton* ok() { return findControl<QPushButton>(chooser, "cmdOK"); }
    QString problem() { return findControl<QLabel>(chooser, "lblProblem")->text(); }
    QStringList names()
    {
        QStringList all;
        for (int i = 0; i < list()->count(); ++i)
            all += list()->item(i)->text();
        return all;
    }
    void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    QPointer<frmDevice> chooser;
};

TEST_F(frmDeviceTest, ListsInstrumentsByNameAndSelectsTheFirst)
{
    plug();
    show();
    EXPECT_EQ(names(), QStringList({"SN0", "SN1"}));
    EXPECT_EQ(list()->currentRow(), 0);
    EXPECT_TRUE(ok()->isEnabled());
    EXPECT_TRUE(problem().isEmpty());
}

TEST_F(frmDeviceTest, WithNoInstrumentSaysWhatToDoAndOffersNoConnection)
{
    m_entries->clear();
    show();
    EXPECT_EQ(list()->count(), 0);
    EXPECT_FALSE(ok()->isEnabled());
    EXPECT_EQ(problem(), "No instrument was found. Connect one, switch it on and press Refresh.");
    QTest::keyClick(chooser, Qt::Key_Return);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(device.Connected());
}

TEST_F(frmDeviceTest, RefreshFindsWhatWasPluggedInAndKeepsTheSelection)
{
    plug();
    show();
    list()->setCurrentRow(1);
    plug();
    m_entries->erase(m_entries->begin());
    click(refresh());
    EXPECT_EQ(names(), QStringList({"SN1", "SN2"}));
    EXPECT_EQ(list()->currentItem()->text(), "SN1");
}

TEST_F(frmDeviceTest, ANameEndsAtItsFirstNul)
{
    m_entries->at(0).name = QStringLiteral("SN0") + QChar(u'\0') + QStringLiteral("rest");
    show();
    EXPECT_EQ(names(), QStringList("SN0"));
}

TEST_F(frmDeviceTest, OkConnectsToTheSelectedInstrumentAndCloses)
{
    plug();
    show();
    list()->setCurrentRow(1);
    click(ok());
    EXPECT_TRUE(device.Connected());
    EXPECT_EQ(device.ConnectedName(), "SN1");
    EXPECT_TRUE(peer(1).isOpen());
    EXPECT_FALSE(peer(0).isOpen());
    EXPECT_FALSE(chooser && chooser->isVisible());
}

TEST_F(frmDeviceTest, DoubleClickConnects)
{
    plug();
    show();
    const QPoint second = list()->visualItemRect(list()->item(1)).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(device.ConnectedName(), "SN1");
}

TEST_F(frmDeviceTest, EnterConnectsFromTheList)
{
    plug();
    show();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(device.ConnectedName(), "SN1");
    EXPECT_EQ(peer(0).timesOpened(), 0);
    EXPECT_EQ(peer(1).timesOpened(), 1);
}

TEST_F(frmDeviceTest, CancelAndEscapeCloseWithoutAConnection)
{
    show();
    click(findControl<QPushButton>(chooser, "cmdCancel"));
    EXPECT_FALSE(chooser && chooser->isVisible());
    settle();
    delete chooser;
    show();
    QTest::keyClick(chooser, Qt::Key_Escape);
    EXPECT_FALSE(chooser && chooser->isVisible());
    EXPECT_FALSE(device.Connected());
}

TEST_F(frmDeviceTest, ADeviceThatMayNotBeOpenedIsMarkedAndSaysWhy)
{
    const QString sentence = QStringLiteral("You may not open it. It belongs to the group \"dialout\".");
    plug();
    m_entries->at(1).problem = sentence;
    peer(1).failOpen(sentence);
    show();
    EXPECT_TRUE(list()->item(0)->icon().isNull());
    EXPECT_FALSE(list()->item(1)->icon().isNull());
    list()->setCurrentRow(1);
    EXPECT_EQ(problem(), sentence);
    click(ok());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, sentence);
    EXPECT_EQ(messages.shown[0].title, "Select Device");
    EXPECT_EQ(messages.shown[0].style, UserMessages::OkOnly | UserMessages::Exclamation);
    ASSERT_TRUE(chooser && chooser->isVisible());
    list()->setCurrentRow(0);
    EXPECT_TRUE(problem().isEmpty());
}

TEST_F(frmDeviceTest, TheNameChosenIsOpenedEvenWhenTheOrderHasChangedSince)
{
    plug();
    show();
    list()->setCurrentRow(1);
    std::swap(m_entries->at(0), m_entries->at(1));
    click(ok());
    EXPECT_EQ(device.ConnectedName(), "SN1");
    EXPECT_TRUE(peer(1).isOpen());
}

TEST_F(frmDeviceTest, AnInstrumentThatHasGoneSinceIsToldAndTheListFilledAnew)
{
    plug();
    show();
    m_entries->erase(m_entries->begin());
    click(ok());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "The instrument SN0 is not there any more.");
    EXPECT_FALSE(device.Connected());
    EXPECT_EQ(names(), QStringList("SN1"));
}

TEST_F(frmDeviceTest, TheConnectionMayDestroyTheChooser)
{
    show();
    QObject::connect(&device, &KorvaLink::DeviceConnected, &device, [this] { delete chooser; });
    QMetaObject::invokeMethod(chooser, &frmDevice::cmdOK_Click, Qt::QueuedConnection);
    ASSERT_TRUE(QTest::qWaitFor([this] { return chooser.isNull(); }));
    EXPECT_TRUE(device.Connected());
}

TEST_F(frmDeviceTest, AnEventDuringTheScanMayDestroyTheChooser)
{
    show();
    QTimer::singleShot(0, chooser, [this] { delete chooser; });
    chooser->ScanBus();
    EXPECT_TRUE(chooser.isNull());
}

TEST_F(frmDeviceTest, AScanInsideAScanDoesNothing)
{
    show();
    plug();
    QTimer::singleShot(0, chooser, [this] {
        chooser->ScanBus();
        EXPECT_EQ(list()->count(), 1);
    });
    chooser->ScanBus();
    EXPECT_EQ(list()->count(), 2);
}

TEST_F(frmDeviceTest, BrowseToOpensTheMakersPageOfTheSettings)
{
    WebBrowser browser;
    show();
    click(findControl<QPushButton>(chooser, "cmdBrowseTo"));
    ASSERT_TRUE(setting("URL", "MarrowickInstruments", "https://example.org/instruments"));
    click(findControl<QPushButton>(chooser, "cmdBrowseTo"));
    ASSERT_EQ(browser.opened.size(), 2);
    EXPECT_EQ(browser.opened[0], QUrl("https://www.marrowick.example/"));
    EXPECT_EQ(browser.opened[1], QUrl("https://example.org/instruments"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmDeviceTest, APageThatCannotBeOpenedIsTold)
{
    ASSERT_TRUE(setting("URL", "MarrowickInstruments", "nothing-knows-this:page"));
    show();
    click(findControl<QPushButton>(chooser, "cmdBrowseTo"));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "The web page nothing-knows-this:page cannot be opened.");
}

} // namespace

#include "frmDeviceTest.moc"
