// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptTransfer.h"

#include "instrument/Commands.h"
#include "script/ScriptFixture.h"

#include <QFile>

namespace {

using End = ScriptTransfer::End;

class ScriptTransferTest : public ScriptFixture
{
protected:
    ScriptTransferTest()
    {
        QObject::connect(&transfer, &ScriptTransfer::begun, [this](qint64 bytes) { begun << bytes; });
        QObject::connect(&transfer, &ScriptTransfer::sent, [this](qint64 bytes) {
            sent << bytes;
            if (whileSending)
                whileSending();
        });
        window.onProcessEvents = [this] { drain(); };
    }

    QString script(const QByteArray& content)
    {
        QFile file(folder.filePath(QStringLiteral("script.mgs")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    /// Every byte value, so that nothing may be translated on the way.
    static QByteArray ofSize(int size)
    {
        QByteArray bytes(size, '\0');
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31 + i / 256);
        return bytes;
    }
    static QByteArray header(int size) { return "loadscript " + QByteArray::number(size) + "\r"; }

    ScriptTransfer transfer{device, window};
    QList<qint64> begun, sent;
    std::function<void()> whileSending;
};

TEST_F(ScriptTransferTest, TheHeaderAnnouncesTheLengthAndTheBytesFollowWithoutATerminator)
{
    const QByteArray bytes = ofSize(5000);
    EXPECT_EQ(transfer.DownLoadFile(script(bytes)), End::Whole);
    EXPECT_EQ(farEnd(), header(5000) + bytes);
    EXPECT_TRUE(transfer.isHeld());
    EXPECT_EQ(transfer.problem(), QString());
    EXPECT_EQ(begun, QList<qint64>{5000});
    EXPECT_EQ(sent, (QList<qint64>{1024, 2048, 3072, 4096, 5000}));
}

TEST_F(ScriptTransferTest, AFileOfExactly1024BytesGoesInOnePiece)
{
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(1024))), End::Whole);
    EXPECT_EQ(sent, QList<qint64>{1024});
    EXPECT_EQ(farEnd(), header(1024) + ofSize(1024));
}

TEST_F(ScriptTransferTest, AFileOf1025BytesGoesInTwoPiecesTheSecondOfOneByte)
{
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(1025))), End::Whole);
    EXPECT_EQ(sent, (QList<qint64>{1024, 1025}));
    EXPECT_EQ(farEnd(), header(1025) + ofSize(1025));
}

TEST_F(ScriptTransferTest, AnEmptyFileSendsNothingNotEvenAHeader)
{
    EXPECT_EQ(transfer.DownLoadFile(script({})), End::Empty);
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_TRUE(begun.isEmpty());
    EXPECT_FALSE(transfer.isHeld());
    EXPECT_TRUE(transfer.problem().endsWith(QLatin1String("script.mgs is empty."))) << transfer.problem().toStdString();
}

TEST_F(ScriptTransferTest, AFileThatCannotBeReadSendsNothingAndSaysWhy)
{
    EXPECT_EQ(transfer.DownLoadFile(folder.filePath(QStringLiteral("missing.mgs"))), End::Unreadable);
    EXPECT_EQ(transfer.DownLoadFile(folder.path()), End::Unreadable);
    EXPECT_EQ(farEnd(), QByteArray());
    EXPECT_TRUE(transfer.problem().startsWith(QStringLiteral("The script %1 cannot be read: ").arg(folder.path())));
    EXPECT_FALSE(transfer.isHeld());
}

TEST_F(ScriptTransferTest, AFileThatBecomesShorterIsNotHeld)
{
    const QString name = script(ofSize(100'000));
    whileSending = [&name] { QFile::resize(name, 50'000); };
    EXPECT_EQ(transfer.DownLoadFile(name), End::Unreadable);
    EXPECT_EQ(transfer.problem(), QStringLiteral("The script %1 cannot be read: it has become shorter.").arg(name));
    EXPECT_FALSE(transfer.isHeld());
}

TEST_F(ScriptTransferTest, CancelAtEachPieceSendsNoFurtherPieceAndShowsNoError)
{
    const QByteArray bytes = ofSize(5000);
    for (int piece = 1; piece <= 4; ++piece) {
        sent.clear();
        whileSending = [this, piece] {
            if (sent.size() == piece)
                transfer.cancel();
        };
        EXPECT_EQ(transfer.DownLoadFile(script(bytes)), End::Cancelled) << piece;
        EXPECT_EQ(farEnd(), header(5000) + bytes.first(1024 * piece)) << piece;
        EXPECT_FALSE(transfer.isHeld());
        EXPECT_TRUE(transfer.endedSilently());
        EXPECT_EQ(transfer.problem(), QStringLiteral("The sending of the script was cancelled."));
    }
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ScriptTransferTest, CancelBehindTheHeaderLeavesTheFileClosed)
{
    // The terminal takes no more: the header waits, and with it the first piece.
    const int before = openFiles();
    fillTerminal();
    window.onProcessEvents = [this] { transfer.cancel(); };
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(3000))), End::Cancelled);
    window.onProcessEvents = {};
    EXPECT_EQ(openFiles(), before);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ScriptTransferTest, ACancelOfTheLastTransferIsForgottenByTheNext)
{
    whileSending = [this] { transfer.cancel(); };
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(2000))), End::Cancelled);
    whileSending = {};
    farEnd();
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(2000))), End::Whole);
    EXPECT_EQ(farEnd(), header(2000) + ofSize(2000));
}

