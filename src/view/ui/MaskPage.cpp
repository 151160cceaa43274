// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/MaskPage.h"

#include "program/UserMessages.h"
#include "view/ui/Controls.h"
#include "view/ui/NumberEdit.h"
#include "view/ui/frmMaskOffset.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

using namespace viewcontrols;
using mask::kLower;
using mask::kUpper;

MaskPage::MaskPage(PenDocument& document, Preferences& preferences, UserMessages& messages, QWidget* parent)
    : QWidget(parent)
    , m_document(&document)
    , m_messages(messages)
    , m_line(document, preferences)
    , chkEnableMasks(named(new QCheckBox(tr("Sho&w mask lines")), "chkEnableMasks"))
    , m_editors{makeEditor(kUpper, tr("Pen 9 - Upper Mask Data Entry"), "fUpperMask"),
                makeEditor(kLower, tr("Pen 10 - Lower Mask Data Entry"), "frmLowerMask")}
{
    QGroupBox* const box = frame(tr("Graph masks"), "fGraphMasks", this);
    box->layout()->addWidget(chkEnableMasks);
    for (const Editor& editor : m_editors)
        box->layout()->addWidget(editor.frame);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(box);
    connect(chkEnableMasks, &QCheckBox::clicked, this, &MaskPage::chkEnableMasks_Click);
    m_line.maskLoadIndices();
    refresh();
}

