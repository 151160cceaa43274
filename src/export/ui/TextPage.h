// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/TextExport.h"
#include "export/ui/ExportContext.h"

#include <QPointer>
#include <QWidget>

#include <array>

class ColourLabel;
class ElidingLabel;
class PenDocument;
class QCheckBox;
class QGroupBox;
class QRadioButton;

/// The text tab of frmExportData: which pens, and how the file is laid out.
class TextPage : public QWidget
{
    Q_OBJECT

public:
    /// Shows the stored layout; the document outlives the page or is never looked at again. A change of the layout is
    /// stored at once.
    TextPage(const ExportContext& context, PenDocument& document, QWidget* parent = nullptr);

    /// Colours and names of the pens as the document has them now.
    void UpdateDialog();
    /// The chosen pen, 0 to 9, or TextStore::kAllPens.
    int pen() const;
    TextExport::Format format() const;
    /// Asks for a name and writes the file. May run nested event loops, in which the page may go.
    void save();

Q_SIGNALS:
    void colourWanted(int pen);

private:
    QGroupBox* buildPens();
    QGroupBox* buildLayout();

    ExportContext m_context;
    QPointer<PenDocument> m_document;
    std::array<QRadioButton*, TextStore::kPens + 1> optPenSelect{};
    std::array<ColourLabel*, TextStore::kPens> lblColour{};
    std::array<ElidingLabel*, TextStore::kPens> lblPen1{};
    QCheckBox* chkIncludeHeader = nullptr;
    QCheckBox* chkUnix = nullptr;
    QRadioButton* optCommaDelimted = nullptr;
    QRadioButton* optTABDelimited = nullptr;
};
