// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/MemoryFile.h"

#include "tests/sim/KeptSample.h"
#include "tests/sim/SmallDisk.h"

#include <QDir>

namespace {

void put(const QString& name, const QByteArray& text)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(text), text.size());
}

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

} // namespace

TEST(MemoryFile, IsMadeWithItsFolderAndReadAgain)
{
    QTemporaryDir folder;
    const sim::MemoryFile file(folder.filePath("some/where/T46-1.json"));
    const auto nothing = file.recall();
    ASSERT_TRUE(nothing.ok());
    EXPECT_FALSE(nothing.value().memory);
    EXPECT_TRUE(nothing.value().notice.isEmpty());
    ASSERT_TRUE(file.write(keptSample()).ok());
    const auto read = file.recall();
    ASSERT_TRUE(read.ok());
    ASSERT_TRUE(read.value().memory);
    EXPECT_EQ(*read.value().memory, keptSample());
    EXPECT_TRUE(read.value().notice.isEmpty());
}

TEST(MemoryFile, ADamagedOneIsSetAsideAndToldAndReplacesNothing)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("m.json");
    const QByteArray half = keptSample().toJson().left(5000);
    int number = 0;
    for (const QByteArray& text : {QByteArray(), half, QByteArray(100000, '{')}) {
        put(name, text);
        const auto read = sim::MemoryFile(name).recall();
        ASSERT_TRUE(read.ok()) << read.sentence().toStdString();
        EXPECT_FALSE(read.value().memory);
        const QString aside = name + QString(".damaged-%1").arg(++number);
        EXPECT_EQ(read.value().notice, "The memory file \"" + name + "\" is damaged and was set aside as \"" + aside +
                                           "\": This is not the memory of a simulated instrument. The instrument "
                                           "begins as a new one.");
        EXPECT_FALSE(QFile::exists(name));
        EXPECT_EQ(contentOf(aside), text);
    }
    EXPECT_EQ(contentOf(name + ".damaged-1"), QByteArray());
    EXPECT_EQ(contentOf(name + ".damaged-2"), half) << "each stays";
}

TEST(MemoryFile, SomebodyElsesFileIsRefusedAndLeftAlone)
{
    QTemporaryDir folder;
    const QString name = folder.filePath("part.json");
    const QByteArray later = keptSample().toJson().replace("\"version\": 1", "\"version\": 2");
    for (const auto& [text, why] :
         {std::pair<QByteArray, QString>("{\"name\": \"a part\"}", "This is not the memory of a simulated instrument."),
          {"Dear diary", "This is not the memory of a simulated instrument."},
          {later, "The memory is of a version that this program does not know."}}) {
        put(name, text);
        EXPECT_EQ(sim::MemoryFile(name).recall().sentence(),
                  "\"" + name + "\": " + why + " Choose another file with --memory.");
        EXPECT_EQ(contentOf(name), text);
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList("part.json"));
}

TEST(MemoryFile, AmongItsOwnWhateverIsNoMemoryIsSetAsideButALaterOneIsNot)
{
    const sim::MemoryFile file = sim::MemoryFile::ofInstrument("T46-own");
    ASSERT_TRUE(file.write(keptSample()).ok());
    put(file.fileName(), "Dear diary");
    EXPECT_TRUE(file.recall().ok());
    EXPECT_EQ(contentOf(file.fileName() + ".damaged-1"), "Dear diary");
    put(file.fileName(), keptSample().toJson().replace("\"version\": 1", "\"version\": 2"));
    EXPECT_FALSE(file.recall().ok());
    EXPECT_TRUE(QFile::exists(file.fileName()));
}

TEST(MemoryFile, ADamagedOneThatCannotBeSetAsideIsRefusedAndStays)
{
    SmallDisk disk;
    const QString name = disk.filePath("m.json");
    put(name, "{");
    disk.makeReadOnly();
    const auto read = sim::MemoryFile(name).recall();
    ASSERT_FALSE(read.ok());
    EXPECT_TRUE(read.sentence().startsWith("The memory file \"" + name + "\" is damaged and cannot be set aside as"))
        << read.sentence().toStdString();
    EXPECT_EQ(contentOf(name), "{");
}

TEST(MemoryFile, StandsInTheStateFolderUnlessAnotherIsNamed)
{
    EXPECT_EQ(sim::MemoryFile::ofInstrument("T46-5").fileName(),
              qEnvironmentVariable("XDG_STATE_HOME") + "/marrowick/instruments/T46-5.json");
}
