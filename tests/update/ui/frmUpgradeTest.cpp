// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/ui/frmUpgrade.h"

#include "sim/protocol/StatusFrames.h"
#include "support/FindControl.h"
#include "tests/controls/tarnload/UpgradeBench.h"
#include "tests/link/LinkFixture.h"
#include "update/FirmwareUpgrade.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

using ::testing::Contains;
using ::testing::Not;

namespace {

/// The wizard before the boot side of a simulated instrument, on a link in memory.
class frmUpgradeTest : public LinkFixture
{
protected:
    frmUpgradeTest()
    {
        setting("Prompts", "OpenSettings", 1);
        m_entries->front().name = QStringLiteral("T46-0042");
        m_peers->front() = bench.peer;
        bench.onCommand = [this](const std::string& word) {
            commands << QString::fromStdString(word);
            if (word != "enquire")
                return;
            for (const sim::Frame& frame : {sim::status::firmware(bench.state), sim::status::serial(bench.state)})
                bench.peer->send(QByteArrayView(frame.data(), qsizetype(frame.size())));
        };
        devices.refresh();
        upgrade.loader().setPatience(bench.patience);
    }
    void TearDown() override { delete wizard; }

    void show(const QString& fileName)
    {
        upgrade.storeFile(fileName);
        show();
    }
    void show()
    {
        wizard = new frmUpgrade(
            module, upgrade,
            [this](const QString& title, const QString& filter, const QString& beginsIn) {
                asked = {title, filter, beginsIn};
                return chosen;
            },
            nullptr);
        wizard->show();
    }
    /// On the page of the warning, with the instrument open.
    void goToWarning(const QString& fileName)
    {
        show(fileName);
        click("cmdNext_0");
        click("cmdNext_1");
        ASSERT_EQ(wizard->giCurrentPage, 2);
        ASSERT_TRUE(button("cmdNext_2")->isEnabled());
    }

    QPushButton* button(const char* name) { return findControl<QPushButton>(wizard, name); }
    void click(const char* name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    QString text(const char* name) { return findControl<QLabel>(wizard, name)->text(); }
    QString file() { return findControl<QLineEdit>(wizard, "txtFirmware")->text(); }
    QStringList listed()
    {
        QStringList all;
        const auto* const list = findControl<QListWidget>(wizard, "lstDevice");
        for (int i = 0; i < list->count(); ++i)
            all += list->item(i)->text();
        return all;
    }

    UpgradeBench bench;
    FirmwareUpgrade upgrade{module, devices, bench.maker.keyFolder()};
    QPointer<frmUpgrade> wizard;
    QStringList commands, asked;
    QString chosen;
};

} // namespace

// The file
// -------------------------------------------------------------------------------------------------------------

TEST_F(frmUpgradeTest, WithNoStoredNameTheProgramsFolderStandsThereAndThereIsNoWayOn)
{
    show();
    EXPECT_EQ(file(), QCoreApplication::applicationDirPath());
    EXPECT_EQ(text("lblInformation_0"), "File not found");
    EXPECT_EQ(text("lblVersion_0"), "");
    EXPECT_FALSE(button("cmdNext_0")->isEnabled());
}

TEST_F(frmUpgradeTest, AnEmptyNameIsReplacedByUpgradeInTheCurrentFolder)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QFileInfo(bench.file()).path()));
    ASSERT_TRUE(QFile::rename(QStringLiteral("new.mfw"), QStringLiteral("Upgrade.mfw")));
    show();
    findControl<QLineEdit>(wizard, "txtFirmware")->clear();
    wizard->CheckUpgradeFile();
    EXPECT_EQ(file(), "Upgrade.mfw");
    EXPECT_EQ(text("lblVersion_0"), "V1.29 Build 7");
    QDir::setCurrent(before);
}

