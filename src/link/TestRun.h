// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

#include <QObject>

class DeviceModule;
class PenDocument;
struct InstrumentMirror;

/// The user's side of a test: start, stop, repeat, and the questions before them. It only commands; the instrument's
/// messages change the state. frmMain forwards its commands to it.
///
/// Every question, chooser and wait here runs a nested event loop. What is needed behind it is looked up again: when
/// the document or the link is gone, the command ends silently. A start that is asked for while another one is still
/// asking is ignored. Lives as long as DeviceModule.
class TestRun : public QObject
{
    Q_OBJECT

public:
    explicit TestRun(DeviceModule& device, QObject* parent = nullptr);

    void mnuTestStart_Click();
    void mnuTestStopTest_Click();
    /// bfChecked: the state of the item before the click.
    void mnuTestRepeat_Click(bool bfChecked);

    /// "Abort test?": false when the test was stopped, true when it goes on and the caller gives up its own action.
    bool QuestionTestCancel();

    /// Opens the first of ten device indices that can be opened. False: none could; nothing is said.
    bool OpenFirstDeviceFound();

    /// Sends the limits of the settings dialog that differ from the instrument's, if the sweep follows the graph's
    /// extents.
    void SendSweepRange();
    /// Milliseconds of each of the waits that a start gives the answer to "enquire", at least kAnswerRounds and as long
    /// as AnswerWatch has one to come; 5 unless set.
    void setAnswerWait(int milliseconds) { m_answerWait = milliseconds; }
    static constexpr int kAnswerRounds = 51;

private:
    /// Connects if needed and waits until the instrument has told its state. False: no link.
    bool ensureConnected();
    void restoreWanted(const InstrumentMirror& wanted);
    bool QuestionOverwritePen(PenDocument& document);
    void startTest();
    void endMonitor();
    void writeTestSettings();
    int tell(const QString& text, int style, const QString& title);

    DeviceModule& m_device;
    LinkContext m_context;
    bool m_starting = false;
    int m_answerWait = 5;
};
