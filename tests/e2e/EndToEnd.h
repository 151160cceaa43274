// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

/// Whole programs, started as a user starts them, with a runtime folder and a home of their own.
namespace e2e {

inline constexpr int kPatience = 60000; ///< ms after which a program counts as hanging

/// Path of a built program.
QString programPath(const QString& name);

/// Runs events until the condition holds; false when that takes longer than kPatience.
bool waitFor(const std::function<bool()>& condition, int milliseconds = kPatience);

struct Ended
{
    int exitCode = -1; ///< -1: crashed or hung
    QByteArray output;
    QByteArray errors;
};

/// Runs a program to its end.
Ended runProgram(const QString& name, const QStringList& arguments);

/// A running simulated instrument; taken away at the end of its life.
class Simulator
{
public:
    /// The serial number is free to choose; options as on the command line. It forgets everything without "--memory".
    Simulator(const QString& serial, const QStringList& options);
    ~Simulator();

    /// True once it is listed as a device.
    bool started() const { return m_started; }
    const QString& serial() const { return m_serial; }
    /// The link in the runtime folder by which it is found.
    QString devicePath() const;
    /// Ends it as its user would, and tells whether it ended well.
    bool end();
    QByteArray errors();
    QProcess& process() { return m_process; }

private:
    QString m_serial;
    QProcess m_process;
    bool m_started = false;
};

/// Seeds to try of each kind of fault: at least as many as the suite has time for, more by MARROWICK_FAULT_SEEDS=200
/// build/dev/bin/test_e2e --gtest_filter='*FaultTest*'.
int faultSeeds(int least);

/// Options of a fast simulated instrument that plays those faults and puts out no idle levels.
QStringList faultOptions(const QString& fault, int seed);

/// A frame as it stands in a link log, read by nothing of the program's.
struct LoggedFrame
{
    char code = 0;
    int flag = 0;
    double n1 = 0, n2 = 0, n3 = 0, n4 = 0;
    int point = 0;
    bool readable = true; ///< false: flag or point number is none
    bool whole = true;    ///< false: one of the four numbers was spoilt on its way
};

/// The frames of a link log, those of the right length only.
std::vector<LoggedFrame> loggedFrames(const QString& linkLog);

/// The point frames ("F" and "H") of the last test in a link log: those behind its last "D". Frames that a reader must
/// refuse, for a wrong length or for a flag or point number that is none, are left out.
std::vector<LoggedFrame> pointsOfLastTest(const QString& linkLog);

/// A folder for what a test writes, and for what the programs that it starts keep to be recovered. When the test fails
/// it is kept in the build folder under the test's name, with pictures of the windows that this process shows.
class EndToEndTest : public ::testing::Test
{
protected:
    EndToEndTest();
    void TearDown() override;

    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// A serial number that no other test uses.
    static QString freshSerial();

    QTemporaryDir m_folder;
};

} // namespace e2e