TEST_F(frmUpgradeTest, AValidFileIsShownOnThreePages)
{
    show(bench.file());
    for (const char* name : {"lblVersion_0", "lblVersion_1", "lblVersion_2"})
        EXPECT_EQ(text(name), "V1.29 Build 7") << name;
    for (const char* name : {"lblInformation_0", "lblInformation_1", "lblInformation_2"})
        EXPECT_EQ(text(name), "Sweeps begin sooner.") << name;
    EXPECT_TRUE(button("cmdNext_0")->isEnabled());
}

TEST_F(frmUpgradeTest, NotesAreTextWhateverTheyLookLike)
{
    firmware::Header header = FirmwareMaker::header();
    header.notes = QStringLiteral("<b>bold</b>");
    show(bench.file(header));
    EXPECT_EQ(findControl<QLabel>(wizard, "lblInformation_0")->textFormat(), Qt::PlainText);
}

TEST_F(frmUpgradeTest, AFileThatIsNoneIsSaidToBe)
{
    show(bench.maker.write(QStringLiteral("bad.mfw"), "something else"));
    EXPECT_EQ(text("lblInformation_0"), "Not valid upgrade file");
    EXPECT_EQ(text("lblVersion_0"), "");
    EXPECT_FALSE(button("cmdNext_0")->isEnabled());
}

TEST_F(frmUpgradeTest, BrowsingBeginsInTheFolderOfTheLastFileAndStoresTheChosenOne)
{
    show(QStringLiteral("/folder/of.old/last.mfw"));
    chosen = bench.file();
    click("cmdBrowse");
    EXPECT_EQ(asked, QStringList({"Open Upgrade File", "T46 upgrade files(*.mfw)|*.mfw", "/folder/of.old/"}));
    EXPECT_EQ(file(), chosen);
    EXPECT_EQ(upgrade.storedFile(), chosen);
    EXPECT_TRUE(button("cmdNext_0")->isEnabled());
    EXPECT_EQ(button("cmdBrowse")->toolTip(), "Browse to file");
    EXPECT_EQ(button("cmdBrowse")->text(), "...");
}

TEST_F(frmUpgradeTest, BrowsingWithNothingStoredBeginsInTheFolderOfUpdates)
{
    show();
    click("cmdBrowse");
    EXPECT_EQ(asked.value(2), QCoreApplication::applicationDirPath());
    setting("Paths", "UpdateFiles", QStringLiteral("/updates"));
    click("cmdBrowse");
    EXPECT_EQ(asked.value(2), "/updates");
}

TEST_F(frmUpgradeTest, ACancelledBrowseChangesNothing)
{
    const QString name = bench.file();
    show(name);
    chosen.clear();
    click("cmdBrowse");
    EXPECT_EQ(file(), name);
    EXPECT_EQ(upgrade.storedFile(), name);
}

// The instrument
// -------------------------------------------------------------------------------------------------------

TEST_F(frmUpgradeTest, NextTakesTheInstrumentAwayAndListsWhatIsThere)
{
    connectDevice();
    show(bench.file());
    click("cmdNext_0");
    EXPECT_FALSE(device.Connected());
    EXPECT_EQ(wizard->giCurrentPage, 1);
    EXPECT_EQ(listed(), QStringList({"T46-0042"}));
    EXPECT_EQ(findControl<QListWidget>(wizard, "lstDevice")->currentRow(), 0);
    EXPECT_TRUE(button("cmdNext_1")->isEnabled());
}

TEST_F(frmUpgradeTest, WithNoInstrumentTheListIsEmptyAndThereIsNoWayOn)
{
    m_entries->clear();
    show(bench.file());
    click("cmdNext_0");
    EXPECT_EQ(listed(), QStringList());
    EXPECT_FALSE(button("cmdNext_1")->isEnabled());
}

