// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/PartFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>

using sim::PartModel;

namespace {

QString complaint(const QByteArray& json)
{
    const ValueOr<PartModel> part = sim::partfile::fromJson(json);
    EXPECT_FALSE(part.ok()) << json.constData();
    return part.sentence();
}

PartModel good(const QByteArray& json)
{
    ValueOr<PartModel> part = sim::partfile::fromJson(json);
    EXPECT_TRUE(part.ok()) << part.sentence().toStdString();
    return part.value();
}

} // namespace

TEST(PartFile, EveryShippedPartLoadsAndSaysWhereItsFiguresComeFrom)
{
    const QStringList names = sim::partfile::shippedNames();
    EXPECT_EQ(names, (QStringList{"disc1m", "fork32k", "langevin40k", "open", "resistor1k"}));
    for (const QString& name : names) {
        const ValueOr<PartModel> part = sim::partfile::load(name);
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

TEST(PartFile, TheTwoOtherWaysToWriteABranchGiveTheSame)
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

TEST(PartFile, AShippedFileCanBeGivenByNameOrAsAFile)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("mine.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "mine", "staticCapacitance": 1e-9})");
    file.close();
    const ValueOr<PartModel> part = sim::partfile::load(file.fileName());
    ASSERT_TRUE(part.ok());
    EXPECT_EQ(part.value().name(), QString("mine"));
}

TEST(PartFile, AMissingPartIsAnsweredWithTheShippedOnes)
{
    const ValueOr<PartModel> part = sim::partfile::load("nosuch");
    EXPECT_EQ(
        part.sentence(),
        QString(
            "There is no part \"nosuch\": neither a shipped one (disc1m, fork32k, langevin40k, open, resistor1k) nor "
            "a file of that name."));
}

TEST(PartFile, AnUnreadablePartFileIsNamed)
{
    QTemporaryDir folder;
    const ValueOr<PartModel> part = sim::partfile::load(folder.path());
    EXPECT_TRUE(part.sentence().startsWith("The part file \"" + folder.path() + "\" cannot be read"))
        << part.sentence().toStdString();
}

TEST(PartFile, WrongTextsGetClearSentences)
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

TEST(PartFile, HostileTextsAreRefusedWithoutHarm)
{
    EXPECT_FALSE(sim::partfile::fromJson(QByteArray(sim::partfile::kLongestFile + 1, ' ')).ok());
    EXPECT_FALSE(sim::partfile::fromJson(QByteArray(100000, '[')).ok());
    EXPECT_FALSE(sim::partfile::fromJson(QByteArray("\0\xff\xfe", 3)).ok());
    EXPECT_FALSE(sim::partfile::fromJson(R"({"name": "x", "staticCapacitance": 1e999})").ok());
    QByteArray many = R"({"name": "x", "branches": [)";
    for (int i = 0; i < 257; ++i)
        many += (i ? "," : "") + QByteArray(R"({"resistance": 1})");
    EXPECT_FALSE(sim::partfile::fromJson(many + "]}").ok());
}
