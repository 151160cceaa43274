// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/PartModel.h"

#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using sim::PartModel;

namespace {

constexpr double kPi = std::numbers::pi;

QString complaint(const QByteArray& json)
{
    const ValueOr<PartModel> part = PartModel::fromJson(json);
    EXPECT_FALSE(part.ok()) << json.constData();
    return part.sentence();
}

PartModel good(const QByteArray& json)
{
    ValueOr<PartModel> part = PartModel::fromJson(json);
    EXPECT_TRUE(part.ok()) << part.sentence().toStdString();
    return part.value();
}

} // namespace

TEST(PartModel, EveryShippedPartLoadsAndSaysWhereItsFiguresComeFrom)
{
    const QStringList names = PartModel::shippedNames();
    EXPECT_EQ(names, (QStringList{"disc1m", "fork32k", "langevin40k", "open", "resistor1k"}));
    for (const QString& name : names) {
        const ValueOr<PartModel> part = PartModel::load(name);
        ASSERT_TRUE(part.ok()) << part.sentence().toStdString();
        EXPECT_FALSE(part.value().name().isEmpty());
        EXPECT_FALSE(part.value().source().isEmpty());
        for (double frequency = 1; frequency < 1e8; frequency *= 1.01) {
            const std::complex<double> impedance = part.value().impedance(frequency);
            ASSERT_TRUE(std::isfinite(impedance.real()) && std::isfinite(impedance.imag()));
            ASSERT_GT(impedance.real(), 0) << "a passive part takes power at every frequency";
        }
    }
}

TEST(PartModel, AtSeriesResonanceTheBranchIsItsResistance)
{
    const PartModel part =
        good(R"({"name": "x", "branches": [{"resistance": 15, "inductance": 0.05, "capacitance": 3e-10}]})");
    const double resonance = part.branches()[0].seriesResonance();
    EXPECT_DOUBLE_EQ(resonance, 1 / (2 * kPi * std::sqrt(0.05 * 3e-10)));
    EXPECT_NEAR(part.impedance(resonance).real(), 15, 1e-6);
    EXPECT_NEAR(part.impedance(resonance).imag(), 0, 1e-6);
}

TEST(PartModel, ParallelResonanceStandsWhereTheRatioOfTheCapacitancesPutsIt)
{
    // Far above the losses: fp = fs sqrt(1 + C1 / C0), and there the impedance is highest.
    const PartModel part = good(
        R"({"name": "x", "staticCapacitance": 4e-9, "branches": [{"resonance": 40000, "resistance": 1, "capacitance": 2.8e-10}]})");
    const double expected = 40000 * std::sqrt(1 + 2.8e-10 / 4e-9);
    double highest = 0, at = 0;
    for (double frequency = 40500; frequency < 42500; frequency += 0.5) {
        if (std::abs(part.impedance(frequency)) > highest) {
            highest = std::abs(part.impedance(frequency));
            at = frequency;
        }
    }
    EXPECT_NEAR(at, expected, 2);
}

TEST(PartModel, ABareCapacitanceAndResistancesFollowTheirFormulas)
{
    const PartModel capacitor = good(R"({"name": "c", "staticCapacitance": 1e-9})");
    EXPECT_NEAR(capacitor.impedance(1000).imag(), -1 / (2 * kPi * 1000 * 1e-9), 1);
    const PartModel leaky = good(R"({"name": "r", "leakageResistance": 470, "seriesResistance": 30})");
    EXPECT_NEAR(std::abs(leaky.impedance(5e5)), 500, 1e-6);
}

TEST(PartModel, TheTwoOtherWaysToWriteABranchGiveTheSame)
{
    const auto branch = [](const char* text) {
        return good(QByteArray(R"({"name": "x", "branches": [{)") + text + "}]}").branches()[0];
    };
    const sim::MotionalBranch byQuality = branch(R"("resonance": 1000, "resistance": 50, "quality": 200)");
    EXPECT_NEAR(byQuality.quality(), 200, 1e-9);
    EXPECT_NEAR(byQuality.seriesResonance(), 1000, 1e-9);
    const sim::MotionalBranch byInductance = branch(R"("resonance": 1000, "resistance": 50, "inductance": 2)");
    EXPECT_NEAR(byInductance.seriesResonance(), 1000, 1e-9);
    EXPECT_EQ(byInductance.inductance, 2);
}

