// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick writes firmware into a simulated instrument, with power and cable going in between.
#include "e2e/EndToEnd.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace e2e;
using ::testing::HasSubstr;

namespace {

class FirmwareTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        QFile image(path(QStringLiteral("image.bin")));
        ASSERT_TRUE(image.open(QFile::WriteOnly));
        for (int i = 0; i < 20 * 1024 + 77; ++i)
            image.putChar(static_cast<char>((i * 2654435761U) >> 13));
        image.close();
        ASSERT_EQ(marrowick({QStringLiteral("key"), path(QStringLiteral("maker"))}).exitCode, 0);
        ASSERT_TRUE(QDir().mkpath(path(QStringLiteral("keys"))));
        ASSERT_TRUE(QFile::rename(path(QStringLiteral("maker.pub")), path(QStringLiteral("keys/maker.pub"))));
        const Ended packed =
            marrowick({QStringLiteral("pack"), path(QStringLiteral("image.bin")), QStringLiteral("--hardware"),
                       QStringLiteral("2"), QStringLiteral("--firmware-version"), QStringLiteral("1.28"),
                       QStringLiteral("--build"), QStringLiteral("99"), QStringLiteral("--key"),
                       path(QStringLiteral("maker.key")), QStringLiteral("--output"), file()});
        ASSERT_EQ(packed.exitCode, 0) << packed.errors.toStdString();
    }

    QString file() const { return path(QStringLiteral("new.mfw")); }
    static Ended marrowick(const QStringList& words)
    {
        return runProgram(QStringLiteral("marrowick"), QStringList{QStringLiteral("firmware")} + words);
    }
    Ended install(const Simulator& simulator) const
    {
        return marrowick({QStringLiteral("install"), file(), QStringLiteral("--device"), simulator.serial(),
                          QStringLiteral("--trusted-keys"), path(QStringLiteral("keys"))});
    }
    QStringList options(const QString& fault = {}) const
    {
        QStringList all{QStringLiteral("--trusted-keys"), path(QStringLiteral("keys")), QStringLiteral("--memory"),
                        path(QStringLiteral("memory.json"))};
        if (!fault.isEmpty())
            all += {QStringLiteral("--fault"), fault};
        return all;
    }
};

} // namespace

TEST_F(FirmwareTest, PowerAndCableLostInBetweenAreGotOver)
{
    for (const char* fault : {"power:7", "cable:12", "power:21"}) {
        QFile::remove(path(QStringLiteral("memory.json")));
        const Simulator simulator(freshSerial(), options(QLatin1String(fault)));
        const Ended ended = install(simulator);
        EXPECT_EQ(ended.exitCode, 0) << fault << ended.errors.toStdString();
        EXPECT_THAT(ended.output.toStdString(), HasSubstr(" runs V1.28 Build 99.\n")) << fault;
    }
}

TEST_F(FirmwareTest, FirmwareThatDoesNotStartIsRolledBackAndTheNextAttemptSucceeds)
{
    const Simulator simulator(freshSerial(), options(QStringLiteral("dead-image")));
    const Ended dead = install(simulator);
    EXPECT_EQ(dead.exitCode, 4);
    EXPECT_THAT(dead.errors.toStdString(), HasSubstr("The new firmware did not start, so the old one runs again."));
    EXPECT_EQ(install(simulator).exitCode, 0);
}

TEST_F(FirmwareTest, TheInstrumentKeepsItsFirmwareWhenItIsSwitchedOff)
{
    const QString serial = freshSerial();
    {
        Simulator simulator(serial, options());
        ASSERT_EQ(install(simulator).exitCode, 0);
        EXPECT_TRUE(simulator.end());
    }
    const Simulator simulator(serial, options());
    const Ended older = marrowick(
        {QStringLiteral("pack"), path(QStringLiteral("image.bin")), QStringLiteral("--hardware"), QStringLiteral("2"),
         QStringLiteral("--firmware-version"), QStringLiteral("1.28"), QStringLiteral("--build"), QStringLiteral("98"),
         QStringLiteral("--key"), path(QStringLiteral("maker.key")), QStringLiteral("--output"), file()});
    ASSERT_EQ(older.exitCode, 0);
    const Ended refused = install(simulator);
    EXPECT_EQ(refused.exitCode, 4);
    EXPECT_THAT(refused.errors.toStdString(), HasSubstr("The firmware is older than the instrument's own."));
}

TEST_F(FirmwareTest, ADryRunTouchesNothing)
{
    const Simulator simulator(freshSerial(), options(QStringLiteral("power:1")));
    const Ended ended =
        marrowick({QStringLiteral("install"), file(), QStringLiteral("--dry-run"), QStringLiteral("--trusted-keys"),
                   path(QStringLiteral("keys")), QStringLiteral("--device"), simulator.serial()});
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(ended.output.toStdString(), HasSubstr(" would take V1.28 Build 99.\n"));
}
