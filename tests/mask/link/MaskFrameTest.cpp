// SPDX-License-Identifier: GPL-3.0-or-later
// The mask test of a script: frame "q", its dialogs and its stop.
#include "mask/link/MaskFrame.h"

#include "link/LinkFixture.h"
#include "mask/maskline.h"

using frametext::numbers;

namespace {

using namespace Qt::StringLiterals;

class MaskFrameTest : public LinkFixture
{
protected:
    void SetUp() override
    {
        setting("Prompts", "OpenSettings", 0);
        connectDevice();
        document = makeDocument(PenDocument::Impedance);
        activate(document);
        maskline(*document, preferences).enable();
        set(mask::kUpper, 0, 100, 10);
        set(mask::kUpper, 1, 200, 10);
        set(kInside, 0, 150, 9);
        set(kOutside, 0, 150, 11);
        peer().takeWritten();
        messages.shown.clear();
    }
    static constexpr int kInside = 1, kOutside = 2, kEmpty = 3;

    void set(int pen, int point, float x, float y) { document->peGraph().setPoint(pen, point, x, y); }
    /// What is told and written: switches of the pass and the failure, and the action.
    void ask(int pen, int tellPass, int tellFail, int action)
    {
        messages.shown.clear();
        send(numbers('q', static_cast<char>('0' + pen), tellPass, tellFail, action));
    }
    QByteArray bytes() { return peer().takeWritten(); }
    QStringList told()
    {
        QStringList texts;
        for (const auto& message : messages.shown)
            texts << message.title + u": "_s + message.text;
        return texts;
    }

    MaskFrame frame{module};
    std::unique_ptr<PenDocument> document;
};

TEST_F(MaskFrameTest, TheActionStopsAtAFailureOrAtAPassOrNever)
{
    struct Row
    {
        int pen, action;
        const char* written;
    };
    const Row rows[] = {{kInside, 0, ""},      {kOutside, 0, ""}, {kEmpty, 0, ""},      {kInside, 1, ""},
                        {kOutside, 1, " y\r"}, {kEmpty, 1, ""},   {kInside, 2, " y\r"}, {kOutside, 2, ""},
                        {kEmpty, 2, " y\r"},   {kInside, 3, ""},  {kOutside, 3, ""},    {kEmpty, 3, ""}};
    for (const Row& row : rows) {
        ask(row.pen, 0, 0, row.action);
        EXPECT_EQ(bytes(), row.written) << row.pen << ' ' << row.action;
        EXPECT_TRUE(messages.shown.empty());
    }
}

TEST_F(MaskFrameTest, EachMessageHasItsSwitch)
{
    ask(kInside, 0, 1, 0);
    EXPECT_EQ(told(), QStringList());
    ask(kOutside, 1, 0, 0);
    EXPECT_EQ(told(), QStringList());
    ask(kEmpty, 0, 1, 0);
    EXPECT_EQ(told(), QStringList());
    ask(kInside, 1, 0, 0);
    EXPECT_EQ(messages.shown.at(0).style, UserMessages::Information);
    ask(kOutside, 0, 1, 0);
    EXPECT_EQ(messages.shown.at(0).style, UserMessages::Stop);
    EXPECT_EQ(messages.shown.at(0).details, "Worst point: 150 Hz, 11 Ohm; upper limit 10 Ohm\nOutside by 1 Ohm");
    EXPECT_EQ(bytes(), "");
}

TEST_F(MaskFrameTest, AFailureIsToldOfThePenTestedAndAPassOfThePenInUse)
{
    document->setCurrentPen(0);
    ask(kOutside, 1, 1, 0);
    EXPECT_EQ(told(), QStringList(u"Mask Test Failure: Pen 3 is not within mask"_s));
    ask(kInside, 1, 1, 0);
    EXPECT_EQ(told(), QStringList(u"Mask Test Pass: Pen 1 is within mask"_s));
    ask(kEmpty, 1, 1, 0);
    EXPECT_EQ(told(), QStringList(u"Mask Test Skipped: Pen 1 contains no data"_s));
}

TEST_F(MaskFrameTest, TheMarkerIsLookedAtBeforeTheOrderAndExactly)
{
    set(mask::kUpper, 1, 50, 10);
    {
        const TableScope scope(document->peGraph(), 1);
        document->peGraph().setTAText(0, 0, u"Mask"_s);
    }
    ask(kOutside, 1, 1, 1);
    EXPECT_EQ(told(), QStringList(u"Unable to perform mask test: No mask data available"_s));
    EXPECT_EQ(bytes(), "");
}

TEST_F(MaskFrameTest, AMaskOutOfOrderIsToldAndAnswersNothing)
{
    set(mask::kUpper, 1, 100, 10);
    ask(kOutside, 0, 0, 1);
    EXPECT_EQ(told(), QStringList(u"Mask Test Failure: The mask data is not in incrementing order of frequency"_s));
    EXPECT_EQ(bytes(), "");
}

TEST_F(MaskFrameTest, WithoutADocumentNothingIsToldOrWritten)
{
    window.active = nullptr;
    ask(kOutside, 1, 1, 1);
    EXPECT_EQ(told(), QStringList());
    EXPECT_EQ(bytes(), "");
}

TEST_F(MaskFrameTest, EachDialogTakesDownTheOneBefore)
{
    ask(kOutside, 0, 0, 1);
    EXPECT_EQ(messages.dismissed, 0);
    ask(kOutside, 0, 1, 0);
    EXPECT_EQ(messages.dismissed, 1);
    set(mask::kUpper, 1, 100, 10);
    ask(kOutside, 0, 0, 0);
    EXPECT_EQ(messages.dismissed, 2);
}

TEST_F(MaskFrameTest, APenThatIsNoneHoldsNoData)
{
    for (const char code : {'A', '9'}) {
        messages.shown.clear();
        send(numbers('q', code, 0, 1, 1));
        EXPECT_EQ(told(), QStringList());
    }
    EXPECT_EQ(bytes(), "");
}

TEST_F(MaskFrameTest, ADocumentClosedUnderTheDialogIsNotTouched)
{
    messages.whileShowing = [this] { document.reset(); };
    ask(kOutside, 0, 1, 1);
    EXPECT_EQ(document, nullptr);
    EXPECT_EQ(bytes(), " y\r");
}

} // namespace