TEST_F(frmUpgradeTest, TheInstrumentsVersionIsShownOnThePageOfTheWarning)
{
    goToWarning(bench.file());
    EXPECT_EQ(text("lblSerialNumber"), "T46-0042");
    EXPECT_EQ(text("lblCurrentVersion_1"), "V1.28 Build 3");
    bench.state.debugFirmware = true;
    const sim::Frame frame = sim::status::firmware(bench.state);
    bench.peer->send(QByteArrayView(frame.data(), qsizetype(frame.size())));
    settle();
    EXPECT_EQ(text("lblCurrentVersion_1"), "DEBUG V1.28 Build 3");
}

TEST_F(frmUpgradeTest, OnThePageOfTheWarningNothingButTheVersionIsHeard)
{
    goToWarning(bench.file());
    EXPECT_EQ(mirror.strDeviceSerial, "Device");
    EXPECT_THAT(window.calls, Not(Contains("showSettings")));
    click("cmdBack_2");
    const sim::Frame frame = sim::status::serial(bench.state);
    bench.peer->send(QByteArrayView(frame.data(), qsizetype(frame.size())));
    settle();
    EXPECT_EQ(mirror.strDeviceSerial, "T46-0042");
}

TEST_F(frmUpgradeTest, BackFromTheWarningClearsTheVersionAndComingAgainAsksAnew)
{
    goToWarning(bench.file());
    click("cmdBack_2");
    EXPECT_EQ(wizard->giCurrentPage, 1);
    EXPECT_EQ(text("lblCurrentVersion_1"), "");
    EXPECT_FALSE(button("cmdNext_2")->isEnabled());
    bench.state.firmwareBuild = 4;
    click("cmdNext_1");
    EXPECT_EQ(text("lblCurrentVersion_1"), "V1.28 Build 4");
    click("cmdBack_2");
    click("cmdBack_1");
    EXPECT_EQ(wizard->giCurrentPage, 0);
}

TEST_F(frmUpgradeTest, AnInstrumentThatDoesNotOpenLeavesBackAndCancel)
{
    show(bench.file());
    click("cmdNext_0");
    bench.peer->failOpen(QStringLiteral("in use"));
    click("cmdNext_1");
    EXPECT_EQ(wizard->giCurrentPage, 2);
    EXPECT_FALSE(button("cmdNext_2")->isEnabled());
    EXPECT_TRUE(button("cmdBack_2")->isEnabled());
    EXPECT_TRUE(button("cmdCancel_2")->isEnabled());
}

// The upgrade
// ----------------------------------------------------------------------------------------------------------

TEST_F(frmUpgradeTest, AWholeUpgradeEndsWithSuccessAndTheInstrumentIsOpenedAgain)
{
    connectDevice();
    goToWarning(bench.file());
    auto* const bar = findControl<QProgressBar>(wizard, "ProgressBar");
    bool seen = false;
    QList<bool> enabled;
    QObject::connect(&upgrade.loader(), &UpGrade::ProgressValue, [&](std::int16_t value) {
        if (value != 3)
            return;
        seen = bar->isVisible() && bar->maximum() == 6 && bar->value() == 3;
        for (const char* name : {"cmdBack_1", "cmdBack_2", "cmdNext_2", "cmdCancel_2"})
            enabled << button(name)->isEnabled();
    });
    click("cmdNext_2");
    EXPECT_TRUE(seen);
    EXPECT_EQ(enabled, QList<bool>({false, false, false, false}));
    EXPECT_EQ(wizard->giCurrentPage, 3);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_TRUE(bench.runsNew());
    EXPECT_FALSE(device.Connected());
    commands.clear();
    click("cmdFinish");
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_EQ(device.ConnectedName(), "T46-0042");
    settle();
    EXPECT_THAT(commands, Contains("enquire"));
    EXPECT_EQ(mirror.dblFirmwareMinor, 29);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmUpgradeTest, ALostLinkIsToldWithWhatToDoForAsLongAsItLasts)
{
    goToWarning(bench.file());
    auto* const lost = findControl<QLabel>(wizard, "lblLinkLost");
    EXPECT_FALSE(lost->isVisible());
    bool seen = false;
    QObject::connect(&upgrade.loader(), &UpGrade::LinkLost,
                     [&](bool now) { seen = seen || (now && lost->isVisible()); });
    QObject::connect(&upgrade.loader(), &UpGrade::ProgressValue, [this](std::int16_t value) {
        if (value == 3 && bench.unplugs == 0)
            bench.framesToCut = 0;
    });
    click("cmdNext_2");
    EXPECT_TRUE(seen);
    EXPECT_EQ(lost->text(),
              "The link to the instrument is lost. Plug it in again: the upgrade goes on where it stopped.");
    EXPECT_FALSE(lost->isVisible());
    EXPECT_EQ(wizard->giCurrentPage, 3);
    EXPECT_TRUE(bench.runsNew());
}

