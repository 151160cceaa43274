// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mask/maskline.h"

#include <QWidget>

#include <array>

class NumberEdit;
class QCheckBox;
class QGroupBox;
class QLabel;
class UserMessages;

/// Switches masks on and off and edits both lines, one point at a time. A point goes to the graph when it is left.
class MaskPage : public QWidget
{
    Q_OBJECT

public:
    /// All of it outlives the page; the document may go.
    MaskPage(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent = nullptr);

    void refresh();
    /// The points on show are kept, where masks are on.
    void save();

private:
    struct Editor
    {
        int pen;
        QGroupBox* frame;
        QLabel *lblPointIndex, *lblDataPoint;
        NumberEdit *txtUpperMaskFrequency, *txtUpperMaskDataPoint;
    };
    Editor makeEditor(int pen, const QString& title, const char* frameName);
    void chkEnableMasks_Click(bool on);
    void maskEnableControls(bool enabled);
    void maskShowPoint(const Editor& editor);
    void store(const Editor& editor);
    void step(const Editor& editor, int by);
    void cmdShiftUp_Click(const Editor& editor);

    QPointer<PenDocument> m_document;
    UserMessages& m_messages;
    maskline m_line;
    QCheckBox* chkEnableMasks;
    std::array<Editor, 2> m_editors;
};
