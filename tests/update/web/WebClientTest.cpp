// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/WebClient.h"

#include "support/WebFolder.h"
#include "update/web/HostileServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;
using End = WebClient::Download::End;

namespace {

constexpr WebLimits kShort{300ms, 900ms, 900ms, 64 * 1024, 1024 * 1024};
constexpr int kPatience = 20000; ///< ms, far above the limits

class WebClientTest : public ::testing::Test
{
protected:
    WebClientTest() { m_time.start(); }
    ~WebClientTest() override { EXPECT_LT(m_time.elapsed(), kPatience) << "a limit did not hold"; }

    WebClient::Download fetch(const char* path = "/updates/a")
    {
        return m_client.readFile(m_server.url(path), target(), [this](qint64 received, qint64 announced) {
            m_progress.append({received, announced});
        });
    }
    QString target() const { return m_folder.filePath(QStringLiteral("a")); }
    std::string content(const char* name) const
    {
        QFile file(m_folder.filePath(QLatin1String(name)));
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "(none)";
    }
    QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    HostileServer m_server;
    const QTemporaryDir m_folder;
    WebClient m_client{kShort};
    QList<std::pair<qint64, qint64>> m_progress;
    QElapsedTimer m_time;
};

} // namespace

TEST_F(WebClientTest, ARealServersFolderIsListedAndItsFilesAreFetchedWhole)
{
    WebFolder folder;
    ASSERT_TRUE(folder.started());
    const QByteArray content = QByteArray("0123456789").repeated(100000);
    ASSERT_TRUE(folder.add("MGV9R9B1.deb", content));
    ASSERT_TRUE(folder.add("odd \"name\" \xc3\xa9.deb", "odd"));
    WebClient client;
    const QByteArray page = client.readPage(folder.url());
    EXPECT_TRUE(page.contains("\"MGV9R9B1.deb\"")) << page.constData();
    EXPECT_EQ(client.readPage(folder.url().chopped(1)), page) << "a redirect to the same folder";
    qint64 last = 0;
    const auto download =
        client.readFile(folder.url() + "MGV9R9B1.deb", target(), [&last](qint64 received, qint64) { last = received; });
    EXPECT_EQ(download.end, End::Whole);
    EXPECT_EQ(last, content.size());
    EXPECT_EQ(this->content("a"), content.toStdString());
    EXPECT_EQ(files(), QStringList{"a"});
    EXPECT_EQ(client.readFile(folder.url() + "none", target(), {}).end, End::Refused);
    EXPECT_TRUE(folder.log().contains("GET /updates/ 200 \"VB OpenUrl\" \"no-cache\"")) << folder.log().constData();
}

TEST_F(WebClientTest, TheRequestIsAPlainGetWithTheAgentStringAndWithoutACache)
{
    m_server.serve("/updates", "page");
    EXPECT_EQ(m_client.readPage(m_server.url()), "page");
    EXPECT_EQ(m_client.readPage(m_server.url()), "page");
    ASSERT_EQ(m_server.requests.size(), 2) << "nothing comes from a cache";
    const std::string head = m_server.requests[0].toStdString();
    EXPECT_THAT(head, ::testing::StartsWith("GET /updates HTTP/1.1\r\n"));
    EXPECT_THAT(head, HasSubstr("User-Agent: VB OpenUrl\r\n"));
    EXPECT_THAT(head, HasSubstr("Cache-Control: no-cache\r\n"));
    EXPECT_THAT(head, Not(HasSubstr("Cookie")));
    EXPECT_THAT(head, Not(HasSubstr("gzip")));
}

TEST_F(WebClientTest, OnlyHttpAndHttpsAreAsked)
{
    for (const char* address : {"", " ", "file:///etc/passwd", "/etc/passwd", "ftp://127.0.0.1/a", "data:,page",
                                "qrc:/a", "http://", "https:///a", "no address"})
        EXPECT_EQ(m_client.readPage(QLatin1String(address)), QByteArray()) << address;
}