TEST_F(frmUpgradeTest, AnInstrumentThatStaysAwayIsToldWithWhatToDo)
{
    goToWarning(bench.file());
    bench.staysAway();
    upgrade.loader().setPatience(bench.patience);
    QObject::connect(&upgrade.loader(), &UpGrade::ProgressValue, [this](std::int16_t value) {
        if (value == 3)
            bench.framesToCut = 0;
    });
    click("cmdNext_2");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              "The link was lost. The old firmware still runs: plug in and start again; it goes "
              "on where it stopped.");
    EXPECT_FALSE(wizard->isVisible());
    bench.plugIn();
    EXPECT_TRUE(bench.runsOld());
}

TEST_F(frmUpgradeTest, TheWindowCannotBeClosedWhileTheLoaderIsBusy)
{
    goToWarning(bench.file());
    bool visible = false;
    QObject::connect(&upgrade.loader(), &UpGrade::ProgressValue, [&] {
        wizard->close();
        QTest::keyClick(wizard, Qt::Key_Escape);
        visible = wizard->isVisible();
    });
    click("cmdNext_2");
    EXPECT_TRUE(visible);
    EXPECT_EQ(wizard->giCurrentPage, 3);
}

TEST_F(frmUpgradeTest, AFailureIsToldAndTheWizardCloses)
{
    goToWarning(bench.file());
    bench.busy = true;
    click("cmdNext_2");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title,
              "**Error During Upgrade: Please take note of this string and report to technical support");
    EXPECT_EQ(messages.shown[0].text, "The instrument is measuring. Stop its test or script and start again.");
    EXPECT_EQ(messages.shown[0].style, 48);
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_EQ(device.ConnectedName(), "T46-0042");
}

TEST_F(frmUpgradeTest, AnOlderVersionIsAskedForAndAFailureWithoutATextIsSilent)
{
    goToWarning(bench.file(FirmwareMaker::header(1, 27, 9)));
    messages.replies = {UserMessages::ReplyNo};
    click("cmdNext_2");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "The instrument runs V1.28 Build 3. The file holds the older V1.27 Build 9.\n"
                                      "Install the older version?");
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_TRUE(bench.runsOld());
}

TEST_F(frmUpgradeTest, AFileThatTurnsInvalidIsHandedToTheLoaderWhichRefusesIt)
{
    goToWarning(bench.file());
    bench.maker.write(QStringLiteral("new.mfw"), "something else");
    const sim::Flash before = bench.flash;
    click("cmdNext_2");
    EXPECT_EQ(text("lblInformation_2"), "Not valid upgrade file");
    EXPECT_EQ(text("lblVersion_2"), "");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "This is no firmware file. Choose a file that ends in .mfw.");
    EXPECT_EQ(bench.flash, before);
}

TEST_F(frmUpgradeTest, AFileThatIsGoneEndsTheWizardWithoutAWord)
{
    goToWarning(bench.file());
    ASSERT_TRUE(QFile::remove(bench.maker.path(QStringLiteral("new.mfw"))));
    click("cmdNext_2");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(wizard->isVisible());
}

// The end
// --------------------------------------------------------------------------------------------------------------

