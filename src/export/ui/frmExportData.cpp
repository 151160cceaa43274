// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/frmExportData.h"

#include "document/PenDocument.h"
#include "export/ExportNames.h"
#include "export/ui/ImagePage.h"
#include "export/ui/PictureExport.h"
#include "export/ui/SaveButtons.h"
#include "export/ui/TextPage.h"
#include "prefs/Preferences.h"

#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

frmExportData::frmExportData(PenDocument& document, const ExportContext& context, QWidget* parent)
    : QDialog(parent)
    , m_document(&document)
    , m_context(context)
    , SSTab1(new QTabWidget(this))
    , m_text(new TextPage(context, document, this))
    , m_image(new ImagePage(context, options::kExportImage, this))
{
    setObjectName(QStringLiteral("frmExportData"));
    setWindowTitle(tr("Export Graph"));
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    SSTab1->setAccessibleName(tr("Kind of export"));
    SSTab1->addTab(m_text, tr("Text"));
    SSTab1->addTab(m_image, tr("Image"));
    SSTab1->setCurrentIndex(
        std::clamp(static_cast<int>(context.preferences.value(options::kExportDataTab)), kTextTab, kImageTab));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(saveButtons(*this, [this] { btnSaveImage_Click(); }));

    connect(m_text, &TextPage::colourWanted, this, &frmExportData::penColourWanted);
    connect(&document, &PenDocument::pensChanged, this, &frmExportData::UpdateDialog);
    connect(&document, &QObject::destroyed, this, &QDialog::reject);
}

frmExportData::~frmExportData()
{
    m_context.preferences.setValue(options::kExportDataTab, SSTab1->currentIndex());
    m_image->store();
}

void frmExportData::UpdateDialog()
{
    m_text->UpdateDialog();
}

Outcome frmExportData::ExportTextFile(const QString& strFileName, bool bfSubset, bool bfPhase, int iPenIndex,
                                      int iPrecision, bool bfHeader, bool bfComma, bool bfUnix) const
{
    return TextExport::ExportTextFile(*m_document, strFileName, bfSubset, bfPhase, iPenIndex, iPrecision, bfHeader,
                                      bfComma, bfUnix);
}

Outcome frmExportData::ExportFile(const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite)
{
    return PictureExport::ExportFile(m_document->peGraph(), l_strFileName, iExportFormat, bfCheckOverWrite,
                                     m_image->choice(), m_context.messages);
}

void frmExportData::btnSaveImage_Click()
{
    const QPointer<frmExportData> self(this);
    if (SSTab1->currentIndex() == kTextTab)
        m_text->save();
    else if (m_document)
        m_image->save(m_document->peGraph(), ExportNames::suggested(*m_document));
    if (self)
        accept();
}