TEST_F(WebClientTest, OnlyAnAnswerWithStatus200Counts)
{
    for (const char* status : {"404 Not Found", "500 Broken", "204 Nothing", "206 Partial Content"}) {
        m_server.answer("/updates/a", QByteArray("HTTP/1.1 ") + status + "\r\nContent-Length: 4\r\n\r\nnone");
        EXPECT_EQ(m_client.readPage(m_server.url("/updates/a")), QByteArray()) << status;
        EXPECT_EQ(fetch().end, End::Refused) << status;
    }
    m_server.answer("/updates/a", "no HTTP at all\r\n\r\n");
    EXPECT_EQ(m_client.readPage(m_server.url("/updates/a")), QByteArray());
    m_server.answer("/updates/a", "");
    EXPECT_EQ(fetch().end, End::Refused);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(WebClientTest, RedirectsWithinSchemeHostAndPortAreFollowed)
{
    m_server.answer("/updates/a", "HTTP/1.1 302 Found\r\nLocation: /updates/b\r\nContent-Length: 0\r\n\r\n");
    m_server.serve("/updates/b", "whole");
    EXPECT_EQ(fetch().end, End::Whole);
    EXPECT_EQ(content("a"), "whole");
}

TEST_F(WebClientTest, RedirectsToAFileOrAnotherHostAreRefused)
{
    HostileServer other;
    other.serve("/b", "elsewhere");
    for (const QByteArray& location :
         {QByteArray("file:///etc/passwd"), other.url("/b").toUtf8(),
          other.url("/b").replace("127.0.0.1", "localhost").toUtf8(), QByteArray("https://127.0.0.1/b"),
          QByteArray("ftp://127.0.0.1/b"), QByteArray("data:,b"), QByteArray("//127.0.0.2/b")}) {
        m_server.answer("/updates/a", "HTTP/1.1 302 Found\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n");
        EXPECT_EQ(fetch().end, End::Refused) << location.constData();
        EXPECT_EQ(m_client.readPage(m_server.url("/updates/a")), QByteArray()) << location.constData();
    }
    EXPECT_TRUE(other.requests.isEmpty());
    EXPECT_EQ(files(), QStringList());
}

TEST_F(WebClientTest, RedirectsWithoutEndAreGivenUp)
{
    m_server.answer("/updates/a", "HTTP/1.1 302 Found\r\nLocation: /updates/a\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(fetch().end, End::Refused);
    EXPECT_LE(m_server.requests.size(), 7);
}

TEST_F(WebClientTest, AListingBeyondItsLimitIsNone)
{
    m_server.serve("/updates", QByteArray(kShort.pageBytes, 'x'));
    EXPECT_EQ(m_client.readPage(m_server.url()).size(), kShort.pageBytes);
    m_server.serve("/updates", QByteArray(kShort.pageBytes + 1, 'x'));
    EXPECT_EQ(m_client.readPage(m_server.url()), QByteArray());
    EXPECT_EQ(WebLimits().pageBytes, 4 * 1024 * 1024);
}

TEST_F(WebClientTest, AnEndlessListingIsGivenUp)
{
    m_server.flood("/updates", "HTTP/1.1 200 OK\r\n\r\n\"MGV9R9B1.deb\"", QByteArray(8192, 'x'));
    EXPECT_EQ(m_client.readPage(m_server.url()), QByteArray());
}

TEST_F(WebClientTest, AListingThatBreaksOffIsNone)
{
    m_server.answer("/updates", HostileServer::head(1000) + "\"MGV9R9B1.deb\"");
    EXPECT_EQ(m_client.readPage(m_server.url()), QByteArray());
}

TEST_F(WebClientTest, AServerThatSaysNothingIsGivenUpAfterTheSilence)
{
    m_server.stall("/updates", "");
    EXPECT_EQ(m_client.readPage(m_server.url()), QByteArray());
    EXPECT_GE(m_time.elapsed(), 280);
    m_server.stall("/updates/a", "HTTP/1.1 200 OK\r\nContent-Len");
    EXPECT_EQ(fetch().end, End::Refused);
}

TEST_F(WebClientTest, AListingThatDripsIsGivenUpAfterTheWholeTime)
{
    m_server.answer("/updates", [](QTcpSocket& socket) {
        socket.write(HostileServer::head(100000));
        auto* const drip = new QTimer(&socket);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
        drip->start(50);
    });
    EXPECT_EQ(m_client.readPage(m_server.url()), QByteArray());
    EXPECT_GE(m_time.elapsed(), 800) << "timers may be a twentieth early";
}

TEST_F(WebClientTest, ATransferThatBreaksOffIsShortAndStaysAsThePart)
{
    m_server.answer("/updates/a", HostileServer::head(100) + "half");
    const auto download = fetch();
    EXPECT_EQ(download.end, End::Short);
    EXPECT_EQ(download.received, 4);
    EXPECT_EQ(download.announced, 100);
    EXPECT_EQ(files(), QStringList{"a.part"});
    EXPECT_EQ(content("a.part"), "half");
}

TEST_F(WebClientTest, ATransferThatBreaksOffBeforeItsFirstByteIsShort)
{
    m_server.answer("/updates/a", HostileServer::head(100));
    EXPECT_EQ(fetch().end, End::Short);
    EXPECT_EQ(files(), QStringList{"a.part"});
}

TEST_F(WebClientTest, AFileThatStallsIsShortAfterTheSilence)
{
    m_server.stall("/updates/a", HostileServer::head(100) + "half");
    EXPECT_EQ(fetch().end, End::Short);
    EXPECT_EQ(content("a.part"), "half");
}

TEST_F(WebClientTest, AFileWithoutAReadableLengthIsRefusedBeforeAnythingIsWritten)
{
    for (const char* line :
         {"", "Content-Length: \r\n", "Content-Length: abc\r\n", "Content-Length: -5\r\n", "Content-Length: +5\r\n",
          "Content-Length: 5.0\r\n", "Content-Length: 0x5\r\n", "Content-Length: 5\r\nContent-Length: 6\r\n",
          "Content-Length: 0\r\n", "Content-Length: 99999999999999999999\r\n",
          "Content-Length: 000000000000000000005\r\n", "Transfer-Encoding: chunked\r\n"}) {
        m_server.answer("/updates/a",
                        QByteArray("HTTP/1.1 200 OK\r\n") + line + "Connection: close\r\n\r\n5\r\nwhole\r\n0\r\n\r\n");
        EXPECT_EQ(fetch().end, End::Refused) << line;
        EXPECT_EQ(files(), QStringList()) << line;
    }
}

TEST_F(WebClientTest, AFileAnnouncedBeyondTheLimitIsRefused)
{
    m_server.flood("/updates/a", HostileServer::head(kShort.fileBytes + 1), QByteArray(8192, 'x'));
    EXPECT_EQ(fetch().end, End::Refused);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(WebClientTest, AnEndlessFileEndsAtItsAnnouncedLength)
{
    m_server.flood("/updates/a", HostileServer::head(100000), QByteArray(8192, 'x'));
    EXPECT_EQ(fetch().end, End::Whole);
    EXPECT_EQ(content("a").size(), 100000u);
}

TEST_F(WebClientTest, AnEndlessFileOfPiecesEndsAtItsAnnouncedLengthAsShort)
{
    m_server.flood("/updates/a", "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\nTransfer-Encoding: chunked\r\n\r\n",
                   "1000\r\n" + QByteArray(0x1000, 'x') + "\r\n");
    EXPECT_NE(fetch().end, End::Whole);
    EXPECT_LT(content("a.part").size(), 2u * 1024 * 1024);
    EXPECT_EQ(content("a"), "(none)");
}

TEST_F(WebClientTest, MoreBytesThanAnnouncedAreNotRead)
{
    m_server.answer("/updates/a", HostileServer::head(5) + "whole and more");
    EXPECT_EQ(fetch().end, End::Whole);
    EXPECT_EQ(content("a"), "whole");
}

TEST_F(WebClientTest, AFileThatCannotBeWrittenIsRefused)
{
    m_server.serve("/updates/a", "whole");
    ASSERT_TRUE(QDir(m_folder.path()).mkpath("a.part/full"));
    EXPECT_EQ(fetch().end, End::Refused);
    ASSERT_TRUE(QDir(m_folder.filePath("a.part")).removeRecursively());
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("a"));
    EXPECT_EQ(fetch().end, End::Refused) << "its name is taken by a folder";
}

TEST_F(WebClientTest, TheProgressEndsAtTheLength)
{
    m_server.serve("/updates/a", QByteArray(600000, 'x'));
    EXPECT_EQ(fetch().end, End::Whole);
    ASSERT_FALSE(m_progress.isEmpty());
    EXPECT_EQ(m_progress.last(), (std::pair<qint64, qint64>{600000, 600000}));
}

TEST_F(WebClientTest, AStopEndsAtEveryMoment)
{
    for (const QByteArray& sent : {QByteArray(), QByteArray("HTTP/1.1 200 OK\r\n"), HostileServer::head(100),
                                   HostileServer::head(100) + "half"}) {
        m_server.stall("/updates/a", sent);
        QTimer::singleShot(100, &m_client, &WebClient::stop);
        EXPECT_EQ(fetch().end, End::Short) << sent.constData();
        QTimer::singleShot(100, &m_client, &WebClient::stop);
        EXPECT_EQ(m_client.readPage(m_server.url("/updates/a")), QByteArray());
    }
    EXPECT_EQ(content("a"), "(none)");
    m_client.stop();
}

TEST_F(WebClientTest, AClientThatDiesEndsItsTransfer)
{
    m_server.stall("/updates/a", HostileServer::head(100) + "half");
    auto* const client = new WebClient(kShort);
    QTimer::singleShot(100, client, [client] { delete client; });
    EXPECT_EQ(client->readFile(m_server.url("/updates/a"), target(), [](qint64, qint64) {}).end, End::Short);
    EXPECT_EQ(content("a.part"), "half");
}

TEST_F(WebClientTest, NobodyListeningIsNoAnswer)
{
    const QString url = m_server.url();
    m_server.close();
    EXPECT_EQ(m_client.readPage(url), QByteArray());
    EXPECT_EQ(m_client.readFile(url, target(), {}).end, End::Refused);
}
