// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/KorvaLink.h"

#include "FrameText.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/MemoryTransport.h"
#include "controls/linklog/LinkLogReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace {

class KorvaLinkTest : public ::testing::Test
{
protected:
    void SetUp() override { connectLink(); }

    void connectLink()
    {
        auto [transport, other] = MemoryTransport::makePair();
        peer = std::move(other);
        ASSERT_TRUE(link->OpenTransport(std::move(transport), QStringLiteral("T46-1")));
    }

    /// Reads everything of a pass the way the program does.
    QByteArray readPass()
    {
        QByteArray bytes;
        while (qint64 count = link->BytesAvailable()) {
            QByteArray part;
            link->Read(count, part);
            bytes += part;
        }
        return bytes;
    }

    void readWhenItComes()
    {
        QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [this] { received += readPass(); });
    }

    static void turn() { QCoreApplication::processEvents(); }

    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>()};
    std::unique_ptr<KorvaLink> link = std::make_unique<KorvaLink>(devices);
    std::shared_ptr<MemoryPeer> peer;
    QByteArray received;
};

TEST_F(KorvaLinkTest, RaisesItsEventsFromTheEventLoopOnly)
{
    QSignalSpy data(link.get(), &KorvaLink::DataReceived);
    peer->send(frameText('F'));
    EXPECT_EQ(data.count(), 0);
    turn();
    EXPECT_EQ(data.count(), 1);
}

TEST_F(KorvaLinkTest, ReadNeverEndsInsideAFrame)
{
    peer->send(frameText('F', 1) + frameText('F', 2) + QByteArray("F:1 half"));
    EXPECT_EQ(link->BytesAvailable(), 134);
    qint64 count = 133;
    QByteArray bytes;
    link->Read(count, bytes);
    EXPECT_EQ(count, 67);
    EXPECT_EQ(bytes, frameText('F', 1));
    count = 66;
    link->Read(count, bytes);
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(bytes.isEmpty());
    count = 31199;
    link->Read(count, bytes);
    EXPECT_EQ(bytes, frameText('F', 2));
    EXPECT_EQ(link->BytesAvailable(), 0);
}

TEST_F(KorvaLinkTest, LosesNoFrameWhateverTheSplitOfThreeFramesIntoThreeReads)
{
    readWhenItComes();
    const QByteArray stream = frameText('D') + frameText('F', 1000, 50) + frameText('E');
    int splits = 0;
    for (qsizetype first = 0; first <= 200; ++first) {
        for (qsizetype second = first + 1; second <= 200; ++second) {
            received.clear();
            peer->send(stream.first(first));
            turn();
            peer->send(stream.sliced(first, second - first));
            turn();
            peer->send(stream.sliced(second));
            turn();
            ASSERT_EQ(received, stream) << first << ' ' << second;
            ++splits;
        }
    }
    EXPECT_EQ(splits, 20100);
}

TEST_F(KorvaLinkTest, RaisesDataReceivedAgainWhileFramesWaitAndThePassReadSomething)
{
    int passes = 0;
    QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [&] {
        ++passes;
        qint64 count = 67;
        QByteArray bytes;
        link->Read(count, bytes);
        received += bytes;
    });
    const QByteArray stream = frameText('F').repeated(5);
    peer->send(stream);
    ASSERT_TRUE(QTest::qWaitFor([&] { return received == stream; }));
    turn();
    EXPECT_EQ(passes, 5);
}

TEST_F(KorvaLinkTest, DoesNotRaiseDataReceivedAgainWhenAPassReadNothingUntilMoreFramesCome)
{
    QSignalSpy data(link.get(), &KorvaLink::DataReceived);
    peer->send("short\r\n");
    for (int i = 0; i < 20; ++i)
        turn();
    EXPECT_EQ(data.count(), 1);
    link->DisableDataEvent();
    link->EnableDataEvent();
    turn();
    EXPECT_EQ(data.count(), 1);
    peer->send("F:1 half of one");
    turn();
    EXPECT_EQ(data.count(), 1);
    peer->send("\r\n");
    turn();
    EXPECT_EQ(data.count(), 2);
    EXPECT_EQ(link->BytesAvailable(), 24);
}