MaskPage::Editor MaskPage::makeEditor(int pen, const QString& title, const char* frameName)
{
    const bool upper = pen == kUpper;
    auto* const box = named(new QGroupBox(title, this), frameName);
    const auto edit = [box, pen, title](const char* name, const QString& caption) {
        auto* const made = named(new NumberEdit(keyfilter::mask, box), name, pen);
        made->setAccessibleName(title + QStringLiteral(": ") + caption);
        return made;
    };
    Editor editor{pen,
                  box,
                  named(new QLabel(box), "lblPointIndex", pen),
                  named(new QLabel(m_line.dataPointLabel(), box), "lblDataPoint", pen),
                  edit("txtUpperMaskFrequency", tr("Frequency in Hz")),
                  edit("txtUpperMaskDataPoint", withoutAccessKey(m_line.dataPointLabel()))};
    auto* const lblFrequency =
        named(new QLabel(upper ? tr("&Frequency in Hz:") : tr("Fre&quency in Hz:"), box), "lblMaskFrequency", pen);
    lblFrequency->setBuddy(editor.txtUpperMaskFrequency);
    auto* const lblStep = named(new QLabel(tr("Step"), box), "lblStep", pen);
    const auto make = [&](const char* name, const QString& text, const QString& spoken, auto action) {
        auto* const made = button(box, QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(pen), text, action);
        made->setAccessibleName(title + QStringLiteral(": ") + spoken);
        made->setToolTip(spoken);
        return made;
    };
    // The editors are where they stay by the time anything is pressed.
    const std::size_t index = upper ? 0 : 1;
    auto* const back = make("cmdUpperMaskStepBack", upper ? tr("&<") : QStringLiteral("<"), tr("Point before"),
                            [this, index] { step(m_editors[index], -1); });
    auto* const forward = make("cmdUpperMaskStepFwd", upper ? tr("&>") : QStringLiteral(">"), tr("Next point"),
                               [this, index] { step(m_editors[index], 1); });
    auto* const shift = make("cmdShiftUp", upper ? tr("Sh&ift line...") : tr("Shift &line..."),
                             tr("Shift the whole line"), [this, index] { cmdShiftUp_Click(m_editors[index]); });
    for (NumberEdit* changed : {editor.txtUpperMaskFrequency, editor.txtUpperMaskDataPoint}) {
        connect(changed, &QLineEdit::editingFinished, this, [this, index, changed] {
            if (changed->isModified())
                store(m_editors[index]);
        });
    }
    connect(editor.txtUpperMaskFrequency, &NumberEdit::entered, this, [this, index] {
        store(m_editors[index]);
        m_editors[index].txtUpperMaskDataPoint->setFocus();
    });
    connect(editor.txtUpperMaskDataPoint, &NumberEdit::entered, this, [this, index] {
        step(m_editors[index], 1);
        m_editors[index].txtUpperMaskFrequency->setFocus();
    });

    // The arrows need no more room than their labels, the numbers do.
    const int digit = fontMetrics().averageCharWidth();
    for (QPushButton* arrow : {back, forward})
        arrow->setMaximumWidth(8 * digit);
    for (NumberEdit* number : {editor.txtUpperMaskFrequency, editor.txtUpperMaskDataPoint})
        number->setMinimumWidth(16 * digit);

    auto* const grid = new QGridLayout(box);
    grid->addWidget(editor.lblPointIndex, 0, 0, 1, 2);
    grid->addWidget(lblStep, 0, 2);
    grid->addWidget(back, 0, 3);
    grid->addWidget(forward, 0, 4);
    grid->addWidget(lblFrequency, 1, 0);
    grid->addWidget(editor.txtUpperMaskFrequency, 1, 1, 1, 2);
    grid->addWidget(shift, 1, 3, 1, 2);
    grid->addWidget(editor.lblDataPoint, 2, 0);
    grid->addWidget(editor.txtUpperMaskDataPoint, 2, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    return editor;
}

void MaskPage::refresh()
{
    const bool on = m_line.isOn();
    chkEnableMasks->setChecked(on);
    maskEnableControls(on);
    for (const Editor& editor : m_editors) {
        if (!editor.txtUpperMaskFrequency->isModified() && !editor.txtUpperMaskDataPoint->isModified())
            maskShowPoint(editor);
    }
}

void MaskPage::save()
{
    if (m_line.isOn())
        m_line.maskSaveIndices();
}

void MaskPage::chkEnableMasks_Click(bool on)
{
    const QPointer<MaskPage> self(this);
    if (!on)
        m_line.disable();
    else if (m_messages.message(tr("Enable pen 9 and 10 masks?"), UserMessages::OkCancel | UserMessages::Question,
                                tr("Erase pen 9 10 Data")) == UserMessages::ReplyOk &&
             self)
        m_line.enable();
    if (self)
        refresh();
}

void MaskPage::maskEnableControls(bool enabled)
{
    for (const Editor& editor : m_editors)
        editor.frame->setEnabled(enabled);
}

void MaskPage::maskShowPoint(const Editor& editor)
{
    const maskline::Texts texts = m_line.maskShowPoint(editor.pen);
    editor.lblPointIndex->setText(texts.pointIndex);
    editor.txtUpperMaskFrequency->setText(texts.frequency);
    editor.txtUpperMaskDataPoint->setText(texts.value);
}

void MaskPage::store(const Editor& editor)
{
    const QString frequency = editor.txtUpperMaskFrequency->text(), value = editor.txtUpperMaskDataPoint->text();
    // What is stored shows itself anew.
    editor.txtUpperMaskFrequency->setModified(false);
    editor.txtUpperMaskDataPoint->setModified(false);
    const QPointer<MaskPage> self(this);
    m_line.storeTexts(frequency, value, editor.pen);
    if (self)
        maskShowPoint(editor);
}

void MaskPage::step(const Editor& editor, int by)
{
    store(editor);
    m_line.step(editor.pen, by);
    maskShowPoint(editor);
}

void MaskPage::cmdShiftUp_Click(const Editor& editor)
{
    const QPointer<MaskPage> self(this);
    double offset = 0;
    frmMaskOffset::GetOffset(
        window(), editor.pen == kUpper ? tr("Enter upper mask offset") : tr("Enter lower mask offset"), offset);
    if (!self)
        return;
    m_line.maskShift(editor.pen, offset);
    for (const Editor& each : m_editors)
        maskShowPoint(each);
}
