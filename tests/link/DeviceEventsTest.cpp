// SPDX-License-Identifier: GPL-3.0-or-later
// Connection, loss and the settings that follow the instrument.
#include "LinkFixture.h"

namespace {

using frametext::numbers;
using frametext::text;

const QString kDefaults = QStringLiteral("phase 1|idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|period 0|"
                                         "startfreq 1000|endfreq 1000000");

class DeviceEvents : public LinkFixture
{
protected:
    void open(int index = 0)
    {
        device.Configure(QStringLiteral("KorvaLink"), 1, 0, index);
        ASSERT_TRUE(device.Open());
    }
    /// What an instrument answers to "enquire", shortened.
    void answerEnquire(const QByteArray& serial, std::size_t number = 0)
    {
        send(text('V', '0', serial) +
                 numbers('X', '2', mirror.dblStartFrequency, mirror.dblEndFrequency, 100, mirror.dblIdleFrequency, 0),
             number);
    }
};

TEST_F(DeviceEvents, ConnectionSendsTheSettingsAndEnquiresTwice)
{
    open();
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(written().join(u'|'), kDefaults + QStringLiteral("|enquire 1.28|enquire 1.28"));
    EXPECT_EQ(window.calls, (QStringList{QStringLiteral("unloadDeviceChooser"), QStringLiteral("showSettings")}));
}

TEST_F(DeviceEvents, SettingsDialogOpensAtConnectionOnlyIfThePreferencesSaySo)
{
    setting("Prompts", "OpenSettings", 0);
    open();
    EXPECT_EQ(window.calls, QStringList{QStringLiteral("unloadDeviceChooser")});
}

TEST_F(DeviceEvents, DisconnectionEmptiesThePanelsAndForgetsTheInstrument)
{
    open();
    answerEnquire("S1");
    for (int i = 1; i <= 10; ++i)
        window.panels[i] = QStringLiteral("text");
    state.gbfScriptRunning = true;
    window.calls.clear();
    peer().unplug();
    settle();
    EXPECT_EQ(panel(1), QStringLiteral("Disconnected"));
    EXPECT_EQ(panel(2), QStringLiteral("1"));
    for (int i = 3; i <= 10; ++i)
        EXPECT_TRUE(panel(i).isEmpty()) << i;
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_FALSE(state.gbfDeviceReady);
    EXPECT_EQ(mirror.strDeviceSerial, QStringLiteral("Device"));
    EXPECT_FALSE(device.Connected());
    EXPECT_TRUE(window.calls.contains(QStringLiteral("unloadDeviceWindows")));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(DeviceEvents, DisconnectionIsToldIfThePreferencesSaySo)
{
    setting("Prompts", "NotifyDevice", 1);
    open();
    peer().unplug();
    settle();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Device disconnected"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Device link disconnected"));
    EXPECT_FALSE(messages.shown[0].system);
}

TEST_F(DeviceEvents, PointsThatANoticeKeepsWaitingAreStoredBeforeTheLossCounts)
{
    connectDevice();
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    const auto points = [](int from, int to) {
        QByteArray frames;
        for (int i = from; i < to; ++i)
            frames += numbers('F', '0', 1000 + 10 * i, 50 + i, 10, 1, i);
        return frames;
    };
    messages.whileShowing = [&] {
        messages.whileShowing = nullptr;
        settle();
        peer().send(points(5, 10));
        settle();
        peer().unplug();
        settle();
    };
    send(points(0, 2) + text('T', '0', "Warm up") + points(2, 5));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(document->peGraph().YData(0, i), static_cast<float>(50 + i)) << i;
    EXPECT_FALSE(device.Connected());
    EXPECT_FALSE(state.gbfPlotting);
}

TEST_F(DeviceEvents, AnInstrumentThatDoesNotAnswerIsToldInPanel1UntilItDoes)
{
    module.setLongestSilence(0);
    connectDevice();
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    settle();
    EXPECT_EQ(panel(1), QStringLiteral("No answer"));
    EXPECT_TRUE(messages.shown.empty());
    send(text('V', '0', "S1") + numbers('X', '2', 5000, 9000, 64, -1, 3));
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
}

