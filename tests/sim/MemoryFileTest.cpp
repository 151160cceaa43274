// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/MemoryFile.h"

#include "tests/sim/SimBench.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

sim::KeptMemory sample()
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.model = sim::Model::DT46; });
    for (const char* command : {"startfreq 12345.678", "points 77", "repeat 1", "phase 0", "linear 1", "samples 3",
                                "idlefreq 0", "setpin 2", "setvref 9 0", "calon 0"})
        bench.ask(command);
    bench.ask(std::string("loadscript 5\ra\0\r\xff.", 18));
    bench.ask("save");
    return *bench.kept;
}

} // namespace

TEST(MemoryFile, EverythingKeptComesBack)
{
    const sim::KeptMemory memory = sample();
    EXPECT_EQ(memory.script.size(), 5);
    EXPECT_EQ(memory.model, sim::Model::DT46);
    const ValueOr<sim::KeptMemory> read = sim::MemoryFile::fromJson(sim::MemoryFile::toJson(memory));
    ASSERT_TRUE(read.ok()) << read.sentence().toStdString();
    EXPECT_EQ(read.value(), memory);
}

TEST(MemoryFile, IsMadeWithItsFolderAndReadAgain)
{
    QTemporaryDir folder;
    const sim::MemoryFile file(folder.filePath("some/where/T46-1.json"));
    const auto nothing = file.read();
    ASSERT_TRUE(nothing.ok());
    EXPECT_FALSE(nothing.value());
    ASSERT_TRUE(file.write(sample()).ok());
    const auto read = file.read();
    ASSERT_TRUE(read.ok());
    ASSERT_TRUE(read.value());
    EXPECT_EQ(*read.value(), sample());
}

TEST(MemoryFile, WhatIsNoMemoryIsRefusedWithAdvice)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("m.json"));
    for (const QByteArray& text : {QByteArray(), QByteArray("{}"), QByteArray("[[[["), QByteArray(100000, '{')}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
        file.close();
        const auto read = sim::MemoryFile(file.fileName()).read();
        ASSERT_FALSE(read.ok());
        EXPECT_EQ(read.sentence(),
                  "Memory file \"" + file.fileName() +
                      "\": This is not the memory of a simulated instrument. Remove it or choose another "
                      "with --memory.");
    }
}

TEST(MemoryFile, ValuesOutOfBoundsAreNotTaken)
{
    QByteArray text = sim::MemoryFile::toJson(sample());
    text.replace("\"points\": 77", "\"points\": 99999");
    text.replace("\"vrefCode\": 9", "\"vrefCode\": -3");
    const ValueOr<sim::KeptMemory> read = sim::MemoryFile::fromJson(text);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.value().settings.points, sim::SweepSettings().points);
    EXPECT_EQ(read.value().constants.vrefCode, sim::InstrumentConstants().vrefCode);
}

TEST(MemoryFile, ACalibrationOfTheWrongSizeCountsAsNone)
{
    sim::KeptMemory memory = sample();
    memory.constants.calibration.deviation.resize(3);
    const ValueOr<sim::KeptMemory> read = sim::MemoryFile::fromJson(sim::MemoryFile::toJson(memory));
    ASSERT_TRUE(read.ok());
    EXPECT_FALSE(read.value().constants.calibration.valid);
}

TEST(MemoryFile, AnEditedMemoryIsBoundedByTheModel)
{
    sim::KeptMemory memory = sample();
    memory.settings.endFrequency = 9e8;
    memory.settings.attenuation = 50;
    SimBench bench([&memory](sim::Instrument::Setup& setup) {
        setup.model = sim::Model::DT46;
        setup.memory = memory;
    });
    EXPECT_EQ(bench.instrument->state().settings.endFrequency, 5e6);
    EXPECT_EQ(bench.instrument->state().settings.attenuation, 0);
}

TEST(MemoryFile, TheDefaultStandsInTheStateFolder)
{
    EXPECT_EQ(sim::MemoryFile::defaultFileName("T46-5"),
              qEnvironmentVariable("XDG_STATE_HOME") + "/marrowick/instruments/T46-5.json");
}
