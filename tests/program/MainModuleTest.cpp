// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/MainModule.h"

#include "program/UserMessages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString parsed(const char* text)
{
    QString value = QString::fromUtf8(text);
    return MainModule::ParseEngineeringValue(value);
}

TEST(ParseEngineeringValue, OfAnEmptyTextIsZero)
{
    EXPECT_EQ(parsed(""), QStringLiteral("0"));
    EXPECT_EQ(parsed("   "), QStringLiteral("0"));
    EXPECT_EQ(parsed("-"), QStringLiteral("0"));
    EXPECT_EQ(parsed("."), QStringLiteral("0"));
    EXPECT_EQ(parsed("k"), QStringLiteral("0"));
    EXPECT_EQ(parsed("xyz"), QStringLiteral("0"));
}

TEST(ParseEngineeringValue, DropsTheSecondPointAndGoesOn)
{
    EXPECT_EQ(parsed("1.5.2"), QStringLiteral("1.52"));
}

TEST(ParseEngineeringValue, IsClampedAboveOnly)
{
    EXPECT_EQ(parsed("3000000000"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("2147483646"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("2147483645.5"), QStringLiteral("2147483645.5"));
    EXPECT_EQ(parsed("5G"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("-5G"), QStringLiteral("-5000000000"));
    EXPECT_EQ(parsed((std::string(500, '9')).c_str()), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed(("-" + std::string(500, '9')).c_str()), QStringLiteral("-1.7976931348623157e+308"));
}

TEST(ParseEngineeringValue, TakesAMinusAnywhereAsTheSign)
{
    EXPECT_EQ(parsed("-5k"), QStringLiteral("-5000"));
    EXPECT_EQ(parsed("1-2"), QStringLiteral("-12"));
    EXPECT_EQ(parsed("7-"), QStringLiteral("-7"));
    EXPECT_EQ(parsed("--7"), QStringLiteral("-7"));
    EXPECT_EQ(parsed("-0"), QStringLiteral("0"));
}

TEST(ParseEngineeringValue, PutsThePointWhereTheSuffixStands)
{
    EXPECT_EQ(parsed("4k7"), QStringLiteral("4700"));
    EXPECT_EQ(parsed("2M2"), QStringLiteral("2200000"));
    EXPECT_EQ(parsed("k5"), QStringLiteral("500"));
    EXPECT_EQ(parsed("1.5k"), QStringLiteral("1500"));
    EXPECT_EQ(parsed("1.5k3"), QStringLiteral("1530"));
    EXPECT_EQ(parsed("1k.5"), QStringLiteral("1500"));
}

TEST(ParseEngineeringValue, KnowsEverySuffix)
{
    const struct
    {
        const char* text;
        const char* value;
    } rows[] = {{"3c", "300"},
                {"3C", "300"},
                {"3k", "3000"},
                {"3K", "3000"},
                {"3M", "3000000"},
                {"1g", "1000000000"},
                {"1G", "1000000000"},
                {"0.001t", "1000000000"},
                {"0.001T", "1000000000"},
                {"3m", "0.003"},
                {"3u", "0.000003"},
                {"300n", "0.0000003"},
                {"3n", "3e-09"},
                {"3p", "3e-12"},
                {"3a", "3e-15"}};
    for (const auto& row : rows)
        EXPECT_EQ(parsed(row.text), QString::fromLatin1(row.value)) << row.text;
}

TEST(ParseEngineeringValue, AccumulatesFactors)
{
    EXPECT_EQ(parsed("1kk"), QStringLiteral("1000000"));
    EXPECT_EQ(parsed("1km"), QStringLiteral("1"));
    EXPECT_EQ(parsed("5kmkm"), QStringLiteral("5"));
}

TEST(ParseEngineeringValue, RoundsOnlyOnce)
{
    EXPECT_EQ(parsed("4.7m"), QStringLiteral("0.0047"));
    EXPECT_EQ(parsed("4u7"), QStringLiteral("0.0000047"));
    EXPECT_EQ(parsed("1.1k"), QStringLiteral("1100"));
    EXPECT_EQ(parsed("2.3M"), QStringLiteral("2300000"));
}

TEST(ParseEngineeringValue, SkipsWhatItDoesNotKnowAndTrimsItsArgument)
{
    QString text = QStringLiteral("  10 kHz, \u03a9 ");
    EXPECT_EQ(MainModule::ParseEngineeringValue(text), QStringLiteral("10000"));
    EXPECT_EQ(text, QStringLiteral("10 kHz, \u03a9"));
    EXPECT_EQ(parsed("1,000"), QStringLiteral("1000"));
    EXPECT_EQ(parsed("1e3"), QStringLiteral("13"));
    EXPECT_EQ(parsed("+5"), QStringLiteral("5"));
}

TEST(PathHelpers, SplitAtTheLastSeparatorOfEitherKind)
{
    using MainModule::FileOfPath;
    using MainModule::PathOfFile;
    EXPECT_EQ(PathOfFile(QStringLiteral("/home/a/b.gad")), QStringLiteral("/home/a/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("/home/a/b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("c:\\plots\\b.gad")), QStringLiteral("c:\\plots\\"));
    EXPECT_EQ(FileOfPath(QStringLiteral("c:\\plots\\b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("c:\\plots/b.gad")), QStringLiteral("c:\\plots/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("c:/plots\\b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("b.gad")), QString());
    EXPECT_EQ(FileOfPath(QStringLiteral("b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("/a/")), QStringLiteral("/a/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("/a/")), QString());
    EXPECT_EQ(PathOfFile(QString()), QString());
    EXPECT_EQ(FileOfPath(QString()), QString());
}

TEST(IsValidFileName, RefusesEachOfTheNineCharacters)
{
    EXPECT_TRUE(MainModule::IsValidFileName(QStringLiteral("Langevin 40 kHz (\u03a9).gzd")));
    EXPECT_TRUE(MainModule::IsValidFileName(QString()));
    for (const char c : std::string("\\/:*?\"<>|"))
        EXPECT_FALSE(MainModule::IsValidFileName(QStringLiteral("a%1b").arg(QLatin1Char(c)))) << c;
}

TEST(RemoveQuotes, RemovesEveryDoubleQuote)
{
    QString text = QStringLiteral("\"\"c:\\a \"b\".gad\"");
    EXPECT_EQ(MainModule::RemoveQuotes(text), QStringLiteral("c:\\a b.gad"));
    EXPECT_EQ(text, QStringLiteral("c:\\a b.gad"));
}

TEST(Colours, ComeApartFromTheLowByteUp)
{
    EXPECT_EQ(MainModule::ColourRed(0x0080FF), 255);
    EXPECT_EQ(MainModule::ColourGreen(0x0080FF), 128);
    EXPECT_EQ(MainModule::ColourBlue(0x0080FF), 0);
    EXPECT_EQ(MainModule::ColourBlue(0xFFFFFF), 255);
    for (const std::int32_t wrong : {-1, 0x1000000, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(MainModule::ColourRed(wrong), -1);
        EXPECT_EQ(MainModule::ColourGreen(wrong), -1);
        EXPECT_EQ(MainModule::ColourBlue(wrong), -1);
    }
}

TEST(ContrastColour, OfAnInvalidColourIsWhite)
{
    EXPECT_EQ(MainModule::ContrastColour(-1), 16777215);
    EXPECT_EQ(MainModule::ContrastColour(0x1000000), 16777215);
}

TEST(ContrastColour, TurnsBlackAtAWeightOf401)
{
    EXPECT_EQ(MainModule::ContrastColour(0x000000), 16777215);
    EXPECT_EQ(MainModule::ContrastColour(0xFFFFFF), 0);
    EXPECT_EQ(MainModule::ContrastColour(0x005000), 16777215) << "weight 400";
    EXPECT_EQ(MainModule::ContrastColour(0x015000), 0) << "weight 401";
    EXPECT_EQ(MainModule::ContrastColour(0x0000C8), 16777215) << "weight 400";
    EXPECT_EQ(MainModule::ContrastColour(0x0000FF), 0) << "weight 510";
    EXPECT_EQ(MainModule::ContrastColour(0xFF0000), 16777215) << "weight 255";
    EXPECT_EQ(MainModule::penLabelTextColour(0x005000), 0xFFFFFFu);
    EXPECT_EQ(MainModule::penLabelTextColour(0x015000), 0u);
}

TEST(StatusTexts, AreTheDecimalTextAndTheUnit)
{
    EXPECT_EQ(MainModule::frequencyText(1000), QStringLiteral("1000 Hz"));
    EXPECT_EQ(MainModule::frequencyText(0.1), QStringLiteral("0.1 Hz"));
    EXPECT_EQ(MainModule::pointsText(1024), QStringLiteral("1024 pts"));
    EXPECT_EQ(MainModule::millisecondsText(2.5), QStringLiteral("2.5 mS"));
    EXPECT_EQ(MainModule::decibelText(-12.25), QStringLiteral("-12.25 dB"));
    EXPECT_EQ(MainModule::BoolToDigit(true), 1);
    EXPECT_EQ(MainModule::BoolToDigit(false), 0);
}

TEST(Version, IsMadeOfItsThreeNumbers)
{
    EXPECT_EQ(MainModule::versionText(), QStringLiteral("%1.%2.%3")
                                             .arg(MainModule::versionMajor())
                                             .arg(MainModule::versionMinor())
                                             .arg(MainModule::versionRevision()));
    EXPECT_GE(MainModule::versionMajor(), 1);
}

class RecordedMessages : public UserMessages
{
public:
    int message(const QString& strMessage, int style, const QString& strTitle) override
    {
        text = strMessage;
        title = strTitle;
        lastStyle = style;
        ++count;
        return reply;
    }
    int systemBox(const QString&, int, const QString&) override { return ReplyNone; }

    QString text;
    QString title;
    int lastStyle = -1;
    int count = 0;
    int reply = ReplyNo;
};

TEST(QuestionOverwriteFile, AsksOnlyWhenTheFileExists)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plot 100%1.txt"));
    RecordedMessages messages;
    EXPECT_TRUE(MainModule::QuestionOverwriteFile(path, messages));
    EXPECT_EQ(messages.count, 0);

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_FALSE(MainModule::QuestionOverwriteFile(path, messages));
    EXPECT_EQ(messages.count, 1);
    EXPECT_EQ(messages.lastStyle, UserMessages::YesNo + UserMessages::Question);
    EXPECT_EQ(messages.title, QStringLiteral("Overwrite existing?"));
    EXPECT_EQ(messages.text, QStringLiteral("The file \"%1\" already exists.\nDo you want to replace it?").arg(path));

    messages.reply = UserMessages::ReplyYes;
    EXPECT_TRUE(MainModule::QuestionOverwriteFile(path, messages));
}

} // namespace
