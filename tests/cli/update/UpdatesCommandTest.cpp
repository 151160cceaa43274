// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/update/UpdatesCommand.h"

#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/Version.h"
#include "support/WebFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <gmock/gmock.h>

using ::testing::StartsWith;

namespace {

class UpdatesCommandTest : public ::testing::Test
{
protected:
    cli::ExitCode run(const QStringList& options)
    {
        cli::CommandTable table;
        table.push_back(std::make_unique<cli::UpdatesCommand>());
        results.clear();
        problems.clear();
        cli::Console console("marrowick", cli::Console::into(results), cli::Console::into(problems), false);
        return cli::runCommandLine(table, QStringList{"marrowick", "updates"} + options, console);
    }

    QString results, problems;
};

} // namespace

TEST_F(UpdatesCommandTest, TheListOfARealServerIsTold)
{
    WebFolder web;
    ASSERT_TRUE(web.started() && web.add("MGV9R30B2.deb", "x") && web.add("T46V1R2B3.mfw", "x") &&
                web.add("PELLFERNV2D5B1.mfw", "x"));
    EXPECT_EQ(run({"--url", web.url()}), cli::ExitCode::Done) << problems.toStdString();
    EXPECT_EQ(results.toStdString(),
              "program\t9.3\tMGV9R30B2.deb\tnewer than " + version::shortText().toStdString() +
                  "\nfirmware T46\t1.2\tT46V1R2B3.mfw\nfirmware PELLFERN\t2\tPELLFERNV2D5B1.mfw\n");
    EXPECT_EQ(run({"--json", "--url", web.url()}), cli::ExitCode::Done);
    const QJsonObject told = QJsonDocument::fromJson(results.toUtf8()).object();
    EXPECT_EQ(told["program"]["file"].toString(), "MGV9R30B2.deb");
    EXPECT_TRUE(told["program"]["newer"].toBool());
    EXPECT_EQ(told["firmware"].toArray().size(), 2);
    EXPECT_EQ(told["firmware"][1]["version"].toDouble(), 2) << "the tag hides the minor number";
    // The server writes its log behind its answer.
    EXPECT_TRUE(QTest::qWaitFor([&] { return web.log().count("GET ") >= 2; }));
    EXPECT_EQ(web.log().count("GET "), 2) << "the list and nothing else";
}

TEST_F(UpdatesCommandTest, WhatIsNotNewerIsToldAsSuch)
{
    WebFolder web;
    ASSERT_TRUE(web.started() && web.add("MGV1R0B2.deb", "x"));
    EXPECT_EQ(run({"--url", web.url()}), cli::ExitCode::Done);
    EXPECT_EQ(results, "program\t1\tMGV1R0B2.deb\tnot newer than " + version::shortText() + '\n');
}

TEST_F(UpdatesCommandTest, WithoutAnOptionTheStoredAddressIsUsed)
{
    WebFolder web;
    ASSERT_TRUE(web.started() && web.add("MGV9R9B1.deb", "x"));
    {
        SettingsStore store;
        Preferences(store, version::programTitle()).setValue(options::kWebUrl, web.url());
    }
    EXPECT_EQ(run({}), cli::ExitCode::Done) << problems.toStdString();
    {
        SettingsStore store;
        Preferences(store, version::programTitle()).setValue(options::kWebUrl, QString());
    }
    EXPECT_EQ(run({}), cli::ExitCode::Usage);
    EXPECT_EQ(problems,
              "marrowick: No address of updates is set. Give one with --url, or set it in the desktop program.\n");
}

TEST_F(UpdatesCommandTest, AnAddressWithoutAListIsAProblem)
{
    WebFolder web;
    ASSERT_TRUE(web.started());
    for (const QString& address : {web.url(), web.url() + "none", QString("file:///etc/"), QString("nonsense")}) {
        EXPECT_EQ(run({"--url", address}), cli::ExitCode::FileError);
        EXPECT_THAT(problems.toStdString(), StartsWith("marrowick: Unable to connect to server, or there is no list of "
                                                       "updates: "));
        EXPECT_EQ(results, "");
    }
}
