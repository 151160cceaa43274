// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmUpdate.h"

#include "UpdateDoubles.h"

#include <QPointer>
#include <QRadioButton>
#include <QSvgWidget>
#include <QTest>
#include <QTimer>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class frmUpdateTest : public UpdateFixture
{
protected:
    frmUpdateTest() { QDir().mkpath(updates()); }
    ~frmUpdateTest() override { delete form; }

    void show()
    {
        form = new frmUpdate({preferences, messages, host, limits});
        form->show();
    }
    QCheckBox* firmware() { return findControl<QCheckBox>(form, "chkFirmwareUpdate"); }
    QCheckBox* program() { return findControl<QCheckBox>(form, "chkSoftwareUpdate"); }
    QRadioButton* web() { return findControl<QRadioButton>(form, "optWebUpdate"); }
    QRadioButton* install() { return findControl<QRadioButton>(form, "optInstall"); }
    void press(const char* button) { QTest::mouseClick(findControl<QPushButton>(form, button), Qt::LeftButton); }
    void pressNext() { press("cmdNext"); }
    /// Installs what is ticked.
    void installTicked(bool firmwareTicked, bool programTicked)
    {
        show();
        install()->click();
        firmware()->setChecked(firmwareTicked);
        program()->setChecked(programTicked);
        pressNext();
    }
    /// An installer that the file dialog gives.
    QString pick(const char* name)
    {
        const QString file = updates() + '/' + name;
        QFile made(file);
        EXPECT_TRUE(made.open(QFile::WriteOnly));
        host.picked = file;
        return file;
    }
    /// What happens in the web window once it waits for its user.
    void inWebWindow(const std::function<void(frmWebUpgrade&)>& act)
    {
        auto* const poll = new QTimer(form);
        QObject::connect(poll, &QTimer::timeout, form, [this, poll, act] {
            auto* const window = form->findChild<frmWebUpgrade*>();
            if (!window || !window->isVisible() || !findControl<QPushButton>(window, "cmdNext")->isEnabled())
                return;
            if (findControl<QLabel>(window, "lblAction")->text().startsWith("Checking"))
                return;
            poll->deleteLater();
            act(*window);
        });
        poll->start(20);
    }

    HostDouble host;
    QPointer<frmUpdate> form;
};

} // namespace

TEST_F(frmUpdateTest, ItShowsItsTextsAndBothWays)
{
    show();
    EXPECT_EQ(findControl<QLabel>(form, "lblUpdate")->text(),
              "Select the update operation required. Click Next to continue.");
    EXPECT_EQ(web()->text(), "&Check the internet for updates");
    EXPECT_EQ(install()->text(), "&Install an update");
    EXPECT_EQ(firmware()->text(), "Instrument &Firmware update");
    EXPECT_EQ(program()->text(), "MarrowickGraph &Software update");
    EXPECT_EQ(findControl<QPushButton>(form, "cmdNext")->text(), "&Next >>");
    EXPECT_EQ(findControl<QPushButton>(form, "cmdCancel")->text(), "&Cancel");
    EXPECT_EQ(findControl<QSvgWidget>(form, "imgUpdate")->geometry(),
              QRect(0, 0, form->width() * 2280 / 6120, form->height()));
    press("cmdCancel");
    EXPECT_FALSE(form->isVisible());
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(frmUpdateTest, TheBoxesAreOpenUnderInstallOnlyAndKeepTheirTicks)
{
    show();
    EXPECT_FALSE(firmware()->isEnabled() || program()->isEnabled());
    install()->click();
    EXPECT_TRUE(firmware()->isEnabled() && program()->isEnabled());
    firmware()->click();
    web()->click();
    EXPECT_FALSE(firmware()->isEnabled() || program()->isEnabled());
    EXPECT_TRUE(firmware()->isChecked());
    EXPECT_FALSE(program()->isChecked());
}

TEST_F(frmUpdateTest, WithNeitherBoxTickedNextJustCloses)
{
    installTicked(false, false);
    EXPECT_FALSE(form->isVisible());
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmUpdateTest, TheFirmwareGoesFirst)
{
    const QString file = pick("MGV9R9B1.deb");
    installTicked(true, true);
    EXPECT_THAT(host.calls, ElementsAre("wizard", "close all", "pick", "check " + file, "start " + file, "end"));
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, WithoutAWizardFirmwareIsNotOffered)
{
    host.wizard = false;
    installTicked(true, false);
    EXPECT_THAT(host.calls, IsEmpty());
    show();
    install()->click();
    EXPECT_FALSE(firmware()->isEnabled());
}

TEST_F(frmUpdateTest, CancelOfTheInstallMessageClosesNothingAndTheDialogUnloads)
{
    pick("Setup.exe");
    messages.replies = {UserMessages::ReplyCancel};
    installTicked(false, true);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, "Software install");
    EXPECT_EQ(messages.shown[0].text, "Click OK to shutdown MarrowickGraph and run the installer");
    EXPECT_EQ(messages.shown[0].style, 49);
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, CancelOfASaveQuestionKeepsProgramAndInstallerFromGoingOn)
{
    pick("Setup.exe");
    host.closes = false;
    installTicked(false, true);
    EXPECT_THAT(host.calls, ElementsAre("close all"));
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, ACancelledFileDialogStartsNothingAndSaysNothing)
{
    installTicked(false, true);
    EXPECT_THAT(host.calls, ElementsAre("close all", "pick"));
    EXPECT_EQ(messages.shown.size(), 1u) << "the question before it";
    EXPECT_EQ(stored("SoftwareUpgrade", "FileName"), "(none)");
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, AnInstallerThatNoLongerExistsIsNotStartedAndSaysNothing)
{
    host.picked = updates() + "/gone.exe";
    installTicked(false, true);
    EXPECT_THAT(host.calls, ElementsAre("close all", "pick"));
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(stored("SoftwareUpgrade", "FileName"), host.picked);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, TheFileDialogBeginsAtTheStoredInstaller)
{
    preferences.setValue(options::kSoftwareUpgradeFile, QString("/some/where/MGV9R9B1.deb"));
    installTicked(false, true);
    EXPECT_THAT(host.asked, ElementsAre("Open Upgrade File",
                                        "Executable files(*.exe)|*.exe|Debian packages(*.deb)|*.deb|All files(*.*)|*.*",
                                        "/some/where/", "MGV9R9B1.deb"));
}