TEST(PartModel, AShippedFileCanBeGivenByNameOrAsAFile)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("mine.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "mine", "staticCapacitance": 1e-9})");
    file.close();
    const ValueOr<PartModel> part = PartModel::load(file.fileName());
    ASSERT_TRUE(part.ok());
    EXPECT_EQ(part.value().name(), QString("mine"));
}

TEST(PartModel, AMissingPartIsAnsweredWithTheShippedOnes)
{
    const ValueOr<PartModel> part = PartModel::load("nosuch");
    EXPECT_EQ(
        part.sentence(),
        QString(
            "There is no part \"nosuch\": neither a shipped one (disc1m, fork32k, langevin40k, open, resistor1k) nor "
            "a file of that name."));
}

TEST(PartModel, AnUnreadablePartFileIsNamed)
{
    QTemporaryDir folder;
    const ValueOr<PartModel> part = PartModel::load(folder.path());
    EXPECT_TRUE(part.sentence().startsWith("The part file \"" + folder.path() + "\" cannot be read"))
        << part.sentence().toStdString();
}

TEST(PartModel, WrongTextsGetClearSentences)
{
    const QString syntax = complaint("{\n\n \"name\": oops}");
    EXPECT_TRUE(syntax.startsWith("The text is not JSON: ") && syntax.endsWith(" (line 3).")) << syntax.toStdString();
    EXPECT_EQ(complaint("[1, 2]"), QString("A part file holds one object in braces."));
    EXPECT_EQ(complaint("{}"), QString("the part lacks the entry \"name\"."));
    EXPECT_EQ(complaint(R"({"name": 5})"),
              QString("The entry \"name\" of the part must be a text of at most 500 characters."));
    EXPECT_EQ(complaint(R"({"name": "x", "seriesResistance": -1})"),
              QString("The entry \"seriesResistance\" of the part must be a number from 0 to 1e+09."));
    EXPECT_EQ(complaint(R"({"name": "x", "staticCapacitance": "4 nF"})"),
              QString("The entry \"staticCapacitance\" of the part must be a number from 0 to 1."));
    EXPECT_EQ(complaint(R"({"name": "x", "leakageResistence": 1e9})"),
              QString("The entry \"leakageResistence\" of the part is not known."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": {}})"),
              QString("The entry \"branches\" of the part must be a list of at most 256 branches."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [5]})"),
              QString("The entry for branch 1 must be an object in braces."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [{"resistance": 1}, {}]})"),
              QString("branch 2 lacks the entry \"resistance\"."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [{"resistance": 0}]})"),
              QString("branch 1 is a short circuit; give it a resistance above 0."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [{"resistance": 1, "resonance": 1000}]})"),
              QString("The entry \"resonance\" of branch 1 needs exactly one of \"inductance\", \"capacitance\" and "
                      "\"quality\"."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [{"resistance": 1, "quality": 10}]})"),
              QString("The entry \"quality\" of branch 1 needs the entry \"resonance\"."));
    EXPECT_EQ(complaint(R"({"name": "x", "branches": [{"resistance": 0, "resonance": 1000, "quality": 10}]})"),
              QString("The entry \"quality\" of branch 1 needs a resistance above 0."));
}

TEST(PartModel, HostileTextsAreRefusedWithoutHarm)
{
    EXPECT_FALSE(PartModel::fromJson(QByteArray(PartModel::kLongestFile + 1, ' ')).ok());
    EXPECT_FALSE(PartModel::fromJson(QByteArray(100000, '[')).ok());
    EXPECT_FALSE(PartModel::fromJson(QByteArray("\0\xff\xfe", 3)).ok());
    EXPECT_FALSE(PartModel::fromJson(R"({"name": "x", "staticCapacitance": 1e999})").ok());
    QByteArray many = R"({"name": "x", "branches": [)";
    for (int i = 0; i < 257; ++i)
        many += (i ? "," : "") + QByteArray(R"({"resistance": 1})");
    EXPECT_FALSE(PartModel::fromJson(many + "]}").ok());
}

TEST(PartModel, ALosslessBranchAtItsResonanceStaysFinite)
{
    const PartModel part =
        good(R"({"name": "x", "branches": [{"resistance": 0, "resonance": 1000, "inductance": 1}]})");
    const double resonance = part.branches()[0].seriesResonance();
    EXPECT_GT(std::abs(part.impedance(resonance)), 0);
    EXPECT_TRUE(std::isfinite(std::abs(part.impedance(resonance))));
}
