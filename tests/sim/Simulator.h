// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QProcess>
#include <QString>

#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

inline const QString kProgram = QStringLiteral(MG_PROGRAM_DIR "/marrowick-sim");

inline QString devicesFolder()
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + "/marrowick/devices";
}

inline QByteArray entryOf(const char* serial)
{
    return QFile::encodeName(devicesFolder()) + '/' + serial;
}

inline bool entryExists(const QByteArray& path)
{
    struct stat link
    {};
    return ::lstat(path.constData(), &link) == 0;
}

/// A running simulator; ended and waited for when it goes out of scope.
class Simulator
{
public:
    /// Before it runs, the program's process carries out the preparation.
    explicit Simulator(QStringList arguments, const QByteArray& serial = "T46-1",
                       std::function<void()> preparation = {})
        : entry(entryOf(serial.constData()))
    {
        process.setChildProcessModifier([preparation] {
            // Whoever runs the tests in the background may have these ignored, and children inherit that.
            std::signal(SIGINT, SIG_DFL);
            std::signal(SIGHUP, SIG_DFL);
            if (preparation)
                preparation();
        });
        if (!arguments.contains("--memory"))
            arguments.append("--no-memory");
        process.start(kProgram, QStringList{"--serial", QString::fromLatin1(serial)} + arguments);
        while (!introduction.contains("Ctrl+C ends it.") && process.waitForReadyRead(30000))
            introduction += process.readAllStandardOutput();
        EXPECT_TRUE(introduction.contains("Ctrl+C ends it.")) << process.readAllStandardError().constData();
    }
    ~Simulator()
    {
        if (process.state() != QProcess::NotRunning) {
            EXPECT_EQ(end(SIGTERM), 0);
        }
    }

    int end(int signal)
    {
        ::kill(static_cast<pid_t>(process.processId()), signal);
        EXPECT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return process.exitCode();
    }
    /// Waits until the entry stands or is gone.
    bool waitForEntry(bool present) const
    {
        for (int i = 0; i < 3000 && entryExists(entry) != present; ++i)
            ::poll(nullptr, 0, 10);
        return entryExists(entry) == present;
    }
    /// Waits until it has gone to sleep that many times, having looked at its port in between.
    void waitForRounds(long rounds) const
    {
        const auto sleeps = [this] {
            QFile file(QString("/proc/%1/status").arg(process.processId()));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray text = file.readAll();
            const QByteArray key = "\nvoluntary_ctxt_switches:";
            const qsizetype at = text.indexOf(key) + key.size();
            return text.mid(at, text.indexOf('\n', at) - at).trimmed().toLong();
        };
        const long before = sleeps();
        for (int i = 0; i < 3000 && sleeps() < before + rounds; ++i)
            ::poll(nullptr, 0, 10);
        EXPECT_GE(sleeps(), before + rounds);
    }
    /// Processor time used so far, in clock ticks.
    long ticks() const
    {
        QFile file(QString("/proc/%1/stat").arg(process.processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray line = file.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        return fields.at(11).toLong() + fields.at(12).toLong();
    }

    /// Waits until it has said that on standard error.
    bool hasSaid(const QByteArray& text)
    {
        process.setReadChannel(QProcess::StandardError);
        // What has come before the channel was chosen is read without waiting.
        do
            said += process.readAllStandardError();
        while (!said.contains(text) && process.waitForReadyRead(30000));
        return said.contains(text);
    }

    QProcess process;
    QByteArray entry;
    QByteArray introduction;
    QByteArray said; ///< on standard error, as far as hasSaid() has read
};

/// Ends at once with that message and exit code.
inline void expectRefusal(const QStringList& arguments, int code, const QString& message)
{
    QProcess process;
    process.start(kProgram, arguments);
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitCode(), code);
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()).trimmed(), "marrowick-sim: " + message);
    EXPECT_TRUE(process.readAllStandardOutput().isEmpty());
}

inline void writeFile(const QString& name, const QByteArray& text)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(text), text.size());
}
