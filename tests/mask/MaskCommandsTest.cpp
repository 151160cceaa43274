// SPDX-License-Identifier: GPL-3.0-or-later
// The menu's road to the mask test, its dialogs, and mask files.
#include "mask/MaskCommands.h"

#include "document/DocumentBench.h"
#include "mask/MaskTest.h"
#include "mask/maskline.h"
#include "program/CommandRegistry.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using mask::kLower;
using mask::kUpper;

namespace {

using namespace Qt::StringLiterals;

class MaskCommandsTest : public ::testing::Test
{
protected:
    MaskCommandsTest()
    {
        registry.setConditions({.document = true, .instrument = false, .testRuns = false, .viewOnly = false});
    }
    void set(int pen, int point, float x, float y) { document->peGraph().setPoint(pen, point, x, y); }
    /// Limits of 10 and 5 Ohm from 100 to 200 Hz.
    void setMask()
    {
        maskline(*document, bench.preferences).enable();
        for (const auto& [pen, limit] : {std::pair(kUpper, 10.0F), std::pair(kLower, 5.0F)}) {
            set(pen, 0, 100, limit);
            set(pen, 1, 200, limit);
        }
    }
    bool run(const char* name) { return registry.trigger(QLatin1String(name)); }
    /// The one message since the last call.
    RecordingMessages::Shown told()
    {
        EXPECT_EQ(bench.messages.shown.size(), 1U);
        auto shown = bench.messages.shown.empty() ? RecordingMessages::Shown{} : bench.messages.shown.front();
        bench.messages.shown.clear();
        return shown;
    }
    QByteArray content(const QString& name)
    {
        QFile file(bench.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(bench.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    DocumentBench bench;
    CommandRegistry registry;
    MaskCommands commands{{registry, bench.active, bench.preferences, bench.messages, bench.picker}};
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
};

TEST_F(MaskCommandsTest, WithoutADocumentNothingHappens)
{
    bench.active.set(nullptr);
    commands.mnuCheckMask_Click();
    commands.mnuMaskRead_Click();
    commands.mnuMaskSave_Click();
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_EQ(bench.picker.asked, 0);
}

TEST_F(MaskCommandsTest, APlotOfALaterProgramIsNotTested)
{
    setMask();
    set(kUpper, 1, 50, 10);
    setNewerFormat(*document);
    ASSERT_TRUE(run("mnuCheckMask"));
    const auto message = told();
    EXPECT_EQ(message.text, "New data format. Please check for updates.");
    EXPECT_EQ(message.title, "Unable to perform mask test");
    EXPECT_EQ(message.style, UserMessages::Information);
}

TEST_F(MaskCommandsTest, TheOrderIsLookedAtBeforeTheMarker)
{
    set(kUpper, 0, 100, 10);
    set(kUpper, 1, 100, 10);
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "The mask data is not in incrementing order of frequency");
    EXPECT_EQ(message.title, "Mask Test Failure");
    EXPECT_EQ(message.style, UserMessages::Stop);
}

TEST_F(MaskCommandsTest, WithoutTheMarkerThereIsNoMask)
{
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "No mask data available");
    EXPECT_EQ(message.title, "Unable to perform mask test");
    EXPECT_EQ(message.style, UserMessages::Information);
}

TEST_F(MaskCommandsTest, TheMarkerIsReadWithoutRegardToCase)
{
    const TableScope scope(document->peGraph(), 1);
    document->peGraph().setTAText(0, 0, u"Mask"_s);
    run("mnuCheckMask");
    EXPECT_EQ(told().title, "Mask Test Skipped");
}

TEST_F(MaskCommandsTest, APenInsideIsToldWithItsMargin)
{
    setMask();
    document->setCurrentPen(2);
    set(2, 0, 150, 9.5F);
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "Pen 3 is within mask");
    EXPECT_EQ(message.title, "Mask Test Pass");
    EXPECT_EQ(message.style, UserMessages::Information);
    EXPECT_EQ(message.details, "Worst point: 150 Hz, 9.5 Ohm; upper limit 10 Ohm\nMargin: 0.5 Ohm");
}

TEST_F(MaskCommandsTest, APenOutsideIsToldWithItsWorstPoint)
{
    setMask();
    set(0, 0, 120, 4);
    set(0, 1, 150, 3);
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "Pen 1 is not within mask");
    EXPECT_EQ(message.title, "Mask Test Failure");
    EXPECT_EQ(message.style, UserMessages::Stop);
    EXPECT_EQ(message.details, "Worst point: 150 Hz, 3 Ohm; lower limit 5 Ohm\nOutside by 2 Ohm");
}

TEST_F(MaskCommandsTest, APenThatNothingLimitsIsInside)
{
    setMask();
    set(0, 0, 50, 4);
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "Pen 1 is within mask");
    EXPECT_EQ(message.details, "No point of the pen has a limit.");
}

TEST_F(MaskCommandsTest, APenWithoutDataIsSkipped)
{
    setMask();
    run("mnuCheckMask");
    const auto message = told();
    EXPECT_EQ(message.text, "Pen 1 contains no data");
    EXPECT_EQ(message.title, "Mask Test Skipped");
    EXPECT_EQ(message.style, UserMessages::Stop);
    EXPECT_EQ(message.details, "");
}

