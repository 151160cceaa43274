// SPDX-License-Identifier: GPL-3.0-or-later
// The resonance of simulated parts, swept over a pseudo-terminal and told by the command line.
#include "e2e/EndToEnd.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <gmock/gmock.h>
#include <numbers>

using namespace e2e;
using ::testing::HasSubstr;

namespace {

using namespace Qt::StringLiterals;

const QString kProgram = u"marrowick"_s;

/// The first branch of a shipped part.
struct Truth
{
    double fs = 0;
    double loadedQ = 0; ///< with the part's own series resistance

    explicit Truth(const QString& part)
    {
        QFile file(QStringLiteral(MG_SOURCE_DIR "/sim/parts/shipped/%1.json").arg(part));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
        const QJsonObject branch = object["branches"_L1].toArray().at(0).toObject();
        fs = branch["resonance"_L1].toDouble();
        const double resistance = branch["resistance"_L1].toDouble();
        const double omega = 2 * std::numbers::pi * fs;
        const double q = branch.contains("quality"_L1) ? branch["quality"_L1].toDouble()
                                                       : 1 / (omega * branch["capacitance"_L1].toDouble() * resistance);
        loadedQ = q * resistance / (resistance + object["seriesResistance"_L1].toDouble());
    }
};

double measure(const QJsonObject& analysis, const QString& key, const QString& what)
{
    return analysis["measures"_L1].toObject()[key].toObject()[what].toDouble();
}

class AnalyseTest : public EndToEndTest
{};

} // namespace

TEST_F(AnalyseTest, ShippedPartsAreRecoveredOverTheLink)
{
    for (const QString& part : {u"langevin40k"_s, u"fork32k"_s, u"disc1m"_s}) {
        const Truth truth(part);
        const Simulator simulator(freshSerial(), {u"--fast"_s, u"--part"_s, part});
        const QString plot = path(part + u".gzd"_s);
        // 400 points over eight bandwidths either side: 25 a bandwidth.
        const double reach = 8 * truth.fs / truth.loadedQ;
        const Ended ended = runProgram(kProgram, {u"sweep"_s, u"--device"_s, simulator.serial(), u"--from"_s,
                                                  QString::number(truth.fs - reach, 'f', 3), u"--to"_s,
                                                  QString::number(truth.fs + reach, 'f', 3), u"--points"_s, u"400"_s,
                                                  u"--analyse"_s, u"--json"_s, u"--output"_s, plot});
        ASSERT_EQ(ended.exitCode, 0) << part.toStdString() << ended.errors.toStdString();
        const QJsonObject sweep = QJsonDocument::fromJson(ended.output).object()["sweeps"_L1].toArray()[0].toObject();
        const QJsonObject analysis = sweep["analysis"_L1].toObject();
        EXPECT_TRUE(analysis["solved"_L1].toBool());
        EXPECT_GT(analysis["pointsPerBandwidth"_L1].toDouble(), 2);
        EXPECT_NEAR(measure(analysis, u"fr"_s, u"value"_s) / truth.fs, 1, 20e-6) << part.toStdString();
        EXPECT_NEAR(measure(analysis, u"q"_s, u"value"_s) / truth.loadedQ, 1, 0.01) << part.toStdString();
        // The plot says the same as the sweep did.
        const Ended again = runProgram(kProgram, {u"analyse"_s, u"--json"_s, plot});
        EXPECT_EQ(again.exitCode, 0) << again.errors.toStdString();
        const QJsonObject pen = QJsonDocument::fromJson(again.output).object()["pens"_L1].toArray()[0].toObject();
        for (const QString& key : {u"fr"_s, u"q"_s, u"zr"_s})
            EXPECT_EQ(measure(pen, key, u"value"_s), measure(analysis, key, u"value"_s));
    }
}

TEST_F(AnalyseTest, ASweepWithoutAResonanceIsToldByTheExitCode)
{
    const Simulator simulator(freshSerial(), {u"--fast"_s, u"--part"_s, u"resistor1k"_s});
    const Ended ended =
        runProgram(kProgram, {u"sweep"_s, u"--device"_s, simulator.serial(), u"--points"_s, u"100"_s, u"--analyse"_s});
    EXPECT_EQ(ended.exitCode, 8);
    EXPECT_THAT(ended.output.toStdString(), HasSubstr("100 points from "));
    EXPECT_THAT(ended.output.toStdString(), HasSubstr(": no resonance: "));
}
