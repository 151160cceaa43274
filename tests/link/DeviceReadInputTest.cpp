// SPDX-License-Identifier: GPL-3.0-or-later
// From bytes to frames: what is read, what is dropped, what ends a pass.
#include "LinkFixture.h"

#include "controls/korvalink/FrameBuffer.h"
#include "link/rules/FirmwareVersion.h"

namespace {

class DeviceReadInput : public LinkFixture
{
protected:
    void SetUp() override
    {
        connectDevice();
        // A code that nobody owns: counts what comes through.
        module.registerHandler('!', [this](const Frame& frame) {
            std::int32_t number = 0;
            if (!frame.ParseI(number))
                return false;
            seen.push_back(number);
            return true;
        });
    }
    static QByteArray counted(int number) { return frametext::numbers('!', '0', 0, 0, 0, 0, number); }

    std::vector<int> seen;
    using Numbers = std::vector<int>;
};

TEST_F(DeviceReadInput, DispatchesWholeFramesInTheirOrder)
{
    send(counted(1) + counted(2) + counted(3));
    EXPECT_EQ(seen, (Numbers{1, 2, 3}));
}

TEST_F(DeviceReadInput, LessThanAFrameIsLeftUntilMoreComes)
{
    // Two runs that end one byte behind a carriage return, 66 bytes together.
    const QByteArray waiting = QByteArray(31, 'a') + "\r\n" + QByteArray(31, 'b') + "\r\n";
    ASSERT_EQ(waiting.size(), 66);
    send(waiting);
    EXPECT_EQ(device.BytesAvailable(), 66);
    send(counted(5));
    EXPECT_EQ(device.BytesAvailable(), 0);
    EXPECT_EQ(seen, (Numbers{5}));
}

TEST_F(DeviceReadInput, AFrameMayArriveByteByByte)
{
    const QByteArray bytes = counted(1) + counted(2);
    for (const char byte : bytes)
        send(QByteArray(1, byte));
    EXPECT_EQ(seen, (Numbers{1, 2}));
}

TEST_F(DeviceReadInput, NoSplitOfThreeFramesIntoThreeReadsLosesOne)
{
    const QByteArray bytes = counted(1) + counted(2) + counted(3);
    ASSERT_EQ(bytes.size(), 201);
    int splits = 0;
    for (qsizetype first = 1; first < bytes.size(); ++first) {
        for (qsizetype second = first + 1; second <= bytes.size(); ++second) {
            seen.clear();
            peer().send(bytes.first(first));
            module.DeviceReadInput();
            peer().send(bytes.sliced(first, second - first));
            module.DeviceReadInput();
            peer().send(bytes.sliced(second));
            module.DeviceReadInput();
            ASSERT_EQ(seen, (Numbers{1, 2, 3})) << first << ' ' << second;
            ++splits;
        }
    }
    EXPECT_EQ(splits, 20100);
}

TEST_F(DeviceReadInput, CarriageReturnOneColumnEarlyOrLateDropsThatFrameOnly)
{
    QByteArray early = counted(1);
    early.remove(40, 1); // the carriage return comes to column 65
    QByteArray late = counted(2);
    late.insert(40, ' ');
    ASSERT_EQ(early.indexOf('\r'), 64);
    ASSERT_EQ(late.indexOf('\r'), 66);
    send(early + counted(3) + late + counted(4));
    EXPECT_EQ(seen, (Numbers{3, 4}));
}

TEST_F(DeviceReadInput, FramesOfEveryWrongLengthAreDropped)
{
    for (int length = 2; length <= 200; ++length) {
        if (length == 67)
            continue;
        QByteArray wrong = QByteArray("!:0").leftJustified(length - 2, '1', true) + "\r\n";
        seen.clear();
        send(wrong + counted(9));
        ASSERT_EQ(seen, (Numbers{9})) << length;
    }
}

TEST_F(DeviceReadInput, MisplacedColonDropsTheFrame)
{
    QByteArray none = counted(1);
    none[1] = '.';
    QByteArray first = counted(2);
    first[0] = ':';
    QByteArray later = counted(3);
    later[1] = ' ';
    later[2] = ':';
    send(none + first + later + counted(4));
    EXPECT_EQ(seen, (Numbers{4}));
}

TEST_F(DeviceReadInput, ByteBehindTheCarriageReturnIsNeverExamined)
{
    for (const char byte : {'\n', '\r', ':', '\0', '!', '\xff'}) {
        QByteArray frame = counted(1);
        frame[66] = byte;
        seen.clear();
        send(frame + counted(2));
        EXPECT_EQ(seen, (Numbers{1, 2})) << int{byte};
    }
}

TEST_F(DeviceReadInput, UnknownCodesAreIgnored)
{
    QByteArray bytes;
    for (int code = 1; code < 256; ++code) {
        const char character = static_cast<char>(code);
        // Codes of handlers are told elsewhere; these have none.
        if (QByteArray("ABCDEFGHIJKLMNOPQRSTVXYacdhklrstu!:\r").contains(character) && character != 'd')
            continue;
        bytes += frametext::raw(character, 'x', "x", "x", "x", "x", "x");
    }
    send(bytes + counted(1));
    EXPECT_EQ(seen, (Numbers{1}));
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(DeviceReadInput, ManyFramesInOneChunkAreAllHandled)
{
    QByteArray bytes;
    Numbers expected;
    for (int i = 0; i < 3000; ++i) {
        bytes += counted(i);
        expected.push_back(i);
    }
    peer().send(bytes);
    for (int i = 0; i < 50; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(seen, expected);
}

TEST_F(DeviceReadInput, StrictFieldThatIsNoNumberEndsThePassAndLosesWhatItHadRead)
{
    for (const QByteArray& bad :
         {frametext::raw('!', '0', "0", "0", "0", "0", "no"), frametext::raw('E', 'x', "0", "0", "0", "0", "0"),
          frametext::raw('F', ' ', "1", "1", "1", "1", "0"), frametext::raw('H', '1', "1", "1", "1", "1", "1x")}) {
        seen.clear();
        send(counted(1) + bad + counted(2) + counted(3));
        EXPECT_EQ(seen, (Numbers{1})) << bad.toStdString();
        EXPECT_TRUE(device.DataEventEnabled());
        send(counted(4));
        EXPECT_EQ(seen, (Numbers{1, 4})) << bad.toStdString();
    }
}

TEST_F(DeviceReadInput, DataEventIsOffWhileAHandlerRuns)
{
    bool enabledInside = true;
    module.registerHandler('@', [&](const Frame&) {
        enabledInside = device.DataEventEnabled();
        // A nested event loop: what comes meanwhile waits.
        peer().send(counted(2));
        settle();
        EXPECT_EQ(seen, (Numbers{}));
        return true;
    });
    send(frametext::numbers('@', '0') + counted(1));
    EXPECT_FALSE(enabledInside);
    EXPECT_TRUE(device.DataEventEnabled());
    EXPECT_EQ(seen, (Numbers{1, 2}));
}

TEST_F(DeviceReadInput, HandlerThatSwitchesTheEventOnKeepsTheOrderOfFrames)
{
    module.registerHandler('@', [&](const Frame&) {
        device.EnableDataEvent();
        peer().send(counted(3));
        settle();
        return true;
    });
    send(counted(1) + frametext::numbers('@', '0') + counted(2) + frametext::numbers('@', '0'));
    send(counted(4));
    EXPECT_EQ(seen, (Numbers{1, 2, 3, 3, 4}));
    EXPECT_TRUE(device.DataEventEnabled());
}

TEST_F(DeviceReadInput, FramesOfALostInstrumentAreNotHandledAfterIt)
{
    module.registerHandler('@', [&](const Frame&) {
        module.DeviceReset();
        return true;
    });
    send(counted(1) + frametext::numbers('@', '0') + counted(2));
    EXPECT_EQ(seen, (Numbers{1}));
    EXPECT_FALSE(device.Connected());
    connectDevice();
    send(counted(3));
    EXPECT_EQ(seen, (Numbers{1, 3}));
}

TEST_F(DeviceReadInput, WhileTheFirmwareWizardReadsTheVersionOnlyThatFramePasses)
{
    module.setOnlyCode('O');
    send(counted(1) + frametext::numbers('O', '0', 1, 23, 456, 2) + frametext::numbers('t', '0', 77));
    EXPECT_EQ(seen, (Numbers{}));
    EXPECT_EQ(firmwareVersionText(mirror), QStringLiteral("V1.23 Build 456"));
    EXPECT_EQ(mirror.dblFreqComp, 0);
    send(frametext::numbers('O', '1', 2, 5, 6, 2));
    EXPECT_EQ(firmwareVersionText(mirror), QStringLiteral("DEBUG V2.5 Build 6"));
    module.setOnlyCode(0);
    send(counted(2));
    EXPECT_EQ(seen, (Numbers{2}));
}

} // namespace
