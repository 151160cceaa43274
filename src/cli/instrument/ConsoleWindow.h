// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"

#include <QPointer>

#include <functional>

class PenDocument;

namespace cli {

/// The main window of a program without one: a single document is the active one, everything to be shown goes nowhere,
/// and the changes of state that a sweep waits for are told by callbacks.
class ConsoleWindow : public MainWindowPort
{
public:
    std::function<void()> onPlotting;   ///< the instrument has started the test
    std::function<void()> onViewing;    ///< the test has ended, or the link is gone
    std::function<void()> onNextPen;    ///< the turn went to the next pen: all points of the sweep have been sent
    std::function<void()> onEndProgram; ///< the instrument's script ends the program

    /// The document stays the caller's.
    void setActiveDocument(PenDocument* document);

    PenDocument* activeDocument() const override;
    void updateToolBars(PenDocument&) override {}
    void defaultToolBars() override {}
    void penShowCurrent(int iPenNumber) override;
    bool QuestionTestCancel() override { return false; }
    void UpdateQuickFileList(const QString&) override {}
    void removeDocument(const QString&) override {}
    void processEvents() override;

    void setPanel(int, std::string_view) override {}
    void setPenBarEnabled(bool enabled) override;
    void SetRepeatStatus(bool) override {}
    void penSetActive(int iPenNumber) override;
    void fileNew() override {}
    void mnuTestDevice_Click() override {}
    void mnuWindowCloseAll_Click() override {}
    void endProgram() override;
    void showSettings() override {}
    void unloadDeviceChooser() override {}
    void unloadDeviceWindows() override {}
    void showLoopView() override {}
    void refreshLoopView() override {}
    void closeLoopView() override {}
    bool firmwareWizardReadsVersion() const override { return false; }
    void showWizardVersion(const QString&) override {}

private:
    QPointer<PenDocument> m_document;
};

} // namespace cli