TEST_F(frmUpdateTest, WithoutOneItBeginsAtSetupInTheUpdateFolder)
{
    installTicked(false, true);
    EXPECT_EQ(host.asked.value(2), updates() + '/');
    EXPECT_EQ(host.asked.value(3), "Setup.exe");
}

TEST_F(frmUpdateTest, ARefusedInstallerIsToldAndTheProgramGoesOn)
{
    const QString file = pick("Setup.exe");
    host.refusal = "Setup.exe was not started. Its signature Setup.exe.minisig is not beside it.";
    installTicked(false, true);
    EXPECT_THAT(host.calls, ElementsAre("close all", "pick", "check " + file));
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[1].title, "Software install");
    EXPECT_EQ(messages.shown[1].text, host.refusal);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, WithEverythingUpToDateTheDialogUnloadsByItself)
{
    list({"MGV1R28B3.deb"});
    show();
    inWebWindow([](frmWebUpgrade& window) {
        QTest::mouseClick(findControl<QPushButton>(&window, "cmdOkCancel"), Qt::LeftButton);
    });
    pressNext();
    EXPECT_EQ(stored("Upgrade", "Available"), "False");
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, AWebWindowClosedBeforeAnyQueryLeavesTheChooserOpen)
{
    show();
    QTimer::singleShot(30, form, [this] { form->findChild<frmWebUpgrade*>()->close(); });
    pressNext();
    EXPECT_EQ(stored("Upgrade", "Available"), "(none)");
    EXPECT_TRUE(form->isVisible());
    EXPECT_THAT(server.requests, IsEmpty());
}

TEST_F(frmUpdateTest, AWebWindowClosedAfterAFailedQueryKeepsTheOldWord)
{
    preferences.setValue(options::kUpgradeAvailable, false);
    server.serve("/updates", "nothing");
    show();
    inWebWindow([](frmWebUpgrade& window) { window.close(); });
    pressNext();
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmUpdateTest, AFinishedDownloadBecomesAnInstallRequest)
{
    list({"MGV9R9B1.deb"});
    server.serve("/updates/MGV9R9B1.deb", "a program");
    show();
    inWebWindow([](frmWebUpgrade& window) {
        auto* const next = findControl<QPushButton>(&window, "cmdNext");
        QTest::mouseClick(next, Qt::LeftButton);
        QTest::mouseClick(next, Qt::LeftButton);
    });
    pressNext();
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(install()->isChecked());
    EXPECT_TRUE(program()->isChecked() && program()->isEnabled());
    EXPECT_FALSE(firmware()->isChecked());
    EXPECT_EQ(content("MGV9R9B1.deb"), "a program");
    host.picked = preferences.value(options::kSoftwareUpgradeFile);
    pressNext();
    EXPECT_THAT(host.calls, ElementsAre("close all", "pick", "check " + host.picked, "start " + host.picked, "end"));
    EXPECT_EQ(host.asked.value(3), "MGV9R9B1.deb");
}
