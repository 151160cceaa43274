// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick as a script calls it: results on one stream, problems on the other, exit codes as documented.
#include "e2e/EndToEnd.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <gmock/gmock.h>
#include <sys/types.h>

using namespace e2e;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

const QString kProgram = QStringLiteral("marrowick");

class MarrowickTest : public EndToEndTest
{
protected:
    /// "sweep" of the simulator, with a link log for the case that the test fails.
    QStringList sweep(const Simulator& simulator, const char* options) const
    {
        return QStringList{QStringLiteral("sweep"), QStringLiteral("--device"), simulator.serial(),
                           QStringLiteral("--link-log"), path(QStringLiteral("link.log"))} +
               words(options);
    }

    static QStringList words(const char* text) { return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts); }

    static QJsonObject object(const QByteArray& text) { return QJsonDocument::fromJson(text).object(); }

    QByteArray content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
};

} // namespace

TEST_F(MarrowickTest, DevicesListsWhatIsThere)
{
    const Simulator first(freshSerial(), {});
    const Simulator second(freshSerial(), {});
    const Ended list = runProgram(kProgram, {QStringLiteral("devices")});
    EXPECT_EQ(list.exitCode, 0);
    const auto line = [](const Simulator& simulator) {
        return (simulator.serial() + u'\t' + simulator.devicePath() + u'\n').toStdString();
    };
    EXPECT_EQ(list.output.toStdString(), line(first) + line(second));
    EXPECT_THAT(list.errors.toStdString(), IsEmpty());

    const Ended json = runProgram(kProgram, words("devices --json"));
    const QJsonArray devices = object(json.output)[QStringLiteral("devices")].toArray();
    ASSERT_EQ(devices.size(), 2);
    EXPECT_EQ(devices[0].toObject()[QStringLiteral("serial")], first.serial());
}

TEST_F(MarrowickTest, WithoutAnInstrumentItSaysSo)
{
    for (const char* command : {"devices", "sweep"}) {
        const Ended ended = runProgram(kProgram, words(command));
        EXPECT_EQ(ended.exitCode, 2);
        EXPECT_EQ(ended.errors.toStdString(), "marrowick: No instrument was found.\n");
        EXPECT_THAT(ended.output.toStdString(), IsEmpty());
    }
}

TEST_F(MarrowickTest, AnUnknownSerialNumberIsToldWithThoseFound)
{
    const Simulator simulator(freshSerial(), {});
    const Ended ended = runProgram(kProgram, words("sweep --device NOBODY"));
    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.errors.toStdString(),
              "marrowick: There is no instrument NOBODY; found: " + simulator.serial().toStdString() + ".\n");
}

TEST_F(MarrowickTest, AWrongCommandLineIsUsage)
{
    const Ended ended = runProgram(kProgram, words("sweep --points 5000"));
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.errors.toStdString(), "marrowick: --points needs a whole number from 2 to 1024, not \"5000\".\n");
    EXPECT_EQ(runProgram(kProgram, {}).exitCode, 1);
    EXPECT_EQ(runProgram(kProgram, {QStringLiteral("--help")}).exitCode, 0);
}

TEST_F(MarrowickTest, ASweepPrintsOneLineOfResultsAndLeavesItsFiles)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const QStringList files = {QStringLiteral("--output"),       path(QStringLiteral("sweep.gzd")),
                               QStringLiteral("--csv"),          path(QStringLiteral("sweep.csv")),
                               QStringLiteral("--picture"),      path(QStringLiteral("sweep.png")),
                               QStringLiteral("--picture-size"), QStringLiteral("800x600")};
    const Ended ended = runProgram(kProgram, sweep(simulator, "--from 38k --to 42k --points 512") + files);
    ASSERT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(ended.errors.toStdString(), IsEmpty());
    EXPECT_THAT(
        ended.output.toStdString(),
        MatchesRegex("512 points from 38 kHz to 42 kHz, lowest impedance [0-9.]+ k?Ohm at (39|40)\\.[0-9]+ kHz, "
                     "highest [0-9.]+ k?Ohm at (39|40|41)\\.[0-9]+ kHz\n"));
    EXPECT_FALSE(content(QStringLiteral("sweep.gzd")).isEmpty());

    // The table holds what the frames said.
    const std::vector<LoggedFrame> frames = pointsOfLastTest(path(QStringLiteral("link.log")));
    const QList<QByteArray> rows = content(QStringLiteral("sweep.csv")).trimmed().split('\n');
    ASSERT_EQ(frames.size(), 512U);
    ASSERT_EQ(rows.size(), 513);
    EXPECT_EQ(rows[0], QByteArray("sweep,frequency_Hz,impedance_Ohm,phase_deg"));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const QList<QByteArray> cells = rows[static_cast<qsizetype>(i) + 1].split(',');
        ASSERT_EQ(cells.size(), 4);
        EXPECT_EQ(cells[1].toFloat(), static_cast<float>(frames[i].n1));
        EXPECT_EQ(cells[2].toFloat(), static_cast<float>(frames[i].n2));
        EXPECT_EQ(cells[3].toFloat(), static_cast<float>(frames[i].n3 * frames[i].n4));
    }

    const QImage picture(path(QStringLiteral("sweep.png")));
    ASSERT_EQ(picture.size(), QSize(800, 600));
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    }
    EXPECT_GT(colours.size(), 3) << "the picture is blank";
}