TEST_F(DeviceEvents, DisconnectionInMidTestReturnsToViewingAndSaysDisconnected)
{
    open();
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    send(numbers('F', '1', 40000, 50, 30, 1, 0));
    peer().unplug();
    settle();
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_TRUE(penBarEnabled);
    EXPECT_EQ(panel(1), QStringLiteral("Disconnected"));
    EXPECT_EQ(document->peGraph().YData(0, 0), 50.0F);
}

TEST_F(DeviceEvents, AnotherInstrumentOpenedInMidTestEndsTestAndScript)
{
    open();
    plug();
    devices.refresh();
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(frametext::text('V', '0', "S1"));
    send(frametext::numbers('D', '1', 1, 1000, 1000000, 1));
    send(numbers('F', '1', 40000, 50, 30, 1, 0));
    state.gbfScriptRunning = true;
    device.Close();
    connectDevice(1);
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(state.gbfSweepActive);
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_TRUE(penBarEnabled);
    send(numbers('F', '1', 41000, 60, 30, 1, 1), 1);
    EXPECT_EQ(document->peGraph().YData(0, 0), 50.0F);
    EXPECT_EQ(document->peGraph().YData(0, 1), -65536.0F);
}

TEST_F(DeviceEvents, ClosingTheLinkOnPurposeIsNoDisconnection)
{
    setting("Prompts", "NotifyDevice", 1);
    open();
    module.DeviceReset();
    settle();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(device.Connected());
}

TEST_F(DeviceEvents, AttachedDeviceOpensTheChooserIfThePreferencesSaySo)
{
    Q_EMIT device.DeviceAttached();
    EXPECT_FALSE(window.calls.contains(QStringLiteral("mnuTestDevice_Click")));
    setting("Prompts", "PromptDevice", 1);
    Q_EMIT device.DeviceAttached();
    EXPECT_TRUE(window.calls.contains(QStringLiteral("mnuTestDevice_Click")));
}

TEST_F(DeviceEvents, FullWriteBufferIsToldOnceForABurst)
{
    open();
    written();
    peer().setRoom(0);
    for (int i = 0; i < 100; ++i)
        device.Write(QString(2000, u'x'));
    EXPECT_TRUE(messages.shown.empty());
    settle();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Device Communications"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Device_WriteBufferFull"));
}

TEST_F(DeviceEvents, InitialiseRestoresTheDefaultsAndLoadsTheSectionOfNoDevice)
{
    mirror.iNumPoints = 7;
    mirror.strDeviceSerial = QStringLiteral("S1");
    mirror.strDeviceInfo[3] = QStringLiteral("info");
    mirror.dblAmpMaxFreq = 1;
    state.gbfDeviceReady = true;
    setting("Device", "dblEndFrequency", 77777);
    setting("Device", "bfRepeat", true);
    module.DeviceInitialise();
    EXPECT_EQ(mirror.strDeviceSerial, QStringLiteral("Device"));
    EXPECT_TRUE(mirror.strDeviceInfo[3].isEmpty());
    EXPECT_EQ(mirror.iNumPoints, 100);
    EXPECT_EQ(mirror.dblAmpMaxFreq, 50000000);
    EXPECT_EQ(mirror.dblEndFrequency, 77777);
    EXPECT_TRUE(repeatStatus);
    EXPECT_FALSE(state.gbfDeviceReady);
}

