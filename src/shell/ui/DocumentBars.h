// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>

class CommandRegistry;
class KorvaLink;
class PenBar;
class PenDocument;
class StatusBar;
struct ProgramState;

/// What the main window shows of its active document and of the instrument: pen bar, panels 2, 11 and 12, and the
/// states of the commands. All of it follows from the document, the link and the program's state; nobody sets a state
/// by hand.
class DocumentBars
{
public:
    /// All of it outlives the object.
    DocumentBars(CommandRegistry& commands, PenBar& penBar, StatusBar& statusBar, const KorvaLink& device,
                 const ProgramState& state);

    /// Another document is active, or none.
    void setDocument(PenDocument* document);
    /// The document has changed; one that is not the active document changes nothing but its own popup.
    void refresh(PenDocument& document);
    /// All of it anew.
    void refresh();
    /// The link or the test run has changed.
    void updateConditions();
    void setTestRuns(bool runs);
    /// Panels 11 and 12.
    void showCursor(const QString& xText, const QString& yText);

private:
    void rest();
    void showPens(PenDocument& document);
    void showCommands(PenDocument& document);

    CommandRegistry& m_commands;
    PenBar& m_penBar;
    StatusBar& m_statusBar;
    const KorvaLink& m_device;
    const ProgramState& m_state;
    QPointer<PenDocument> m_document;
    bool m_testRuns = false;
};
