// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/SerialTransport.h"

#include "FrameText.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "support/Pty.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QSerialPort>
#include <QSignalSpy>
#include <QSocketNotifier>
#include <QSysInfo>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           1e-6 * double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

class SerialTransportTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(pty.isValid());
        QObject::connect(&link, &KorvaLink::DataReceived, &link, [this] {
            while (qint64 count = link.BytesAvailable()) {
                QByteArray bytes;
                link.Read(count, bytes);
                received += bytes;
            }
        });
    }

    bool open(const Pty& other)
    {
        return link.OpenTransport(std::make_unique<SerialTransport>(other.slavePath()), "pty");
    }

    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>()};
    KorvaLink link{devices};
    Pty pty;
    QByteArray received;
};

TEST_F(SerialTransportTest, CarriesEveryByteValueBothWays)
{
    ASSERT_TRUE(open(pty)) << link.LastError().toStdString();
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    link.Write(QString::fromLatin1(all));
    QByteArray written;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        written += pty.receive();
        return written.size() >= 256;
    }));
    EXPECT_EQ(written, all);

    ASSERT_EQ(pty.send(all + "\r\n"), 258);
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.size() >= 258; }));
    EXPECT_EQ(received, all + "\r\n");
    EXPECT_TRUE(pty.receive().isEmpty()); // no echo
}

TEST_F(SerialTransportTest, ACommandLeavesWithoutTheEventLoop)
{
    ASSERT_TRUE(open(pty));
    link.Write("y\r");
    EXPECT_EQ(link.WritePending(), 0);
    EXPECT_EQ(pty.receive(), "y\r");
}

TEST_F(SerialTransportTest, PutsTogetherAStreamSentByteByByte)
{
    ASSERT_TRUE(open(pty));
    const QByteArray stream = frameText('D') + frameText('F', 1000, 50) + frameText('E');
    for (qsizetype i = 0; i < stream.size(); ++i) {
        ASSERT_EQ(pty.send(stream.mid(i, 1)), 1);
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return received.size() == stream.size(); }));
    EXPECT_EQ(received, stream);
}

TEST_F(SerialTransportTest, WritesWaitWhileTheInstrumentDoesNotReadAndArriveInOrder)
{
    ASSERT_TRUE(open(pty));
    QByteArray expected;
    for (int i = 0; link.WritePending() < 20000; ++i) {
        const QString command = QStringLiteral("startfreq %1\r").arg(i);
        expected += command.toLatin1();
        link.Write(command);
        ASSERT_LT(i, 100000);
    }
    QByteArray written;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        written += pty.receive();
        return written.size() >= expected.size();
    }));
    EXPECT_EQ(written, expected);
    EXPECT_EQ(link.WritePending(), 0);
}

TEST_F(SerialTransportTest, AFloodArrivesWholeWhileTheLoopGoesOnTurning)
{
    ASSERT_TRUE(open(pty));
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++turns; });
    timer.start(0);
    const int kFrames = 30000;
    QByteArray stream;
    stream.reserve(kFrames * 67);
    for (int i = 0; i < kFrames; ++i)
        stream += frameText('F', i);
    qsizetype sent = 0;
    QSocketNotifier room(pty.master(), QSocketNotifier::Write);
    QObject::connect(&room, &QSocketNotifier::activated, &room, [&] {
        sent += pty.send(stream.mid(sent, 65536));
        room.setEnabled(sent < stream.size());
    });
    QEventLoop loop;
    QObject::connect(&link, &KorvaLink::DataReceived, &loop, [&] {
        if (received.size() >= stream.size())
            loop.quit();
    });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_TRUE(received == stream);
    EXPECT_GT(turns, 30);
}

