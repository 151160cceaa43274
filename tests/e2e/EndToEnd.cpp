// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/EndToEnd.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace e2e {
namespace {

QByteArray unescaped(const QByteArray& text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            bytes += text[i];
            continue;
        }
        switch (text[++i]) {
        case 'r':
            bytes += '\r';
            break;
        case 'n':
            bytes += '\n';
            break;
        case 't':
            bytes += '\t';
            break;
        case 'x':
            bytes += static_cast<char>(text.mid(i + 1, 2).toInt(nullptr, 16));
            i += 2;
            break;
        default:
            bytes += text[i];
        }
    }
    return bytes;
}

/// The longest decimal number that the text begins with behind its blanks; 0 without one.
double leadingNumber(const QByteArray& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^[ \\t]*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)"));
    return std::strtod(pattern.match(QString::fromLatin1(text)).captured(1).toLatin1().constData(), nullptr);
}

} // namespace

QString programPath(const QString& name)
{
    return QStringLiteral(MG_PROGRAM_DIR "/") + name;
}

bool waitFor(const std::function<bool()>& condition, int milliseconds)
{
    // The timer wakes the loop for conditions that no event of this process tells of, such as a file.
    QTimer wake;
    wake.start(5);
    QEventLoop loop;
    const QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

Ended runProgram(const QString& name, const QStringList& arguments)
{
    QProcess process;
    process.start(programPath(name), arguments);
    Ended ended;
    if (process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit)
        ended.exitCode = process.exitCode();
    else
        process.kill();
    ended.output = process.readAllStandardOutput();
    ended.errors = process.readAllStandardError();
    return ended;
}

Simulator::Simulator(const QString& serial, const QStringList& options)
    : m_serial(serial)
{
    m_process.start(programPath(QStringLiteral("marrowick-sim")),
                    QStringList{QStringLiteral("--serial"), serial} +
                        (options.contains(QStringLiteral("--memory")) ? QStringList()
                                                                      : QStringList{QStringLiteral("--no-memory")}) +
                        options);
    const QString link = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/marrowick/devices/") + serial;
    m_started =
        m_process.waitForStarted(kPatience) &&
        waitFor([this] { return QFileInfo(devicePath()).isSymLink() || m_process.state() != QProcess::Running; }) &&
        m_process.state() == QProcess::Running;
    EXPECT_TRUE(m_started) << m_process.errorString().toStdString() << errors().toStdString();
}

Simulator::~Simulator()
{
    if (m_process.state() != QProcess::NotRunning && !end())
        ADD_FAILURE() << "the simulated instrument did not end well: " << errors().toStdString();
}

QString Simulator::devicePath() const
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/marrowick/devices/") + m_serial;
}

bool Simulator::end()
{
    m_process.terminate();
    if (m_process.waitForFinished(kPatience))
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    m_process.kill();
    m_process.waitForFinished(-1);
    return false;
}

QByteArray Simulator::errors()
{
    return m_process.readAllStandardError();
}

int faultSeeds(int least)
{
    return std::max(least, qEnvironmentVariableIntValue("MARROWICK_FAULT_SEEDS"));
}

QStringList faultOptions(const QString& fault, int seed)
{
    return {QStringLiteral("--fast"),
            QStringLiteral("--fault"),
            fault,
            QStringLiteral("--idle-levels"),
            QStringLiteral("0"),
            QStringLiteral("--seed"),
            QString::number(seed)};
}

std::vector<LoggedFrame> loggedFrames(const QString& linkLog)
{
    constexpr int kFrameLength = 67;
    QFile file(linkLog);
    std::vector<LoggedFrame> frames;
    if (!file.open(QFile::ReadOnly))
        return frames;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const qsizetype arrow = line.indexOf(" < ");
        if (line.startsWith('#') || arrow < 0)
            continue;
        const QByteArray frame = unescaped(line.mid(arrow + 3));
        if (frame.size() != kFrameLength || frame[1] != ':' || frame[65] != '\r')
            continue;
        const auto number = [&frame](int column, int width) { return leadingNumber(frame.mid(column - 1, width)); };
        bool whole = true;
        for (const int column : {5, 19, 33, 47}) {
            bool isNumber = false;
            frame.mid(column - 1, 13).trimmed().toDouble(&isNumber);
            whole = whole && isNumber;
        }
        bool flagIsNumber = false, pointIsNumber = false;
        const int flag = frame.mid(2, 1).toInt(&flagIsNumber), point = frame.mid(60, 5).trimmed().toInt(&pointIsNumber);
        frames.push_back({frame[0], flag, number(5, 13), number(19, 13), number(33, 13), number(47, 13), point,
                          flagIsNumber && pointIsNumber, whole});
    }
    return frames;
}

std::vector<LoggedFrame> pointsOfLastTest(const QString& linkLog)
{
    std::vector<LoggedFrame> points;
    for (const LoggedFrame& frame : loggedFrames(linkLog)) {
        if (frame.code == 'D')
            points.clear();
        if ((frame.code == 'F' || frame.code == 'H') && frame.readable)
            points.push_back(frame);
    }
    return points;
}

EndToEndTest::EndToEndTest()
{
    // What a program leaves to be recovered belongs to the test that started it, however that program was ended.
    qputenv("XDG_STATE_HOME", QFile::encodeName(path(QStringLiteral("state"))));
}

void EndToEndTest::TearDown()
{
    if (!HasFailure())
        return;
    const auto* const info = ::testing::UnitTest::GetInstance()->current_test_info();
    const QString name =
        QStringLiteral("%1.%2").arg(QLatin1String(info->test_suite_name()), QLatin1String(info->name()));
    const QString kept = QStringLiteral(MG_BINARY_DIR "/e2e-failures/") + QString(name).replace(u'/', u'-');
    QDir(kept).removeRecursively();
    QDir().mkpath(kept);
    for (const QString& file : QDir(m_folder.path()).entryList(QDir::Files))
        QFile::copy(path(file), kept + u'/' + file);
    // Windows of this process still stand: what they show tells more than what they wrote.
    int shots = 0;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            window->grab().save(kept + QStringLiteral("/screen-%1.png").arg(++shots));
    }
    RecordProperty("kept", kept.toStdString());
    std::fprintf(stderr, "what the test wrote is kept in %s\n", qPrintable(kept));
}

QString EndToEndTest::freshSerial()
{
    static int number = 0;
    return QStringLiteral("E2E-%1").arg(++number, 4, 10, QLatin1Char('0'));
}

} // namespace e2e
