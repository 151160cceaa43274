// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/IniText.h"

#include <gtest/gtest.h>
#include <random>

namespace {

QString s(const char16_t* text)
{
    return QString::fromUtf16(text);
}

TEST(IniText, ReadsSectionsKeysAndComments)
{
    const auto text =
        IniText::parse("\xEF\xBB\xBF; by hand\n# too\n  [Paths]  \r\n Manual = /usr/share/a b.pdf \r\n\nEmpty=\n"
                       "[General]\nx=1\nx=2=3\n");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->value(s(u"Paths"), s(u"Manual")), s(u"/usr/share/a b.pdf"));
    EXPECT_EQ(text->value(s(u"Paths"), s(u"Empty")), s(u""));
    EXPECT_EQ(text->value(s(u"General"), s(u"x")), s(u"2=3")) << "the last value counts";
    EXPECT_FALSE(text->value(s(u"paths"), s(u"Manual")));
    EXPECT_FALSE(text->value(s(u"Paths"), s(u"manual")));
}

TEST(IniText, TakesABackslashForItselfBeforeUnknownLetters)
{
    const auto text = IniText::parse("[P]\na=C:\\Plots\\\nb=\\\\server\\u12\nc=\\u03a9\n");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->value(s(u"P"), s(u"a")), s(u"C:\\Plots\\"));
    EXPECT_EQ(text->value(s(u"P"), s(u"b")), s(u"\\server\\u12"));
    EXPECT_EQ(text->value(s(u"P"), s(u"c")), s(u"\u03a9"));
}

TEST(IniText, ReadsWhatItWritesOfOddLineEnds)
{
    for (const QByteArray& bytes : {QByteArray("==\r\r"), QByteArray("a=\r \r\nb=\t\r"), QByteArray("\r[A]\r\r\n\r")}) {
        const auto text = IniText::parse(bytes);
        ASSERT_TRUE(text);
        const auto again = IniText::parse(text->bytes());
        ASSERT_TRUE(again);
        EXPECT_EQ(again->bytes(), text->bytes());
        EXPECT_EQ(again->value(s(u""), s(u"a")), text->value(s(u""), s(u"a")));
        EXPECT_EQ(again->value(s(u""), s(u"")), text->value(s(u""), s(u"")));
    }
}

TEST(IniText, RefusesDamage)
{
    EXPECT_FALSE(IniText::parse(QByteArray("[A]\nb=1\0\n", 9)));
    EXPECT_FALSE(IniText::parse("[A]\nb=\xff\xfe\n"));
    EXPECT_FALSE(IniText::parse("[A]\nno equals sign\n"));
    EXPECT_FALSE(IniText::parse("[A\n"));
    EXPECT_FALSE(IniText::parse(QByteArray(4096, '\0')));
    EXPECT_TRUE(IniText::parse(""));
    EXPECT_TRUE(IniText::parse("\n\n"));
    EXPECT_TRUE(IniText::parse("[A]\nb=1")) << "a file made by hand may lack the last line end";
}

TEST(IniText, KnowsItsOwnFileCutShort)
{
    IniText text;
    text.setValue(s(u"Sweep"), s(u"dblEndFrequency"), s(u"1000000"));
    text.setValue(s(u"Sweep"), s(u"iNumPoints"), s(u"1024"));
    const QByteArray whole = text.bytes();
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const auto read = IniText::parse(whole.first(size));
        if (!read)
            continue;
        for (const char16_t* key : {u"dblEndFrequency", u"iNumPoints"}) {
            const auto value = read->value(s(u"Sweep"), s(key));
            EXPECT_TRUE(!value || value == text.value(s(u"Sweep"), s(key))) << "a cut value at " << size;
        }
    }
    for (qsizetype size = whole.indexOf('\n'); size < whole.size() - 1; ++size)
        EXPECT_FALSE(IniText::parse(whole.first(size))) << size;
    EXPECT_TRUE(IniText::parse(whole.first(whole.size() - 1)));
}