TEST_F(KorvaLinkTest, KeepsFramesWhileEventsAreDisabledAndTellsOfThemWhenEnabled)
{
    readWhenItComes();
    link->DisableDataEvent();
    EXPECT_FALSE(link->DataEventEnabled());
    peer->send(frameText('F', 1));
    turn();
    peer->send(frameText('F', 2));
    turn();
    EXPECT_TRUE(received.isEmpty());
    EXPECT_EQ(link->BytesAvailable(), 134);
    link->EnableDataEvent();
    EXPECT_TRUE(received.isEmpty());
    turn();
    EXPECT_EQ(received, frameText('F', 1) + frameText('F', 2));
}

TEST_F(KorvaLinkTest, DoesNotRaiseAnEventPostedBeforeItWasDisabled)
{
    QSignalSpy data(link.get(), &KorvaLink::DataReceived);
    peer->send(frameText('F'));
    link->DisableDataEvent();
    turn();
    EXPECT_EQ(data.count(), 0);
    link->EnableDataEvent();
    turn();
    EXPECT_EQ(data.count(), 1);
}

TEST_F(KorvaLinkTest, ReaderMayReenableEventsInsideANestedLoop)
{
    int depth = 0;
    int deepest = 0;
    QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [&] {
        deepest = std::max(deepest, ++depth);
        link->DisableDataEvent();
        qint64 count = 67;
        QByteArray bytes;
        link->Read(count, bytes);
        received += bytes;
        if (received.size() == 67) {
            peer->send(frameText('F', 3));
            link->EnableDataEvent();
            turn();
            // What the inner passes left is not shown to this one, which has been overtaken.
            EXPECT_EQ(link->BytesAvailable(), 0);
        }
        link->EnableDataEvent();
        --depth;
    });
    peer->send(frameText('F', 1) + frameText('F', 2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.size() == 3 * 67; }));
    EXPECT_EQ(received, frameText('F', 1) + frameText('F', 2) + frameText('F', 3));
    EXPECT_EQ(deepest, 2);
}

TEST_F(KorvaLinkTest, OnePassShowsNoMoreThanItsLimitAndTheLoopTurnsInBetween)
{
    qint64 largest = 0;
    int timersBetween = 0;
    int passes = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++timersBetween; });
    timer.start(0);
    QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [&] {
        ++passes;
        const QByteArray pass = readPass();
        largest = std::max(largest, qint64(pass.size()));
        received += pass;
    });
    const QByteArray stream = frameText('F').repeated(10000);
    peer->send(stream);
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.size() == stream.size(); }));
    EXPECT_EQ(received, stream);
    EXPECT_LE(largest, KorvaLink::kPassLimit);
    EXPECT_EQ(passes, (10000 + 488) / 489);
    EXPECT_GE(timersBetween, passes - 1);
}

TEST_F(KorvaLinkTest, FramesPastTheReadLimitAreDroppedAndTheOldestStay)
{
    link->DisableDataEvent();
    const QByteArray chunk = frameText('F').repeated(10000);
    for (int i = 0; i < 30; ++i)
        peer->send(chunk);
    EXPECT_LE(link->BytesAvailable(), KorvaLink::kReadBufferLimit);
    EXPECT_GT(link->BytesAvailable(), KorvaLink::kReadBufferLimit - 67);
}

TEST_F(KorvaLinkTest, RunsTooLongAreDroppedAndTheNextFrameIsFound)
{
    peer->send(QByteArray(KorvaLink::kLongestRun + 1, 'x'));
    peer->send("yyy\r\n" + frameText('E'));
    EXPECT_EQ(link->BytesAvailable(), 67);
}

TEST_F(KorvaLinkTest, WritesLatin1TextsInOrder)
{
    link->Write("points 100\r");
    link->Write(QString());
    link->Write(QString::fromUtf8("calibrate CAL-\xc2\xb5\r"));
    link->Flush();
    EXPECT_EQ(peer->takeWritten(), "points 100\rcalibrate CAL-\xb5\r");
    EXPECT_EQ(link->WritePending(), 0);
}

TEST_F(KorvaLinkTest, KeepsWhatTheSystemDoesNotTakeAndSendsItWhenThereIsRoom)
{
    peer->setRoom(4);
    link->Write("points 100\r");
    EXPECT_EQ(peer->takeWritten(), "poin");
    EXPECT_EQ(link->WritePending(), 7);
    link->Flush();
    EXPECT_EQ(link->WritePending(), 7);
    link->Write("y\r");
    EXPECT_EQ(link->WritePending(), 9);
    peer->setRoom(3);
    EXPECT_EQ(link->WritePending(), 6);
    peer->setRoom(-1);
    EXPECT_EQ(peer->takeWritten(), "ts 100\ry\r");
    EXPECT_EQ(link->WritePending(), 0);
}

