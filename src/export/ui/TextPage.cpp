// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/TextPage.h"

#include "document/PenDocument.h"
#include "export/ExportNames.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"
#include "widgets/ui/ColourLabel.h"
#include "widgets/ui/ElidingLabel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

TextPage::TextPage(const ExportContext& context, PenDocument& document, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_document(&document)
{
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(buildPens());
    layout->addWidget(buildLayout());
    layout->addStretch();
    UpdateDialog();
}

QGroupBox* TextPage::buildPens()
{
    auto* const group = new QGroupBox(tr("Pens"), this);
    auto* const grid = new QGridLayout(group);
    constexpr int kRows = TextStore::kPens / 2;
    constexpr int kColumnsOfPen = 3;
    for (int pen = 0; pen < TextStore::kPens; ++pen) {
        const auto index = static_cast<std::size_t>(pen);
        optPenSelect[index] = new QRadioButton(tr("Pen %1").arg(pen + 1), group);
        lblColour[index] = new ColourLabel(group);
        lblColour[index]->setObjectName(QStringLiteral("lblColour_%1").arg(pen));
        lblColour[index]->setToolTip(tr("Double click to change colour"));
        lblColour[index]->setAccessibleName(tr("Colour of pen %1").arg(pen + 1));
        connect(lblColour[index], &ColourLabel::changeAsked, this, [this, pen] { Q_EMIT colourWanted(pen); });
        lblPen1[index] = new ElidingLabel(group);
        lblPen1[index]->setObjectName(QStringLiteral("lblPen1_%1").arg(pen));
        const int row = pen % kRows;
        const int column = pen / kRows * kColumnsOfPen;
        grid->addWidget(optPenSelect[index], row, column);
        grid->addWidget(lblColour[index], row, column + 1);
        grid->addWidget(lblPen1[index], row, column + 2);
        grid->setColumnStretch(column + 2, 1);
    }
    optPenSelect.back() = new QRadioButton(tr("Export all"), group);
    optPenSelect.back()->setChecked(true);
    grid->addWidget(optPenSelect.back(), kRows, 0, 1, 2 * kColumnsOfPen);
    for (std::size_t i = 0; i < optPenSelect.size(); ++i)
        optPenSelect[i]->setObjectName(QStringLiteral("optPenSelect_%1").arg(i));
    return group;
}

QGroupBox* TextPage::buildLayout()
{
    auto* const group = new QGroupBox(tr("Layout"), this);
    auto* const layout = new QVBoxLayout(group);
    optCommaDelimted = new QRadioButton(tr("Comma-delimited"), group);
    optCommaDelimted->setObjectName(QStringLiteral("optCommaDelimted"));
    optTABDelimited = new QRadioButton(tr("Tab-delimited"), group);
    optTABDelimited->setObjectName(QStringLiteral("optTABDelimited"));
    chkIncludeHeader = new QCheckBox(tr("Include test information header text"), group);
    chkIncludeHeader->setObjectName(QStringLiteral("chkIncludeHeader"));
    chkUnix = new QCheckBox(tr("Unix text file format"), group);
    chkUnix->setObjectName(QStringLiteral("chkUnix"));
    for (QWidget* control :
         std::initializer_list<QWidget*>{optCommaDelimted, optTABDelimited, chkIncludeHeader, chkUnix})
        layout->addWidget(control);

    Preferences& preferences = m_context.preferences;
    const bool tab = preferences.value(options::kExportTabDelimited);
    optTABDelimited->setChecked(tab);
    optCommaDelimted->setChecked(!tab);
    chkIncludeHeader->setChecked(preferences.value(options::kExportIncludeHeader));
    chkUnix->setChecked(preferences.value(options::kExportUnixFileType));
    connect(optTABDelimited, &QRadioButton::toggled, this,
            [&preferences](bool on) { preferences.setValue(options::kExportTabDelimited, on); });
    connect(chkIncludeHeader, &QCheckBox::toggled, this,
            [&preferences](bool on) { preferences.setValue(options::kExportIncludeHeader, on); });
    connect(chkUnix, &QCheckBox::toggled, this,
            [&preferences](bool on) { preferences.setValue(options::kExportUnixFileType, on); });
    return group;
}

void TextPage::UpdateDialog()
{
    if (!m_document)
        return;
    for (int pen = 0; pen < TextStore::kPens; ++pen) {
        const auto index = static_cast<std::size_t>(pen);
        const QString name = m_document->pens().name(pen);
        lblColour[index]->setColour(m_document->pens().colour(pen));
        lblPen1[index]->setText(name == optPenSelect[index]->text() ? QString() : name);
        optPenSelect[index]->setAccessibleDescription(name);
    }
}

int TextPage::pen() const
{
    for (std::size_t i = 0; i < optPenSelect.size(); ++i) {
        if (optPenSelect[i]->isChecked())
            return static_cast<int>(i);
    }
    return TextStore::kAllPens;
}

TextExport::Format TextPage::format() const
{
    return {chkIncludeHeader->isChecked(), optCommaDelimted->isChecked(), chkUnix->isChecked()};
}

void TextPage::save()
{
    if (!m_document)
        return;
    const QPointer<PenDocument> document = m_document;
    const ExportContext context = m_context;
    const int chosen = pen();
    const TextExport::Format shown = format();
    const QString name = ExportNames::ask(context.filePicker, context.preferences, tr("Text files (*.txt)|*.txt"),
                                          ExportNames::suggested(*document));
    if (name.isEmpty()) {
        context.messages.message(tr("You must enter a filename to save the data."),
                                 UserMessages::OkOnly | UserMessages::Exclamation, tr("Save Error"));
        return;
    }
    const QString file = ExportNames::textFile(name);
    if (!ExportNames::mayWrite(name, file, context.messages) || !document)
        return;
    // A failure has no message on this road.
    static_cast<void>(
        TextExport::ExportTextFile(*document, file, false, false, chosen, 0, shown.header, shown.comma, shown.unixEnd));
}
