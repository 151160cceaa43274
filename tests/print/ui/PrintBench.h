// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>

namespace printbench {

/// The printing system of this test program: a socket of its own, on which nothing listens before a CupsServer does.
/// The system's printers are out of reach.
inline const QTemporaryDir& serverFolder()
{
    static const QTemporaryDir folder(QStringLiteral("/tmp/mg-print-XXXXXX"));
    return folder;
}

inline bool useServerFolder()
{
    return qputenv("CUPS_SERVER", serverFolder().filePath(QStringLiteral("s")).toLocal8Bit());
}

/// Before main, since the printing library looks once.
inline const bool kOwnServer = useServerFolder();

inline QString program(const char* name)
{
    return QStandardPaths::findExecutable(QLatin1String(name), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin"),
                                                                QStringLiteral("/sbin"), QStringLiteral("/bin")});
}

/// A real CUPS with one queue "Paper", colour, A4 and Letter with margins of 18 points at the sides and 36 at top and
/// bottom, whose jobs come out as a PDF file.
class CupsServer
{
public:
    static bool isInstalled() { return !program("cupsd").isEmpty() && !program("lpadmin").isEmpty(); }

    CupsServer()
    {
        const QDir folder(serverFolder().path());
        QFile::setPermissions(folder.path(), QFile::Permissions(0x7755));
        for (const char* name : {"spool/tmp", "cache", "state", "log"})
            folder.mkpath(QLatin1String(name));
        write("cupsd.conf", "LogLevel warn\nListen %/s\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
                            "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n<Policy default>\n"
                            "  <Limit All>\n    Order allow,deny\n    Allow all\n  </Limit>\n</Policy>\n");
        write("cups-files.conf", "ServerRoot %\nRequestRoot %/spool\nTempDir %/spool/tmp\nCacheDir %/cache\n"
                                 "StateDir %/state\nErrorLog %/log/error\nAccessLog %/log/access\nPageLog %/log/page\n"
                                 "FileDevice Yes\nSandboxing Relaxed\n");
        write("paper.ppd", ppd());
        write("pass", "#!/bin/sh\nexec cat ${6:+\"$6\"}\n");
        QFile::setPermissions(path("pass"), QFile::Permissions(0x7755));
        m_server.start(program("cupsd"), {QStringLiteral("-f"), QStringLiteral("-c"), path("cupsd.conf"),
                                          QStringLiteral("-s"), path("cups-files.conf")});
        waitFor([this] { return QFile::exists(path("s")); });
        EXPECT_EQ(
            QProcess::execute(program("lpadmin"), {QStringLiteral("-p"), QStringLiteral("Paper"), QStringLiteral("-E"),
                                                   QStringLiteral("-v"), QStringLiteral("file:") + output(),
                                                   QStringLiteral("-P"), path("paper.ppd")}),
            0);
        EXPECT_EQ(QProcess::execute(program("lpadmin"), {QStringLiteral("-d"), QStringLiteral("Paper")}), 0);
    }
    ~CupsServer()
    {
        m_server.terminate();
        m_server.waitForFinished();
        QFile::remove(path("s"));
    }

