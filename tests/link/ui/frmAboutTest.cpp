// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmAbout.h"

#include "../LinkFixture.h"
#include "link/ui/SystemInformation.h"
#include "link/ui/frmSystemInformation.h"
#include "support/FindControl.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

class frmAboutTest : public LinkFixture
{
protected:
    frmAboutTest()
    {
        setting("Prompts", "OpenSettings", 0);
        form.show();
    }

    QString label(const char* name) { return findControl<QLabel>(&form, name)->text(); }
    void click(const char* name) { QTest::mouseClick(findControl<QPushButton>(&form, name), Qt::LeftButton); }

    frmAbout form{device, mirror, messages};
};

TEST_F(frmAboutTest, ShowsTheVersionOfThisProgram)
{
    EXPECT_TRUE(QRegularExpression("^V\\d+\\.\\d+\\.\\d+$").match(label("lblVersion")).hasMatch())
        << label("lblVersion").toStdString();
}

TEST_F(frmAboutTest, SaysThatNothingIsConnectedAndShowsNoSerialNumber)
{
    EXPECT_EQ(label("lblDeviceVersion"), "Not connected");
    EXPECT_EQ(label("lblSerialNumber"), "");
}

TEST_F(frmAboutTest, ShowsVersionsAndSerialNumberOfTheInstrumentAsItTellsThem)
{
    connectDevice();
    send(frametext::text('V', '1', "T46-000123"));
    send(frametext::numbers('O', '0', 1, 28, 7, 3));
    EXPECT_EQ(label("lblDeviceVersion"), "V1.28.7 Hardware V3");
    EXPECT_EQ(label("lblSerialNumber"), "SN : T46-000123");
    send(frametext::numbers('O', '1', 1, 28, 7, 3));
    EXPECT_EQ(label("lblDeviceVersion"), "DEBUG V1.28.7 Hardware V3");
    peer().unplug();
    settle();
    EXPECT_EQ(label("lblDeviceVersion"), "Not connected");
    EXPECT_EQ(label("lblSerialNumber"), "");
}

TEST_F(frmAboutTest, UpgradeAsksForTheUpdateWindow)
{
    QSignalSpy wanted(&form, &frmAbout::upgradeWanted);
    click("cmdUpgrade");
    EXPECT_EQ(wanted.count(), 1);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmAboutTest, SystemInformationIsShownAndCanBeCopied)
{
    click("cmdSysInfo");
    auto* const shown = form.findChild<frmSystemInformation*>();
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->isVisible());
    const QString text = findControl<QPlainTextEdit>(shown, "txtInformation")->toPlainText();
    for (const char* fact : {"Program: MarrowickGraph ", "Qt: 6.", "Kernel: ", "Processor: ", "Locale: "})
        EXPECT_TRUE(text.contains(fact)) << fact;
    QTest::mouseClick(findControl<QPushButton>(shown, "cmdCopy"), Qt::LeftButton);
    EXPECT_EQ(QApplication::clipboard()->text(), text);
    QTest::mouseClick(findControl<QPushButton>(shown, "cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(shown->isVisible());
}

TEST_F(frmAboutTest, SystemInformationThatCannotBeHadIsTold)
{
    form.setInformationSource([this] { return systemInformation(folder.filePath("no such root")); });
    click("cmdSysInfo");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "System Information Is Unavailable At This Time");
    EXPECT_EQ(messages.shown[0].title, "Get System Information");
    EXPECT_FALSE(form.findChild<frmSystemInformation*>());
}

TEST_F(frmAboutTest, SystemInformationReadsTheSystemsFiles)
{
    ASSERT_TRUE(QDir().mkpath(folder.filePath("etc")) && QDir().mkpath(folder.filePath("proc")));
    const auto write = [this](const char* name, const QByteArray& text) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    write("etc/os-release", "NAME=\"X\"\nPRETTY_NAME=\"Some System 12\"\n");
    write("proc/cpuinfo", "processor\t: 0\nmodel name\t: Fast One\n");
    write("proc/meminfo", "MemTotal:        2097152 kB\n");
    const QString text = systemInformation(folder.path());
    EXPECT_TRUE(text.contains("Operating system: Some System 12\n"));
    EXPECT_TRUE(text.contains("Processor: Fast One, "));
    EXPECT_TRUE(text.contains("Memory: 2.0 GiB\n")) << text.toStdString();
}

} // namespace
