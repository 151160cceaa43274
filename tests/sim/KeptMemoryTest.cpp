// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/KeptMemory.h"

#include "tests/sim/KeptSample.h"

TEST(KeptMemory, EverythingKeptComesBack)
{
    const sim::KeptMemory memory = keptSample();
    EXPECT_EQ(memory.script.size(), 5);
    EXPECT_EQ(memory.model, sim::Model::DT46);
    const ValueOr<sim::KeptMemory> read = sim::KeptMemory::fromJson(memory.toJson());
    ASSERT_TRUE(read.ok()) << read.sentence().toStdString();
    EXPECT_EQ(read.value(), memory);
}

TEST(KeptMemory, ValuesOutOfBoundsAreNotTaken)
{
    QByteArray text = keptSample().toJson();
    text.replace("\"points\": 77", "\"points\": 99999");
    text.replace("\"vrefCode\": 9", "\"vrefCode\": -3");
    const ValueOr<sim::KeptMemory> read = sim::KeptMemory::fromJson(text);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.value().settings.points, sim::SweepSettings().points);
    EXPECT_EQ(read.value().constants.vrefCode, sim::InstrumentConstants().vrefCode);
}

TEST(KeptMemory, ACalibrationOfTheWrongSizeCountsAsNone)
{
    sim::KeptMemory memory = keptSample();
    memory.constants.calibration.deviation.resize(3);
    const ValueOr<sim::KeptMemory> read = sim::KeptMemory::fromJson(memory.toJson());
    ASSERT_TRUE(read.ok());
    EXPECT_FALSE(read.value().constants.calibration.valid);
}

TEST(KeptMemory, AnEditedMemoryIsBoundedByTheModel)
{
    sim::KeptMemory memory = keptSample();
    memory.settings.endFrequency = 9e8;
    memory.settings.attenuation = 50;
    SimBench bench([&memory](sim::Instrument::Setup& setup) {
        setup.model = sim::Model::DT46;
        setup.memory = memory;
    });
    EXPECT_EQ(bench.instrument->state().settings.endFrequency, 5e6);
    EXPECT_EQ(bench.instrument->state().settings.attenuation, 0);
}

TEST(KeptMemory, ADamagedOneIsToldFromSomethingElseAndFromALaterOne)
{
    using Unreadable = sim::KeptMemory::Unreadable;
    const QByteArray whole = keptSample().toJson();
    const auto judged = [](const QByteArray& text) {
        EXPECT_FALSE(sim::KeptMemory::fromJson(text).ok());
        return sim::KeptMemory::judge(text);
    };
    EXPECT_EQ(judged(""), Unreadable::Damaged);
    EXPECT_EQ(judged(QByteArray(4096, '\0')), Unreadable::Damaged);
    for (const qsizetype length : {qsizetype(1), whole.size() / 2, whole.size() - 3})
        EXPECT_EQ(judged(whole.left(length)), Unreadable::Damaged) << length;
    EXPECT_EQ(judged(QByteArray(whole).replace("\"serial\"", "\"other\"")), Unreadable::Damaged);
    EXPECT_EQ(judged(QByteArray(whole).replace("\"version\": 1", "\"version\": 2")), Unreadable::OtherVersion);
    EXPECT_EQ(judged("Dear diary"), Unreadable::SomethingElse);
    EXPECT_EQ(judged("{\"name\": \"a part\"}"), Unreadable::SomethingElse);
    EXPECT_EQ(judged("[]"), Unreadable::SomethingElse);
}
