// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmDeviceProperties.h"

#include "../LinkFixture.h"
#include "support/FindControl.h"

#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace {

const char* const kFields[] = {"lblFirmwareField",       "lblHardwareField",     "lblIOCapablilityFleld",
                               "lblImpedanceRangeField", "lblPhaseRangeField",   "lblAmplitudeRangeField",
                               "lblFrequencyRangeField", "lblSerialNumberField", "lblModelNumberField"};

class frmDevicePropertiesTest : public LinkFixture
{
protected:
    frmDevicePropertiesTest() { setting("Prompts", "OpenSettings", 0); }

    void show()
    {
        form = new frmDeviceProperties(module);
        form->setProgramFolder(folder.path());
        form->show();
    }
    void TearDown() override { delete form; }

    QString field(const char* name) { return findControl<QLabel>(form, name)->text(); }
    QString image()
    {
        QStringList visible;
        for (const char* name : {"imgT46", "imgR52", "imgUnknown"}) {
            if (findControl<QWidget>(form, name)->isVisible())
                visible += name;
        }
        return visible.join(' ');
    }
    void tell(char slot, const QByteArray& text) { send(frametext::text('l', slot, text)); }

    /// A terminal program that writes down its arguments.
    QString installTerminal()
    {
        const QString written = folder.filePath("arguments");
        QFile program(folder.filePath("MarrowickTerm"));
        EXPECT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$*\" > '" + written.toLocal8Bit() + ".part' && mv '" + written.toLocal8Bit() +
                      ".part' '" + written.toLocal8Bit() + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return written;
    }
    QString contentWhenWritten(const QString& fileName)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(fileName); }, 20000));
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
    }

    QPointer<frmDeviceProperties> form;
};

TEST_F(frmDevicePropertiesTest, ShowsUnknownInEachFieldWithoutAnInstrument)
{
    show();
    for (const char* name : kFields)
        EXPECT_EQ(field(name), "Unknown") << name;
    EXPECT_EQ(image(), "imgUnknown");
}

TEST_F(frmDevicePropertiesTest, ShowsUnknownForWhatTheInstrumentHasNotToldYet)
{
    connectDevice();
    show();
    for (const char* name : kFields)
        EXPECT_EQ(field(name), "Unknown") << name;
}

TEST_F(frmDevicePropertiesTest, ChangingThePictureDoesNotChangeTheWindowsHeight)
{
    connectDevice();
    show();
    settle();
    const int height = form->height();
    for (const char* model : {"T46", "R52", "other", "T46"}) {
        tell('0', model);
        form->Update();
        settle();
        EXPECT_EQ(form->height(), height) << model;
    }
}

TEST_F(frmDevicePropertiesTest, ShowsWhatTheInstrumentTold)
{
    connectDevice();
    tell('0', "T46");
    tell('1', "2 outputs");
    tell('2', "0.01 Ohm to 1 MOhm");
    tell('3', "-180 to 180 degrees");
    tell('4', "-90 to 10 dB");
    tell('5', "10 Hz to 50 MHz");
    tell('6', "T46");
    send(frametext::text('V', '1', "T46-000123"));
    send(frametext::numbers('O', '0', 1, 28, 7, 3));
    show();
    EXPECT_EQ(image(), "imgT46");
    EXPECT_EQ(field("lblFirmwareField"), "V1.28 Build 7");
    EXPECT_EQ(field("lblHardwareField"), "T46");
    EXPECT_EQ(field("lblIOCapablilityFleld"), "2 outputs");
    EXPECT_EQ(field("lblImpedanceRangeField"), "0.01 Ohm to 1 MOhm");
    EXPECT_EQ(field("lblPhaseRangeField"), "-180 to 180 degrees");
    EXPECT_EQ(field("lblAmplitudeRangeField"), "-90 to 10 dB");
    EXPECT_EQ(field("lblFrequencyRangeField"), "10 Hz to 50 MHz");
    EXPECT_EQ(field("lblSerialNumberField"), "T46-000123");
    EXPECT_EQ(field("lblModelNumberField"), "T46");

    send(frametext::numbers('O', '1', 1, 28, 7, 3));
    tell('0', "R52");
    form->Update();
    EXPECT_EQ(image(), "imgR52");
    EXPECT_EQ(field("lblFirmwareField"), "DEBUG V1.28 Build 7");
}

TEST_F(frmDevicePropertiesTest, AnUnknownModelShowsItsPictureAndTheTextsAsReceived)
{
    connectDevice();
    tell('0', "<b>Q99</b> rev t46");
    tell('6', "PELLFERN");
    show();
    EXPECT_EQ(image(), "imgUnknown");
    EXPECT_EQ(field("lblHardwareField"), "<b>Q99</b> rev t46");
    EXPECT_EQ(findControl<QLabel>(form, "lblHardwareField")->textFormat(), Qt::PlainText);
    EXPECT_EQ(field("lblModelNumberField"), "PELLFERN");
}

TEST_F(frmDevicePropertiesTest, ConsoleSaysThatItsProgramIsNotInstalledAndKeepsTheLink)
{
    connectDevice();
    show();
    QTest::mouseClick(findControl<QPushButton>(form, "cmdConsole"), Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "The terminal program MarrowickTerm is not installed.");
    EXPECT_EQ(messages.shown[0].title, "Console");
    EXPECT_TRUE(device.Connected());
    EXPECT_TRUE(findControl<QPushButton>(form, "cmdConsole")->isEnabled());
}

TEST_F(frmDevicePropertiesTest, ConsoleHandsTheInstrumentToItsProgram)
{
    const QString arguments = installTerminal();
    connectDevice();
    device.SetDeviceType(2);
    auto document = makeDocument(2);
    activate(document);
    startPlotting();
    show();
    QTest::mouseClick(findControl<QPushButton>(form, "cmdConsole"), Qt::LeftButton);
    EXPECT_EQ(contentWhenWritten(arguments), "-d=2 -i=3 -o=2\n");
    EXPECT_FALSE(device.Connected());
    EXPECT_FALSE(peer().isOpen());
    EXPECT_FALSE(findControl<QPushButton>(form, "cmdConsole")->isEnabled());
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(state.gbfDeviceReady);
    EXPECT_EQ(panel(1), "Disconnected");
    EXPECT_EQ(field("lblSerialNumberField"), "Unknown");
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(frmDevicePropertiesTest, ConsoleWithoutALinkPassesDeviceZero)
{
    const QString arguments = installTerminal();
    device.SetDeviceType(2);
    show();
    QTest::mouseClick(findControl<QPushButton>(form, "cmdConsole"), Qt::LeftButton);
    EXPECT_EQ(contentWhenWritten(arguments), "-d=0 -i=3 -o=2\n");
}

TEST_F(frmDevicePropertiesTest, TheWindowMayGoAwayWhileTheLinkIsReleased)
{
    installTerminal();
    connectDevice();
    show();
    window.onProcessEvents = [this] { delete form; };
    QMetaObject::invokeMethod(form, &frmDeviceProperties::cmdConsole_Click, Qt::QueuedConnection);
    ASSERT_TRUE(QTest::qWaitFor([this] { return form.isNull(); }));
    EXPECT_FALSE(device.Connected());
}

} // namespace