TEST_F(MarrowickTest, AnOutputNamedCsvIsATable)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const Ended ended =
        runProgram(kProgram, sweep(simulator, "--type reactance --points 10") +
                                 QStringList{QStringLiteral("--output"), path(QStringLiteral("a.CSV"))});
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(content(QStringLiteral("a.CSV")).toStdString(),
                StartsWith("sweep,frequency_Hz,reactance_Ohm,resistance_Ohm,susceptance_S,conductance_S\n1,1000,"));
}

TEST_F(MarrowickTest, OptionsReachTheInstrument)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const Ended ended = runProgram(
        kProgram,
        sweep(simulator, "--type amplitude --from 10k --to 20k --points 11 --direction down --linear --no-phase "
                         "--json"));
    ASSERT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    const QJsonArray sweeps = object(ended.output)[QStringLiteral("sweeps")].toArray();
    ASSERT_EQ(sweeps.size(), 1);
    const QJsonObject only = sweeps[0].toObject();
    EXPECT_EQ(only[QStringLiteral("type")], QStringLiteral("amplitude"));
    EXPECT_EQ(only[QStringLiteral("serial")], simulator.serial());
    EXPECT_EQ(only[QStringLiteral("complete")], true);
    const QJsonArray points = only[QStringLiteral("points")].toArray();
    ASSERT_EQ(points.size(), 11);
    for (int i = 0; i < 11; ++i) {
        ASSERT_EQ(points[i].toArray().size(), 2) << "no phase was asked for";
        EXPECT_NEAR(points[i].toArray()[0].toDouble(), 20000 - 1000 * i, 1);
    }
}

TEST_F(MarrowickTest, RepeatedSweepsFillOnePenEach)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const Ended ended = runProgram(kProgram, sweep(simulator, "--points 20 --repeat 10 --json"));
    ASSERT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    const QJsonArray sweeps = object(ended.output)[QStringLiteral("sweeps")].toArray();
    ASSERT_EQ(sweeps.size(), 10);
    for (const QJsonValue& sweep : sweeps)
        EXPECT_EQ(sweep.toObject()[QStringLiteral("points")].toArray().size(), 20);
}

TEST_F(MarrowickTest, ADevicePathServesAsWellAsASerialNumber)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const QString device =
        qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/marrowick/devices/") + simulator.serial();
    EXPECT_EQ(runProgram(kProgram, {QStringLiteral("sweep"), QStringLiteral("--device"), device}).exitCode, 0);
    const Ended none = runProgram(kProgram, words("sweep --device /dev/null"));
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_THAT(none.errors.toStdString(), StartsWith("marrowick: /dev/null does not open: "));
}

TEST_F(MarrowickTest, WhatTheInstrumentCannotDoIsRefused)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--fast")});
    const Ended range = runProgram(kProgram, sweep(simulator, "--to 2G"));
    EXPECT_EQ(range.exitCode, 4);
    EXPECT_THAT(range.errors.toStdString(), StartsWith("marrowick: This instrument measures from "));
    const Ended attenuation = runProgram(kProgram, sweep(simulator, "--attenuation 3.3"));
    EXPECT_EQ(attenuation.exitCode, 4);
    EXPECT_THAT(attenuation.errors.toStdString(), StartsWith("marrowick: This instrument "));
}

TEST_F(MarrowickTest, AnInterruptStopsTheInstrumentAndKeepsThePoints)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--rate"), QStringLiteral("200")});
    QProcess process;
    process.start(programPath(kProgram), sweep(simulator, "--points 1024 --quiet"));
    const QString log = path(QStringLiteral("link.log"));
    ASSERT_TRUE(waitFor([&] { return pointsOfLastTest(log).size() > 20; }));
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    ASSERT_TRUE(process.waitForFinished(kPatience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 6);
    EXPECT_THAT(process.readAllStandardError().toStdString(),
                MatchesRegex("marrowick: Stopped after [0-9]+ of 1024 points\\.\n"));
    EXPECT_THAT(process.readAllStandardOutput().toStdString(), MatchesRegex("[0-9]+ points from 1 kHz to .*\n"));

    // The instrument is at rest and takes the next sweep.
    EXPECT_EQ(runProgram(kProgram, sweep(simulator, "--points 10")).exitCode, 0);
}

TEST_F(MarrowickTest, ATimeoutStopsTheSweep)
{
    const Simulator simulator(freshSerial(), {QStringLiteral("--rate"), QStringLiteral("100")});
    const Ended ended = runProgram(kProgram, sweep(simulator, "--points 1024 --timeout 1.5"));
    EXPECT_EQ(ended.exitCode, 6);
    EXPECT_THAT(ended.errors.toStdString(),
                MatchesRegex("marrowick: Stopped after [0-9]+ of 1024 points: the time is up\\.\n"));
}

TEST_F(MarrowickTest, AnUnpluggedInstrumentIsALostLinkAndThePointsAreKept)
{
    Simulator simulator(freshSerial(), {QStringLiteral("--rate"), QStringLiteral("200")});
    QProcess process;
    process.start(programPath(kProgram), sweep(simulator, "--points 1024") +
                                             QStringList{QStringLiteral("--csv"), path(QStringLiteral("kept.csv"))});
    const QString log = path(QStringLiteral("link.log"));
    ASSERT_TRUE(waitFor([&] { return pointsOfLastTest(log).size() > 20; }));
    EXPECT_TRUE(simulator.end());
    ASSERT_TRUE(process.waitForFinished(kPatience));
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_THAT(process.readAllStandardError().toStdString(),
                MatchesRegex("marrowick: The link to the instrument went down after [0-9]+ of 1024 points\\.\n"));
    const std::size_t arrived = pointsOfLastTest(log).size();
    EXPECT_EQ(content(QStringLiteral("kept.csv")).count('\n'), static_cast<qsizetype>(arrived) + 1);
}
