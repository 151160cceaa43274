// SPDX-License-Identifier: GPL-3.0-or-later
// Frames that ask something of the program, and the table that finds their owners.
#include "DispatchFixture.h"

namespace {

using frametext::numbers;
using frametext::text;

class ProgramFramesTest : public DispatchFixture
{};

TEST_F(ProgramFramesTest, NoticeTShowsAPlainBoxBySeverity)
{
    send(text('T', '1', "Overload at the input.") + text('T', '0', "Self test passed."));
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_TRUE(messages.shown[0].system);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("**Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Overload at the input."));
    EXPECT_EQ(messages.shown[0].style, 16);
    EXPECT_TRUE(messages.shown[1].system);
    EXPECT_EQ(messages.shown[1].title, QStringLiteral("**Information"));
    EXPECT_EQ(messages.shown[1].style, 64);
}

TEST_F(ProgramFramesTest, MismatchNoticeTIsShownUnlessThePairIsKnownGood)
{
    const QByteArray mismatch = "Version number mismatch. The firmware may need upgrading.";
    send(text('T', '1', mismatch));
    EXPECT_EQ(messages.shown.size(), 1U);
    send(numbers('O', '0', 1, 23, 1, 1) + text('T', '1', mismatch));
    EXPECT_EQ(messages.shown.size(), 1U);
    send(text('T', '0', mismatch));
    EXPECT_EQ(messages.shown.size(), 2U);
}

TEST_F(ProgramFramesTest, ActivePenAIsTheUsersNumber)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    QList<int> pens;
    QObject::connect(document.get(), &PenDocument::currentPenChanged, [&](int pen) { pens << pen; });
    send(numbers('a', '1') + numbers('a', 'A') + numbers('a', '0'));
    EXPECT_EQ(pens, (QList<int>{0, 9}));
}

TEST_F(ProgramFramesTest, ExtentsWantedCSetsTheFlagAndReturnsToViewing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    document->gbfSendZoom = false;
    send(numbers('c', 'x'));
    EXPECT_TRUE(document->gbfSendZoom);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    startPlotting();
    send(numbers('c', '0'));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
}

TEST_F(ProgramFramesTest, EndOfProgramHClosesTheDocumentsFirst)
{
    send(numbers('h', '0'));
    EXPECT_EQ(window.calls, (QStringList{QStringLiteral("mnuWindowCloseAll_Click"), QStringLiteral("endProgram")}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ProgramFramesTest, ScriptStateK)
{
    send(numbers('k', '1'));
    EXPECT_TRUE(state.gbfScriptRunning);
    QList<bool> states;
    QObject::connect(&module.events(), &InstrumentEvents::scriptRunning, [&](bool running) { states << running; });
    send(numbers('k', '0'));
    EXPECT_FALSE(state.gbfScriptRunning);
    EXPECT_EQ(states, QList<bool>{false});
}

TEST_F(ProgramFramesTest, StateTextRFillsPanelOne)
{
    send(text('r', '0', " Calibrating "));
    EXPECT_EQ(panel(1), QStringLiteral("Calibrating"));
    send(text('r', '0', "\xb5V"));
    EXPECT_EQ(panel(1), QStringLiteral(u"\u00b5V"));
}

TEST_F(ProgramFramesTest, FrequencyCompensationT)
{
    send(numbers('t', '0', 1000123));
    EXPECT_EQ(mirror.dblFreqComp, 1000123);
    EXPECT_EQ(changed(), Parts{MirrorPart::FrequencyCompensation});
}

TEST_F(ProgramFramesTest, LoopViewUIsForImpedanceAndReactance)
{
    send(numbers('u', '1'));
    EXPECT_TRUE(window.calls.isEmpty());
    for (const std::int16_t type : {PenDocument::Amplitude, PenDocument::Impedance, PenDocument::Reactance}) {
        const auto document = makeDocument(type);
        activate(document);
        window.calls.clear();
        send(numbers('u', '1'));
        EXPECT_EQ(window.calls.contains(QStringLiteral("loop view wanted")), type != PenDocument::Amplitude) << type;
    }
    window.calls.clear();
    send(numbers('u', '0'));
    EXPECT_EQ(window.calls, QStringList{QStringLiteral("loop view ended")});
}

TEST_F(ProgramFramesTest, OwnersOfOtherCodesRegisterTheirHandlers)
{
    QStringList seen;
    for (const char code : QByteArray("UZbfgijmnopqvx"))
        module.registerHandler(code, [&seen](const Frame& frame) {
            seen << QString(QLatin1Char(frame.code())) + QLatin1Char(frame.selector()) + frame.text();
            return true;
        });
    send(text('U', '2', "title") + text('x', '0', "name"));
    EXPECT_EQ(seen, (QStringList{QStringLiteral("U2title"), QStringLiteral("x0name")}));
}

} // namespace
