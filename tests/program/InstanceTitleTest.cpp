// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/InstanceTitle.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString kTitle = QStringLiteral("MarrowickGraph");

class FakeTitles : public TitleRegistry
{
public:
    bool take(const QString& title) override
    {
        ++asked;
        if (used.contains(title))
            return false;
        used.insert(title);
        return true;
    }
    QSet<QString> used;
    int asked = 0;
};

TEST(InstanceTitle, OfTheFirstCopyHasNoNumber)
{
    FakeTitles titles;
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), kTitle);
}

TEST(InstanceTitle, OfTheSecondAndThirdCopyAreNumbered)
{
    FakeTitles titles;
    settleInstanceTitle(kTitle, titles);
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), QStringLiteral("MarrowickGraph1"));
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), QStringLiteral("MarrowickGraph2"));
}

TEST(InstanceTitle, TakesTheFirstFreeNumber)
{
    FakeTitles titles;
    for (int i = 0; i < 4; ++i)
        settleInstanceTitle(kTitle, titles);
    titles.used.remove(QStringLiteral("MarrowickGraph2"));
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), QStringLiteral("MarrowickGraph2"));
}

TEST(InstanceTitle, Is101UncheckedWhenAHundredAreInUse)
{
    FakeTitles titles;
    for (int i = 0; i <= 100; ++i)
        settleInstanceTitle(kTitle, titles);
    titles.asked = 0;
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), QStringLiteral("MarrowickGraph101"));
    EXPECT_EQ(titles.asked, 101) << "the plain title and 1 to 100";
    EXPECT_FALSE(titles.used.contains(QStringLiteral("MarrowickGraph101")));
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), QStringLiteral("MarrowickGraph101"));
}

TEST(LockedTitles, AreHeldAsLongAsTheObjectLives)
{
    QTemporaryDir folder;
    LockedTitles first(folder.filePath(QStringLiteral("titles")));
    EXPECT_EQ(settleInstanceTitle(kTitle, first), kTitle);
    {
        LockedTitles second(folder.filePath(QStringLiteral("titles")));
        EXPECT_EQ(settleInstanceTitle(kTitle, second), QStringLiteral("MarrowickGraph1"));
    }
    LockedTitles third(folder.filePath(QStringLiteral("titles")));
    EXPECT_EQ(settleInstanceTitle(kTitle, third), QStringLiteral("MarrowickGraph1"));
}

TEST(LockedTitles, OfAKilledCopyAreFree)
{
    QTemporaryDir folder;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        LockedTitles titles(folder.path());
        const char taken = titles.take(kTitle) ? 'y' : 'n';
        if (::write(ready[1], &taken, 1) == 1)
            ::pause();
        ::_exit(1);
    }
    char taken = 0;
    ASSERT_EQ(::read(ready[0], &taken, 1), 1);
    EXPECT_EQ(taken, 'y');
    LockedTitles titles(folder.path());
    EXPECT_FALSE(titles.take(kTitle));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(titles.take(kTitle));
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(LockedTitles, CountAsFreeWhereNoLockCanBeMade)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("occupied")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    LockedTitles titles(file.fileName() + QStringLiteral("/below"));
    EXPECT_EQ(settleInstanceTitle(kTitle, titles), kTitle);
}

TEST(LockedTitles, TakeAnyText)
{
    QTemporaryDir folder;
    LockedTitles one(folder.path());
    LockedTitles other(folder.path());
    const QString title = QStringLiteral("../Ohm \u03a9/meter");
    EXPECT_TRUE(one.take(title));
    EXPECT_FALSE(other.take(title));
}

} // namespace