TEST_F(MaskCommandsTest, AMaskSavedFromOneGraphIsReadByAnother)
{
    setMask();
    bench.picker.answer = bench.path(u"good"_s);
    ASSERT_TRUE(run("mnuMaskSave"));
    EXPECT_EQ(bench.picker.name, "Document 1.mgm");
    EXPECT_EQ(content(u"good.mgm"_s), "# Mask lines of MarrowickGraph\nfrequency_Hz\tupper_Ohm\tlower_Ohm\n"
                                      "100\t10\t5\n200\t10\t5\n");
    const auto other = bench.document(PenDocument::Impedance);
    bench.picker.answer = bench.path(u"good.mgm"_s);
    ASSERT_TRUE(run("mnuMaskRead"));
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_TRUE(other->hasMasks());
    EXPECT_EQ(other->peGraph().XData(kLower, 1), 200);
    EXPECT_EQ(other->peGraph().YData(kLower, 1), 5);
}

TEST_F(MaskCommandsTest, SavingAsksBeforeItReplacesAFile)
{
    setMask();
    write(u"good.mgm"_s, "mine");
    bench.picker.answer = bench.path(u"good.mgm"_s);
    bench.messages.replies = {UserMessages::ReplyNo};
    run("mnuMaskSave");
    EXPECT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(content(u"good.mgm"_s), "mine");
    bench.messages.replies = {UserMessages::ReplyYes};
    run("mnuMaskSave");
    EXPECT_TRUE(content(u"good.mgm"_s).contains("upper_Ohm"));
}

TEST_F(MaskCommandsTest, AMaskThatCannotBeWrittenIsTold)
{
    setMask();
    bench.picker.answer = bench.path(u"missing/good.mgm"_s);
    run("mnuMaskSave");
    const auto message = told();
    EXPECT_EQ(message.title, "Save Mask");
    EXPECT_TRUE(message.text.contains(u"good.mgm"_s));
}

TEST_F(MaskCommandsTest, OnlyAMaskInOrderIsSaved)
{
    run("mnuMaskSave");
    EXPECT_EQ(told().text, "No mask data available");
    setMask();
    set(kUpper, 1, 100, 10);
    run("mnuMaskSave");
    EXPECT_EQ(told().text, "The mask data is not in incrementing order of frequency");
    EXPECT_EQ(bench.picker.asked, 0);
}

TEST_F(MaskCommandsTest, ReadingAsksBeforeItTakesData)
{
    write(u"a.mgm"_s, "frequency_Hz upper_Ohm lower_Ohm\n100 10 5\n");
    bench.picker.answer = bench.path(u"a.mgm"_s);
    set(kLower, 0, 100, 1);
    bench.messages.replies = {UserMessages::ReplyCancel};
    run("mnuMaskRead");
    const auto message = told();
    EXPECT_EQ(message.title, "Read Mask");
    EXPECT_EQ(message.text, "The mask takes the place of what pens 9 and 10 hold.");
    EXPECT_EQ(message.style, UserMessages::OkCancel | UserMessages::Question);
    EXPECT_FALSE(document->hasMasks());
    EXPECT_EQ(document->peGraph().YData(kLower, 0), 1);
    bench.messages.replies = {UserMessages::ReplyOk};
    run("mnuMaskRead");
    EXPECT_TRUE(document->hasMasks());
    EXPECT_EQ(document->peGraph().YData(kLower, 0), 5);
}

TEST_F(MaskCommandsTest, AFileThatIsNoMaskIsRefusedAndChangesNothing)
{
    write(u"a.mgm"_s, "frequency_Hz upper_dB lower_dB\n100 10 5\n");
    bench.picker.answer = bench.path(u"a.mgm"_s);
    run("mnuMaskRead");
    const auto message = told();
    EXPECT_EQ(message.title, "Read Mask");
    EXPECT_EQ(message.text, bench.path(u"a.mgm"_s) + u", line 1: the limits are not in Ohm, which this plot needs."_s);
    EXPECT_FALSE(document->hasMasks());
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(MaskCommandsTest, AReactanceGraphHasNoMasks)
{
    const auto reactance = bench.document(PenDocument::Reactance);
    run("mnuMaskRead");
    EXPECT_EQ(told().text, "Only amplitude and impedance graphs have masks.");
    run("mnuMaskSave");
    EXPECT_EQ(told().text, "Only amplitude and impedance graphs have masks.");
    EXPECT_EQ(bench.picker.asked, 0);
}

TEST_F(MaskCommandsTest, ADocumentClosedWhileTheFileIsChosenIsLeftAlone)
{
    write(u"a.mgm"_s, "frequency_Hz upper_Ohm lower_Ohm\n100 10 5\n");
    bench.picker.answer = bench.path(u"a.mgm"_s);
    set(kLower, 0, 100, 1);
    bench.messages.whileShowing = [this] { document.reset(); };
    run("mnuMaskRead");
    EXPECT_EQ(document, nullptr);
}

} // namespace