TEST_F(frmUpgradeTest, CancelOnTheFirstPageLeavesTheLinkAlone)
{
    connectDevice();
    settle();
    commands.clear();
    show(bench.file());
    click("cmdCancel_0");
    settle();
    EXPECT_TRUE(device.Connected());
    EXPECT_EQ(commands, QStringList());
}

TEST_F(frmUpgradeTest, CancelGivesTheInstrumentBackAndAsksForItsState)
{
    connectDevice();
    settle();
    show(bench.file());
    click("cmdNext_0");
    commands.clear();
    click("cmdCancel_1");
    settle();
    EXPECT_EQ(device.ConnectedName(), "T46-0042");
    EXPECT_THAT(commands, Contains("enquire"));
}

TEST_F(frmUpgradeTest, CancelOnThePageOfTheWarningAsksForWhatWasPassedOver)
{
    goToWarning(bench.file());
    commands.clear();
    click("cmdCancel_2");
    settle();
    EXPECT_THAT(commands, Contains("enquire"));
    EXPECT_EQ(mirror.strDeviceSerial, "T46-0042");
}

TEST_F(frmUpgradeTest, AnInstrumentThatIsNotThereAnyMoreIsTold)
{
    connectDevice();
    settle();
    show(bench.file());
    click("cmdNext_0");
    m_entries->clear();
    click("cmdCancel_1");
    EXPECT_FALSE(device.Connected());
    EXPECT_EQ(panel(1), "Disconnected");
}

TEST_F(frmUpgradeTest, EachPageHasItsText)
{
    show();
    EXPECT_EQ(text("lblUpgradeWiz1"), "Select the version of firmware you wish to install on your Marrowick "
                                      "Instruments T-46 hardware and click Next to continue.");
    EXPECT_EQ(text("lblInstrument"),
              "Select the serial number of the instrument that you wish to upgrade and click Next to continue.");
    EXPECT_EQ(text("lblWarning"),
              "WARNING: Do not unplug the instrument during FLASH programming. Click Next to continue.");
    EXPECT_EQ(text("lblUpgradeTo"), "To be upgraded to:");
    EXPECT_EQ(text("lblSuccess"), "The firmware of the instrument has been upgraded successfully and the system has "
                                  "been restarted. Click Finish to return to MarrowickGraph.");
    EXPECT_EQ(button("cmdFinish")->text(), "&Finish");
}

TEST_F(frmUpgradeTest, OnePageIsVisibleAtATimeBesideThePicture)
{
    show();
    const QWidget* const picture = findControl<QWidget>(wizard, "imgUpgrade");
    EXPECT_EQ(picture->pos(), QPoint(0, 0));
    EXPECT_EQ(picture->height(), wizard->height());
    EXPECT_NEAR(picture->width(), wizard->width() * 2280.0 / 6120, 3);
    for (int shown = 0; shown < frmUpgrade::kPages; ++shown) {
        wizard->ShowPage(shown);
        EXPECT_EQ(wizard->giCurrentPage, shown);
        for (int page = 0; page < frmUpgrade::kPages; ++page) {
            const QByteArray name = "picWizard_" + QByteArray::number(page);
            EXPECT_EQ(findControl<QWidget>(wizard, name.constData())->isVisible(), page == shown);
        }
    }
}

TEST_F(frmUpgradeTest, TheReturnKeyLeadsThroughThePages)
{
    show(bench.file());
    QTest::keyClick(wizard, Qt::Key_Return);
    EXPECT_EQ(wizard->giCurrentPage, 1);
    QTest::keyClick(wizard, Qt::Key_Return);
    EXPECT_EQ(wizard->giCurrentPage, 2);
    QTest::keyClick(wizard, Qt::Key_Return);
    EXPECT_EQ(wizard->giCurrentPage, 3);
    QTest::keyClick(wizard, Qt::Key_Return);
    EXPECT_FALSE(wizard->isVisible());
}