TEST_F(KorvaLinkTest, DropsAWriteThatDoesNotFitWholeAndTellsOnce)
{
    QSignalSpy full(link.get(), &KorvaLink::WriteBufferFull);
    peer->setRoom(0);
    const QString block(KorvaLink::kWriteQueueLimit - 3, QLatin1Char('a'));
    link->Write(block);
    link->Write("abcd");
    link->Write("efgh");
    EXPECT_EQ(full.count(), 0);
    EXPECT_EQ(link->WritePending(), block.size());
    link->Write("y\r");
    EXPECT_EQ(link->WritePending(), block.size() + 2);
    turn();
    EXPECT_EQ(full.count(), 1);
    peer->setRoom(-1);
    EXPECT_EQ(peer->takeWritten(), block.toLatin1() + "y\r");
    turn();
    EXPECT_EQ(full.count(), 1);
    peer->setRoom(0);
    link->Write(block);
    link->Write("abcd");
    turn();
    EXPECT_EQ(full.count(), 2);
}

TEST_F(KorvaLinkTest, DoesNotTellOfAFullBufferWhileItsHandlerRuns)
{
    peer->setRoom(0);
    link->Write(QString(KorvaLink::kWriteQueueLimit, QLatin1Char('a')));
    int raised = 0;
    QObject::connect(link.get(), &KorvaLink::WriteBufferFull, link.get(), [&] {
        ++raised;
        link->Write("more");
        turn();
    });
    link->Write("more");
    turn();
    turn();
    EXPECT_EQ(raised, 1);
}

TEST_F(KorvaLinkTest, WithoutALinkEverythingIsQuiet)
{
    link->Close();
    EXPECT_FALSE(link->Connected());
    link->Write("y\r");
    link->Flush();
    link->Close();
    EXPECT_EQ(link->WritePending(), 0);
    EXPECT_EQ(link->BytesAvailable(), 0);
    qint64 count = 100;
    QByteArray bytes;
    link->Read(count, bytes);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(peer->takeWritten(), QByteArray());
}

TEST_F(KorvaLinkTest, CloseRaisesNothingAndForgetsWhatWasNotWrittenOrRead)
{
    QSignalSpy gone(link.get(), &KorvaLink::Disconnected);
    QSignalSpy data(link.get(), &KorvaLink::DataReceived);
    peer->setRoom(0);
    link->Write("y\r");
    peer->send(frameText('F'));
    link->Close();
    EXPECT_FALSE(peer->isOpen());
    turn();
    EXPECT_EQ(gone.count() + data.count(), 0);
    EXPECT_EQ(link->WritePending() + link->BytesAvailable(), 0);
    connectLink();
    peer->send("half of a frame");
    link->Close();
    connectLink();
    peer->send("\r\n");
    EXPECT_EQ(link->BytesAvailable(), 2);
}

TEST_F(KorvaLinkTest, DisconnectedIsRaisedOnceWithTheLinkAlreadyClosed)
{
    int raised = 0;
    QObject::connect(link.get(), &KorvaLink::Disconnected, link.get(), [&] {
        ++raised;
        EXPECT_FALSE(link->Connected());
        EXPECT_EQ(link->BytesAvailable(), 0);
        link->Close();
        link->Write("y\r");
    });
    peer->unplug("The cable was pulled.");
    peer->unplug();
    turn();
    EXPECT_EQ(raised, 1);
    EXPECT_EQ(link->LastError(), "The cable was pulled.");
    connectLink();
    EXPECT_TRUE(link->Connected());
    EXPECT_TRUE(link->LastError().isEmpty());
}

TEST_F(KorvaLinkTest, FramesThatCameBeforeTheLossAreHandedOutFirst)
{
    QByteArray beforeLoss;
    readWhenItComes();
    QObject::connect(link.get(), &KorvaLink::Disconnected, link.get(), [&] { beforeLoss = received; });
    const QByteArray stream = frameText('F').repeated(2000);
    peer->send(stream + "F:1 half");
    peer->unplug();
    EXPECT_EQ(beforeLoss, stream);
}

TEST_F(KorvaLinkTest, ALossIsToldAtOnceWhileTheReaderHasItsEventsDisabled)
{
    QSignalSpy gone(link.get(), &KorvaLink::Disconnected);
    link->DisableDataEvent();
    peer->send(frameText('F'));
    peer->unplug();
    EXPECT_EQ(gone.count(), 1);
    EXPECT_EQ(link->BytesAvailable(), 0);
}