TEST_F(DeviceEvents, SettingsAreSavedUnderTheSerialNumber)
{
    mirror.strDeviceSerial = QStringLiteral("S1");
    mirror.dblIdleFrequency = 0;
    mirror.bfGraphExtents = true;
    mirror.iNumPoints = 24;
    mirror.iAttenuationCode = 3;
    mirror.bfRepeat = true;
    mirror.iSweepMode = 1;
    mirror.bfPhaseOn = false;
    mirror.iTestPeriod = 15;
    mirror.dblStartFrequency = 2500.25;
    mirror.dblEndFrequency = 1e6;
    mirror.dblSpotFrequency = 400000;
    module.DeviceSaveSettings();
    const QString section = QStringLiteral("S1");
    EXPECT_EQ(saved(section, "dblIdleFrequency"), QStringLiteral("0"));
    EXPECT_EQ(saved(section, "bfGraphExtents"), QStringLiteral("True"));
    EXPECT_EQ(saved(section, "iNumPoints"), QStringLiteral("24"));
    EXPECT_EQ(saved(section, "iAttenuationCode"), QStringLiteral("3"));
    EXPECT_EQ(saved(section, "bfRepeat"), QStringLiteral("True"));
    EXPECT_EQ(saved(section, "iSweepMode"), QStringLiteral("1"));
    EXPECT_EQ(saved(section, "bfPhaseOn"), QStringLiteral("False"));
    EXPECT_EQ(saved(section, "iTestPeriod"), QStringLiteral("15"));
    EXPECT_EQ(saved(section, "dblStartFrequency"), QStringLiteral("2500.25"));
    EXPECT_EQ(saved(section, "dblEndFrequency"), QStringLiteral("1000000"));
    EXPECT_EQ(saved(section, "dblSpotFrequency"), QStringLiteral("400000"));

    const InstrumentMirror before = mirror;
    mirror = InstrumentMirror();
    mirror.strDeviceSerial = section;
    module.DeviceLoadSettings();
    EXPECT_EQ(mirror.dblIdleFrequency, before.dblIdleFrequency);
    EXPECT_EQ(mirror.bfGraphExtents, before.bfGraphExtents);
    EXPECT_EQ(mirror.iNumPoints, before.iNumPoints);
    EXPECT_EQ(mirror.iAttenuationCode, before.iAttenuationCode);
    EXPECT_EQ(mirror.bfRepeat, before.bfRepeat);
    EXPECT_EQ(mirror.iSweepMode, before.iSweepMode);
    EXPECT_EQ(mirror.bfPhaseOn, before.bfPhaseOn);
    EXPECT_EQ(mirror.iTestPeriod, before.iTestPeriod);
    EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency);
    EXPECT_EQ(mirror.dblEndFrequency, before.dblEndFrequency);
    EXPECT_EQ(mirror.dblSpotFrequency, before.dblSpotFrequency);
}

TEST_F(DeviceEvents, NothingIsSavedUnderAnEmptySerialNumber)
{
    mirror.strDeviceSerial.clear();
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QString(), "iNumPoints"), QStringLiteral("(none)"));
    EXPECT_EQ(saved(QStringLiteral("Device"), "iNumPoints"), QStringLiteral("(none)"));
}

TEST_F(DeviceEvents, MissingAndUnreadableKeysKeepTheValueInHand)
{
    mirror.strDeviceSerial = QStringLiteral("S1");
    mirror.iNumPoints = 321;
    mirror.iTestPeriod = 4;
    mirror.dblEndFrequency = 5555;
    mirror.bfPhaseOn = false;
    setting("S1", "iTestPeriod", QStringLiteral("soon"));
    setting("S1", "iNumPoints", 1000000);
    setting("S1", "dblEndFrequency", QStringLiteral("12x"));
    setting("S1", "bfPhaseOn", QStringLiteral("perhaps"));
    module.DeviceLoadSettings();
    EXPECT_EQ(mirror.iNumPoints, 321);
    EXPECT_EQ(mirror.iTestPeriod, 4);
    EXPECT_EQ(mirror.dblEndFrequency, 5555);
    EXPECT_FALSE(mirror.bfPhaseOn);
}

TEST_F(DeviceEvents, SettingsAreSentAsNineCommandsWithoutExponents)
{
    open();
    written();
    mirror.dblStartFrequency = 1e20;
    mirror.dblEndFrequency = 1e-9;
    mirror.dblIdleFrequency = -1;
    mirror.bfRepeat = true;
    mirror.bfPhaseOn = false;
    module.DeviceSendSettings();
    EXPECT_EQ(written().join(u'|'),
              QStringLiteral("phase 0|idlefreq -1|points 100|atten 0|repeat 1|sweepmode 2|period 0|"
                             "startfreq 100000000000000000000|endfreq 0.000000001"));
}