TEST(IniText, KeepsCommentsAndOrder)
{
    auto text = IniText::parse("; mine\n[A]\nx=1\n; note\n\n[B]\ny=2\n");
    ASSERT_TRUE(text);
    text->setValue(s(u"A"), s(u"x"), s(u"5"));
    text->setValue(s(u"A"), s(u"z"), s(u"6"));
    text->setValue(s(u"C"), s(u"k"), s(u"7"));
    text->setValue(s(u"B"), s(u"y2"), s(u"8"));
    text->setValue(s(u""), s(u"top"), s(u"9"));
    const QByteArray bytes = text->bytes();
    EXPECT_TRUE(bytes.contains("\ntop=9\n; mine\n[A]\nx=5\nz=6\n; note\n\n[B]\ny=2\ny2=8\n\n[C]\nk=7\n"))
        << bytes.constData();
    const auto again = IniText::parse(bytes);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->bytes(), bytes);
    EXPECT_EQ(again->value(s(u""), s(u"top")), s(u"9"));
}

TEST(IniText, BringsAnyTextBackAsSectionKeyAndValue)
{
    const QStringList nasty{s(u""),
                            s(u" "),
                            s(u"  lead and trail  "),
                            s(u"\t"),
                            s(u"\n"),
                            s(u"\r\n"),
                            s(u"a\nb\rc\td"),
                            s(u"\\"),
                            s(u"\\n"),
                            s(u"\\\\server\\share\\"),
                            s(u"%"),
                            s(u"%20"),
                            s(u"100 %"),
                            s(u"@Invalid()"),
                            s(u"@ByteArray(x)"),
                            s(u"@@"),
                            s(u"a,b,c"),
                            s(u"\"quoted\""),
                            s(u"\""),
                            s(u";comment"),
                            s(u"#comment"),
                            s(u"[section]"),
                            s(u"]"),
                            s(u"["),
                            s(u"a=b"),
                            s(u"="),
                            s(u"General"),
                            s(u"general"),
                            s(u"a/b"),
                            s(u"/"),
                            s(u"\u03a9 \u00e4\u00f6\u00fc \U0001F39B"),
                            s(u"\u2028\u2029\u0085\u00a0"),
                            QString(QChar(0xFEFF)),
                            s(u"\u0001\u001f\u007f"),
                            QString(QChar(0xD800)),
                            QString(QChar(0xDC00)) + QChar(0xD83C),
                            QString(QChar(u'\0')),
                            s(u"; end of settings"),
                            QString(5000, u'x')};
    IniText text;
    for (int i = 0; i < nasty.size(); ++i) {
        for (int j = 0; j < nasty.size(); ++j)
            text.setValue(nasty[i], nasty[j], nasty[(i + j) % nasty.size()]);
    }
    const auto read = IniText::parse(text.bytes());
    ASSERT_TRUE(read);
    for (int i = 0; i < nasty.size(); ++i) {
        for (int j = 0; j < nasty.size(); ++j)
            ASSERT_EQ(read->value(nasty[i], nasty[j]), nasty[(i + j) % nasty.size()]) << i << " " << j;
    }
}

TEST(IniText, BringsRandomTextsBack)
{
    std::mt19937 random(11);
    const auto text = [&random] {
        QString result;
        for (auto left = random() % 12; left > 0; --left) {
            const auto kind = random() % 4;
            result += kind == 0   ? QChar(static_cast<char16_t>(random() % 0x10000))
                      : kind == 1 ? QChar(u" \t\n\r\\=[];#\"u0s"[random() % 14])
                                  : QChar(static_cast<char16_t>(0x20 + random() % 0x60));
        }
        return result;
    };
    for (int round = 0; round < 300; ++round) {
        IniText ini;
        QHash<QPair<QString, QString>, QString> expected;
        for (int i = 0; i < 20; ++i) {
            const QString section = text();
            const QString key = text();
            const QString value = text();
            ini.setValue(section, key, value);
            expected.insert({section, key}, value);
        }
        const auto read = IniText::parse(ini.bytes());
        ASSERT_TRUE(read);
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            ASSERT_EQ(read->value(it.key().first, it.key().second), it.value());
    }
}

} // namespace