TEST_F(KorvaLinkTest, AReaderThatClosesWhileLastFramesAreHandedOutHearsNoLoss)
{
    QSignalSpy gone(link.get(), &KorvaLink::Disconnected);
    QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [&] { link->Close(); });
    peer->send(frameText('F'));
    peer->unplug();
    EXPECT_EQ(gone.count(), 0);
    EXPECT_FALSE(link->Connected());
}

// Inside each signal the link is closed, opened anew and destroyed.
class InsideSignalTest : public KorvaLinkTest
{
protected:
    using Signal = void (KorvaLink::*)();

    void raise(Signal signal)
    {
        if (signal == &KorvaLink::DeviceConnected) {
            auto [transport, other] = MemoryTransport::makePair();
            peer = std::move(other);
            link->OpenTransport(std::move(transport), "again");
        } else if (signal == &KorvaLink::DataReceived) {
            peer->send(frameText('F').repeated(1000));
        } else if (signal == &KorvaLink::WriteBufferFull) {
            peer->setRoom(0);
            link->Write(QString(KorvaLink::kWriteQueueLimit + 1, QLatin1Char('a')));
        } else {
            peer->unplug();
        }
        turn();
        turn();
    }

    const std::vector<Signal> all = {&KorvaLink::DeviceConnected, &KorvaLink::DataReceived, &KorvaLink::WriteBufferFull,
                                     &KorvaLink::Disconnected};
};

TEST_F(InsideSignalTest, TheLinkMayBeClosed)
{
    for (Signal signal : all) {
        if (!link->Connected())
            connectLink();
        int raised = 0;
        const auto handler = QObject::connect(link.get(), signal, link.get(), [&] {
            ++raised;
            link->Close();
            EXPECT_EQ(link->BytesAvailable(), 0);
        });
        raise(signal);
        EXPECT_EQ(raised, 1);
        EXPECT_FALSE(link->Connected());
        QObject::disconnect(handler);
    }
}

TEST_F(InsideSignalTest, TheLinkMayBeOpenedAnew)
{
    for (Signal signal : all) {
        if (!link->Connected())
            connectLink();
        std::shared_ptr<MemoryPeer> fresh;
        const auto handler = QObject::connect(link.get(), signal, link.get(), [&] {
            if (fresh)
                return;
            auto [transport, other] = MemoryTransport::makePair();
            fresh = other;
            EXPECT_TRUE(link->OpenTransport(std::move(transport), "fresh"));
        });
        raise(signal);
        QObject::disconnect(handler);
        ASSERT_TRUE(fresh);
        EXPECT_TRUE(link->Connected());
        EXPECT_EQ(link->ConnectedName(), "fresh");
        fresh->send(frameText('E'));
        EXPECT_EQ(link->BytesAvailable(), 67);
        link->Write("y\r");
        EXPECT_EQ(fresh->takeWritten(), "y\r");
        peer = fresh;
    }
}

TEST_F(KorvaLinkTest, ALinkOpenedAnewInsideAPassStartsANewCount)
{
    std::shared_ptr<MemoryPeer> fresh;
    qint64 shown = -1;
    QObject::connect(link.get(), &KorvaLink::DataReceived, link.get(), [&] {
        if (fresh) {
            received += readPass();
            return;
        }
        link->Close();
        auto [transport, other] = MemoryTransport::makePair();
        fresh = other;
        ASSERT_TRUE(link->OpenTransport(std::move(transport), "fresh"));
        fresh->send(frameText('E'));
        shown = link->BytesAvailable();
    });
    peer->send(frameText('F').repeated(3));
    turn();
    EXPECT_EQ(shown, 0) << "what the pass was raised for has gone with its link";
    turn();
    EXPECT_EQ(received, frameText('E'));
}

TEST_F(InsideSignalTest, TheLinkMayBeDestroyed)
{
    for (Signal signal : all) {
        if (!link) {
            link = std::make_unique<KorvaLink>(devices);
            connectLink();
        }
        int raised = 0;
        QObject::connect(link.get(), signal, &devices, [&] {
            ++raised;
            link.reset();
        });
        raise(signal);
        EXPECT_EQ(raised, 1);
        EXPECT_FALSE(link);
    }
}

