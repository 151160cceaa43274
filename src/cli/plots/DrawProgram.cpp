// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/DrawProgram.h"

#include "controls/graph/GraphFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#include <csignal>

namespace cli::DrawProgram {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

QString path()
{
    return QCoreApplication::applicationDirPath() + u"/marrowick-draw"_s;
}

/// What the program said of its failure, without its name.
QString sentenceOf(QProcess& process)
{
    QString said = QString::fromUtf8(process.readAllStandardError()).trimmed();
    const QString name = u"marrowick-draw: "_s;
    if (said.startsWith(name))
        return said.mid(name.size());
    if (said.isEmpty())
        said = process.exitStatus() == QProcess::CrashExit ? tr("it crashed") : process.errorString();
    return tr("marrowick-draw could not draw the picture: %1.").arg(said);
}

} // namespace

QStringList formats()
{
    return {u"png"_s, u"jpg"_s, u"jpeg"_s, u"bmp"_s, u"wmf"_s, u"svg"_s, u"pdf"_s};
}

QString formatOf(const OutputFile& picture)
{
    if (picture.name() == "-"_L1)
        return u"png"_s;
    const QString suffix = QFileInfo(picture.name()).suffix().toLower();
    return formats().contains(suffix) ? suffix : QString();
}

Outcome check()
{
    if (QFileInfo(path()).isExecutable())
        return Outcome::success();
    return Outcome::failure(tr("Pictures are drawn by the program marrowick-draw, which is missing: %1.").arg(path()));
}

Outcome draw(const GraphModel& graph, const OutputFile& picture, const QSize& pixels, const QString& format)
{
    if (Outcome there = check(); !there)
        return there;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    process.setChildProcessModifier([] { std::signal(SIGINT, SIG_IGN); });
    process.start(path(), {u"--output"_s, picture.name(), u"--format"_s, format.isEmpty() ? formatOf(picture) : format,
                           u"--size"_s, u"%1x%2"_s.arg(pixels.width()).arg(pixels.height())});
    process.write(GraphFile::PEstore(graph));
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(-1);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return Outcome::success();
    return Outcome::failure(sentenceOf(process));
}

} // namespace cli::DrawProgram