TEST_F(DeviceEvents, TheSameInstrumentGetsItsOwnSettingsBack)
{
    open();
    answerEnquire("S1");
    mirror.iNumPoints = 512;
    mirror.dblStartFrequency = 20000;
    module.DeviceSaveSettings();
    peer().unplug();
    settle();
    EXPECT_EQ(mirror.iNumPoints, 100);
    open();
    EXPECT_EQ(written().mid(0, 9).join(u'|'), kDefaults);
    answerEnquire("S1");
    EXPECT_EQ(mirror.iNumPoints, 512);
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_TRUE(written().contains(QStringLiteral("points 512")));
}

TEST_F(DeviceEvents, SettingsOfOneInstrumentNeverReachAnother)
{
    plug();
    for (const bool unplugged : {true, false}) {
        open(0);
        answerEnquire("A");
        mirror.iNumPoints = 999;
        mirror.dblStartFrequency = 31415;
        if (unplugged) {
            module.DeviceSaveSettings();
            peer(0).unplug();
            settle();
        }
        // Without being unplugged, the first is left for the second by opening that one.
        open(1);
        answerEnquire("B", 1);
        EXPECT_EQ(mirror.iNumPoints, 100);
        EXPECT_EQ(mirror.dblStartFrequency, 1000);
        const QString commands = written(1).join(u'|');
        EXPECT_FALSE(commands.contains(QStringLiteral("999"))) << commands.toStdString();
        EXPECT_FALSE(commands.contains(QStringLiteral("31415"))) << commands.toStdString();
        module.DeviceSaveSettings();
        EXPECT_EQ(saved(QStringLiteral("A"), "iNumPoints"), QStringLiteral("999"));
        EXPECT_EQ(saved(QStringLiteral("B"), "iNumPoints"), QStringLiteral("100"));
        module.DeviceReset();
    }
}

TEST_F(DeviceEvents, LinkLostAfterEachByteOfASweepLeavesViewingWithThePointsSoFar)
{
    constexpr int kPoints = 64;
    QByteArray sweep = numbers('D', '0', 1, 1000, 64000, 0, 0);
    for (int i = 0; i < kPoints; ++i)
        sweep += numbers('F', '1', 1000.0 * (i + 1), 50 + i, 30, 1, i);
    sweep += numbers('E', '0', 0, 1000, 64000, 0, 0) + numbers('Y', '0');
    setting("Prompts", "OpenSettings", 0);

    for (qsizetype length = 0; length <= sweep.size(); ++length) {
        const auto document = makeDocument(PenDocument::Impedance);
        activate(document);
        open();
        peer().send(sweep.first(length));
        peer().unplug();
        settle();

        ASSERT_FALSE(device.Connected()) << length;
        ASSERT_FALSE(state.gbfPlotting) << length;
        ASSERT_EQ(panel(1), QStringLiteral("Disconnected")) << length;
        ASSERT_TRUE(penBarEnabled) << length;
        ASSERT_TRUE(messages.shown.empty()) << length;
        ASSERT_EQ(device.BytesAvailable(), 0) << length;
        const qsizetype frames = length / 67;
        for (int i = 0; i < kPoints; ++i) {
            const bool arrived = i + 1 < frames;
            ASSERT_EQ(document->peGraph().XData(0, i), arrived ? 1000.0F * static_cast<float>(i + 1) : 0.0F)
                << length << ' ' << i;
            ASSERT_EQ(document->peGraph().YData(0, i), arrived ? 50.0F + static_cast<float>(i) : -65536.0F)
                << length << ' ' << i;
        }
    }
    // The next connection works.
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    open();
    send(sweep);
    EXPECT_EQ(document->peGraph().XData(0, kPoints - 1), 64000.0F);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
}

} // namespace