TEST_F(KorvaLinkTest, AnInstrumentThatAnswersInsideAWriteMayBeClosedAndReplacedThere)
{
    std::shared_ptr<MemoryPeer> second;
    peer->onWritten = [&](QByteArrayView) {
        auto [transport, other] = MemoryTransport::makePair();
        second = other;
        link->OpenTransport(std::move(transport), "second");
        link->Write("hello\r");
    };
    link->Write("y\r");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->takeWritten(), "hello\r");
    EXPECT_EQ(link->WritePending(), 0);

    second->onWritten = [&](QByteArrayView) { link.reset(); };
    link->Write("y\r");
    EXPECT_FALSE(link);
}

TEST_F(KorvaLinkTest, AFailingOpenSaysWhyAndRaisesNothing)
{
    QSignalSpy connected(link.get(), &KorvaLink::DeviceConnected);
    auto [transport, other] = MemoryTransport::makePair();
    other->failOpen("The instrument is asleep.");
    EXPECT_FALSE(link->OpenTransport(std::move(transport)));
    EXPECT_EQ(link->LastError(), "The instrument is asleep.");
    EXPECT_FALSE(link->Connected());
    EXPECT_FALSE(peer->isOpen());
    EXPECT_EQ(connected.count(), 0);
}

TEST_F(KorvaLinkTest, WithNoInstrumentTenTriesFailQuietly)
{
    link->Close();
    for (int index = 0; index < 10; ++index) {
        link->Configure("KorvaLink", 1, 0, index);
        EXPECT_FALSE(link->Open());
        EXPECT_EQ(link->LastError(), "No instrument was found.");
    }
    EXPECT_EQ(link->DeviceCount(), 0);
    QString name;
    EXPECT_FALSE(link->GetDeviceName(0, name));
    EXPECT_FALSE(link->GetDeviceName(-1, name));
}

TEST_F(KorvaLinkTest, KindOfDeviceBelongsToTheOpenLink)
{
    link->SetDeviceType(2);
    EXPECT_TRUE(link->SamplingDevice());
    link->Close();
    EXPECT_EQ(link->DeviceType(), 0);
    EXPECT_FALSE(link->SamplingDevice());
}

TEST_F(KorvaLinkTest, ConvertsBetweenPolarAndRectangular)
{
    link->SetPolar(100, -90);
    EXPECT_EQ(link->Resistance(), 0);
    EXPECT_EQ(link->Reactance(), -100);
    EXPECT_EQ(link->Conductance(), 0);
    EXPECT_EQ(link->Susceptance(), 0.01);
    link->SetRectangular(4, 3);
    EXPECT_EQ(link->Modulus(), 5);
    EXPECT_NEAR(link->Phase(), 53.13010235415598, 1e-12);
    link->SetTestMode(1);
    EXPECT_EQ(link->TestMode(), 1);
}

TEST_F(KorvaLinkTest, LogsEveryWriteAndEveryFrame)
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath("link.log");
    ASSERT_TRUE(link->SetLogFile(fileName));
    link->Write("enquire 1.28\r");
    const QByteArray stream = frameText('V') + "odd\r\x01" + frameText('X');
    peer->send(stream.first(100));
    peer->send(stream.sliced(100));
    peer->send(QByteArray(9000, 'x') + "\r\n");
    peer->unplug("The cable was pulled.");
    ASSERT_TRUE(link->SetLogFile({}));

    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    linklog::Reader reader(file);
    std::vector<std::pair<linklog::Entry::Kind, QByteArray>> entries;
    while (const auto entry = reader.next())
        entries.emplace_back(entry->kind, entry->bytes);
    using linklog::Entry;
    const decltype(entries) expected = {{Entry::Remark, "connected T46-1"},
                                        {Entry::ToInstrument, "enquire 1.28\r"},
                                        {Entry::FromInstrument, frameText('V')},
                                        {Entry::FromInstrument, "odd\r\x01"},
                                        {Entry::FromInstrument, frameText('X')},
                                        {Entry::Remark, "dropped 9002 bytes"},
                                        {Entry::Remark, "lost: The cable was pulled."}};
    EXPECT_EQ(entries, expected);
    EXPECT_TRUE(reader.failure().isNull());
}

TEST_F(KorvaLinkTest, ALogThatCannotBeStartedSaysWhy)
{
    EXPECT_EQ(link->SetLogFile("/dev/full").sentence(),
              "The link log /dev/full cannot be written: No space left on device.");
}

} // namespace