TEST_F(SerialTransportTest, UnplugClosesTheLinkAndIsToldOnceWithoutABusyLoop)
{
    ASSERT_TRUE(open(pty));
    QSignalSpy gone(&link, &KorvaLink::Disconnected);
    pty.unplug();
    ASSERT_TRUE(QTest::qWaitFor([&] { return gone.count() > 0; }));
    EXPECT_FALSE(link.Connected());
    EXPECT_TRUE(link.LastError().startsWith("The link to /dev/pts/")) << link.LastError().toStdString();

    // Idle from here on: nothing but the end of the wait keeps the processor busy.
    QElapsedTimer clock;
    clock.start();
    const double before = processorSeconds();
    ASSERT_TRUE(QTest::qWaitFor([&] { return clock.hasExpired(300); }, 2000));
    EXPECT_LT(processorSeconds() - before, 0.15);
    EXPECT_EQ(gone.count(), 1);

    Pty another;
    ASSERT_TRUE(open(another)) << link.LastError().toStdString();
    ASSERT_EQ(another.send(frameText('X')), 67);
    EXPECT_TRUE(QTest::qWaitFor([&] { return received == frameText('X'); }));
}

TEST_F(SerialTransportTest, UnplugDuringWritesIsALossAndNotAnErrorStorm)
{
    ASSERT_TRUE(open(pty));
    QSignalSpy gone(&link, &KorvaLink::Disconnected);
    while (link.WritePending() < 1000)
        link.Write("startfreq 1000\r");
    pty.unplug();
    for (int i = 0; i < 100; ++i)
        link.Write("y\r");
    ASSERT_TRUE(QTest::qWaitFor([&] { return gone.count() > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(gone.count(), 1);
    EXPECT_EQ(link.WritePending(), 0);
}

TEST_F(SerialTransportTest, ClosingOutlivesEverySignalOfALossOnItsWay)
{
    ASSERT_TRUE(open(pty));
    QSignalSpy gone(&link, &KorvaLink::Disconnected);
    pty.unplug();
    link.Write("y\r"); // notices
    link.Close();
    Pty another;
    ASSERT_TRUE(open(another));
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(gone.count(), 0);
    EXPECT_TRUE(link.Connected());
}

TEST_F(SerialTransportTest, ADeviceThatAnotherProgramIsJustLettingGoOfIsOpened)
{
    std::promise<bool> held;
    std::thread other([&] {
        QSerialPort port(pty.slavePath());
        held.set_value(port.open(QIODevice::ReadWrite));
        QThread::msleep(5);
    });
    const bool inUse = held.get_future().get();
    SerialTransport transport(pty.slavePath());
    const Outcome opened = transport.open();
    other.join();
    ASSERT_TRUE(inUse);
    EXPECT_TRUE(opened) << opened.sentence().toStdString();
}

TEST_F(SerialTransportTest, ADeviceInUseIsRefusedWithASentence)
{
    ASSERT_TRUE(open(pty));
    SerialTransport second(pty.slavePath());
    const Outcome opened = second.open();
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.sentence(), QString("The device %1 is in use by another program.").arg(pty.slavePath()));
    link.Close();
    EXPECT_TRUE(second.open());
}

TEST_F(SerialTransportTest, AProgramThatIsKilledLeavesNoMarkOnThePseudoTerminal)
{
    SerialTransport transport(pty.slavePath());
    ASSERT_TRUE(transport.open());
    // What the mark does to an ordinary user it cannot do to the superuser, so it is read.
    const int slave = ::open(pty.slavePath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    ASSERT_GE(slave, 0);
    int exclusive = -1;
    EXPECT_EQ(::ioctl(slave, TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 0);
    ::close(slave);
}

/// The lock of a program that is dead by now.
QString deadLock(const QString& device)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    ::waitpid(child, nullptr, 0);
    QFile lock("/var/lock/LCK.." + QString(device).remove("/dev/").replace('/', '_'));
    lock.remove();
    if (!lock.open(QFile::WriteOnly))
        return {};
    lock.write(QByteArray::number(child) + "\ngone\n" + QSysInfo::machineHostName().toLocal8Bit() + '\n');
    return lock.fileName();
}

TEST_F(SerialTransportTest, TheLockOfADeadProgramIsTakenAway)
{
    ASSERT_FALSE(deadLock(pty.slavePath()).isEmpty());
    SerialTransport transport(pty.slavePath());
    const Outcome opened = transport.open();
    EXPECT_TRUE(opened) << opened.sentence().toStdString();
}

TEST_F(SerialTransportTest, TheLockOfSomebodyElsesDeadProgramIsNamed)
{
    const bool somebodyElses = ::geteuid() == 0; // an ordinary user can leave only what is his own
    const QString lock = deadLock(pty.slavePath());
    ASSERT_FALSE(lock.isEmpty());
    ASSERT_EQ(::chmod(pty.slavePath().toLocal8Bit().constData(), 0666), 0);
    QString sentence;
    {
        const OrdinaryUser user;
        SerialTransport transport(pty.slavePath());
        sentence = transport.open().sentence();
    }
    QFile::remove(lock);
    EXPECT_EQ(sentence.contains(lock), somebodyElses) << sentence.toStdString();
    EXPECT_EQ(sentence.contains("has ended"), somebodyElses);
}

TEST_F(SerialTransportTest, AMissingDeviceIsRefusedWithASentence)
{
    SerialTransport missing("/dev/ttyNoSuchDevice");
    EXPECT_EQ(missing.open().sentence(), "The device /dev/ttyNoSuchDevice is not there any more.");
    SerialTransport notATerminal("/dev/null");
    EXPECT_FALSE(notATerminal.open());
    EXPECT_FALSE(notATerminal.isOpen());
}

TEST_F(SerialTransportTest, ADeviceThatMayNotBeOpenedNamesItsGroupOrTheRule)
{
    const QByteArray path = pty.slavePath().toLocal8Bit();
    ASSERT_EQ(::chmod(path.constData(), 0000), 0);
    {
        const OrdinaryUser user;
        SerialTransport closed(pty.slavePath());
        EXPECT_EQ(
            closed.open().sentence(),
            QString("You may not open the device %1. Install the udev rule 70-marrowick.rules, which gives it to the "
                    "user at this computer, and plug the instrument in again.")
                .arg(pty.slavePath()));
    }
    ASSERT_EQ(::chmod(path.constData(), 0060), 0);
    {
        const OrdinaryUser user;
        SerialTransport closed(pty.slavePath());
        const QString sentence = closed.open().sentence();
        EXPECT_TRUE(sentence.startsWith(QString("You may not open the device %1.").arg(pty.slavePath())));
        // devpts gives its terminals to the group "tty" where it is mounted so; otherwise to the maker's own group.
        struct stat status
        {};
        ASSERT_EQ(::stat(path.constData(), &status), 0);
        EXPECT_EQ(sentence.contains("It belongs to the group \""), status.st_gid != 0) << sentence.toStdString();
    }
    ASSERT_EQ(::chmod(path.constData(), 0600), 0);
}

TEST_F(SerialTransportTest, AThousandConnectionsLeaveNoFileOpen)
{
    ASSERT_TRUE(open(pty));
    link.Close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const int before = openFiles();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(open(pty)) << i << link.LastError().toStdString();
        link.Write("y\r");
        ASSERT_EQ(pty.receive(), "y\r");
        link.Close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(openFiles(), before);
}

TEST_F(SerialTransportTest, TwoHundredUnplugsLeaveNoFileOpen)
{
    QSignalSpy gone(&link, &KorvaLink::Disconnected);
    const int before = openFiles();
    for (int i = 0; i < 200; ++i) {
        Pty instrument;
        ASSERT_TRUE(open(instrument)) << i << link.LastError().toStdString();
        instrument.send(frameText('F'));
        instrument.unplug();
        ASSERT_TRUE(QTest::qWaitFor([&] { return gone.count() == i + 1; }));
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(openFiles(), before);
}

} // namespace