TEST_F(ScriptTransferTest, TheEndOfTheLinkAtEachPieceEndsTheTransfer)
{
    for (int piece = 1; piece <= 3; ++piece) {
        sent.clear();
        whileSending = [this, piece] {
            if (sent.size() == piece)
                device.Close();
        };
        EXPECT_EQ(transfer.DownLoadFile(script(ofSize(3000))), End::LinkLost) << piece;
        EXPECT_EQ(sent.size(), piece);
        EXPECT_FALSE(transfer.isHeld());
        EXPECT_TRUE(transfer.endedSilently());
        connectPty();
    }
}

TEST_F(ScriptTransferTest, WithoutALinkNothingIsSent)
{
    device.Close();
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(3000))), End::LinkLost);
    EXPECT_TRUE(sent.isEmpty());
}

TEST_F(ScriptTransferTest, AScriptThatWentOverAnotherConnectionIsNotHeld)
{
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(100))), End::Whole);
    ASSERT_TRUE(transfer.isHeld());
    device.Close();
    EXPECT_FALSE(transfer.isHeld());
    connectPty();
    EXPECT_FALSE(transfer.isHeld());
    EXPECT_EQ(transfer.problem(), QStringLiteral("The link to the instrument that was sent the script has ended."));
}

TEST_F(ScriptTransferTest, AConnectionThatIsOpenedAnewInTheMidstEndsTheTransfer)
{
    whileSending = [this] {
        device.Close();
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(pty.slavePath()), QStringLiteral("PTY")));
    };
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(3000))), End::LinkLost);
    EXPECT_EQ(sent.size(), 1);
}

TEST_F(ScriptTransferTest, WhatOthersWriteInTheMidstOfTheScriptSpoilsIt)
{
    whileSending = [this] {
        if (sent.size() == 2)
            device.Write(command::repeat(true));
    };
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(5000))), End::Disturbed);
    EXPECT_EQ(sent.size(), 2);
    EXPECT_FALSE(transfer.isHeld());
    EXPECT_EQ(transfer.problem(),
              QStringLiteral("Something else was sent to the instrument in the midst of the script."));
}

TEST_F(ScriptTransferTest, AHeaderThatDoesNotFitIntoTheQueueIsNoTransfer)
{
    fillTerminal();
    window.onProcessEvents = {};
    while (device.WritePending() + 40 < KorvaLink::kWriteQueueLimit)
        device.Write(QString(40, u'x'));
    device.Write(QString(static_cast<int>(KorvaLink::kWriteQueueLimit - device.WritePending()), u'x'));
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(100))), End::Disturbed);
    EXPECT_FALSE(transfer.isHeld());
}

TEST_F(ScriptTransferTest, FramesAreServedDuringTheTransfer)
{
    whileSending = [this] {
        if (sent.size() == 1)
            pty.send(frametext::text('r', '0', "Loading"));
    };
    EXPECT_EQ(transfer.DownLoadFile(script(ofSize(200 * 1024))), End::Whole);
    EXPECT_EQ(panel(1), QStringLiteral("Loading"));
}

TEST_F(ScriptTransferTest, ASecondTransferInTheMidstOfOneIsRefused)
{
    QList<End> ends;
    const QString name = script(ofSize(3000));
    whileSending = [&] { ends << transfer.DownLoadFile(name); };
    EXPECT_EQ(transfer.DownLoadFile(name), End::Whole);
    EXPECT_EQ(ends, (QList<End>{End::None, End::None, End::None}));
    EXPECT_EQ(farEnd(), header(3000) + ofSize(3000));
}

} // namespace