    /// The page that came out since the last call, once it is whole; empty when none came.
    QByteArray takePage()
    {
        QByteArray page;
        waitFor([this, &page] {
            QFile file(output());
            page = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
            return page.trimmed().endsWith("%%EOF");
        });
        QFile::remove(output());
        return page;
    }

private:
    static QString path(const char* name) { return serverFolder().filePath(QLatin1String(name)); }
    static QString output() { return path("out.pdf"); }
    static void write(const char* name, QByteArray text)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text.replace("%", serverFolder().path().toUtf8()));
    }
    static void waitFor(const std::function<bool()>& condition)
    {
        constexpr int kPatience = 20000;
        constexpr int kStep = 20;
        QElapsedTimer time;
        time.start();
        while (!condition()) {
            ASSERT_LT(time.elapsed(), kPatience);
            QThread::msleep(kStep);
        }
    }
    static QByteArray ppd()
    {
        QByteArray text = "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
                          "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"PAPER.PPD\"\n"
                          "*Product: \"(Paper)\"\n*PSVersion: \"(3010.000) 0\"\n*Manufacturer: \"Paper\"\n"
                          "*ModelName: \"Paper\"\n*ShortNickName: \"Paper\"\n*NickName: \"Paper\"\n"
                          "*LanguageLevel: \"3\"\n*ColorDevice: True\n*DefaultColorSpace: RGB\n*cupsVersion: 2.4\n"
                          "*cupsFilter: \"application/pdf 0 %/pass\"\n";
        for (const char* key : {"PageSize", "PageRegion"}) {
            text += QByteArray("*OpenUI *KEY/Size: PickOne\n*OrderDependency: 10 AnySetup *KEY\n*DefaultKEY: A4\n"
                               "*KEY A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n"
                               "*KEY Letter/Letter: \"<</PageSize[612 792]>>setpagedevice\"\n*CloseUI: *KEY\n")
                        .replace("KEY", key);
        }
        return text + "*DefaultImageableArea: A4\n*ImageableArea A4/A4: \"18 36 577 806\"\n"
                      "*ImageableArea Letter/Letter: \"18 36 594 756\"\n*DefaultPaperDimension: A4\n"
                      "*PaperDimension A4/A4: \"595 842\"\n*PaperDimension Letter/Letter: \"612 792\"\n"
                      "*DefaultFont: Courier\n";
    }

    QProcess m_server;
};

/// Width and height of the first page of a PDF in points.
inline QSizeF pageSize(const QByteArray& pdf)
{
    static const QRegularExpression box(QStringLiteral("/MediaBox ?\\[ ?0 0 ([0-9.]+) ([0-9.]+) ?\\]"));
    const QRegularExpressionMatch match = box.match(QString::fromLatin1(pdf));
    return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

/// The part of the page that is not white, in points; null where the page cannot be rendered here.
inline QRectF inked(const QByteArray& pdf)
{
    constexpr int kDotsPerPoint = 2;
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("page.pdf")));
    if (program("pdftoppm").isEmpty() || !file.open(QFile::WriteOnly))
        return {};
    file.write(pdf);
    file.close();
    const QString image = folder.filePath(QStringLiteral("page"));
    EXPECT_EQ(QProcess::execute(program("pdftoppm"),
                                {QStringLiteral("-r"), QString::number(72 * kDotsPerPoint),
                                 QStringLiteral("-singlefile"), QStringLiteral("-png"), file.fileName(), image}),
              0);
    const QImage page(image + QStringLiteral(".png"));
    QRect found;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (page.pixelColor(x, y).lightness() < 250)
                found |= QRect(x, y, 1, 1);
        }
    }
    return {QPointF(found.topLeft()) / kDotsPerPoint, QSizeF(found.size()) / kDotsPerPoint};
}

/// A graph with two pens whose desk is grey, so that the place of the whole picture can be seen.
inline std::unique_ptr<GraphModel> greyGraph()
{
    auto model = std::make_unique<GraphModel>();
    for (int i = 0; i < 100; ++i) {
        model->setPoint(0, i, static_cast<float>(i + 1), static_cast<float>(i * i));
        model->setPoint(1, i, static_cast<float>(i + 1), static_cast<float>(i * 50));
    }
    model->setRandomSubsetsToGraph(0, 0);
    model->setRandomSubsetsToGraph(1, 1);
    model->setRandomSubsetsToGraph(2, -1);
    model->setViewingStyle(graph::StyleMonochrome);
    model->setMonoDeskColor(0xC0C0C0);
    model->setMonoGraphBackColor(0xFFFFFF);
    model->PEactions(graph::Reinitialise);
    return model;
}

} // namespace printbench
