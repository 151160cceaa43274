// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/frmExportImage.h"

#include "controls/graph/GraphModel.h"
#include "export/ExportNames.h"
#include "export/ui/ImagePage.h"
#include "export/ui/PictureExport.h"
#include "export/ui/SaveButtons.h"

#include <QVBoxLayout>

frmExportImage::frmExportImage(const GraphModel& graph, const QString& caption, const ExportContext& context,
                               QWidget* parent)
    : QDialog(parent)
    , m_graph(&graph)
    , m_caption(caption)
    , m_context(context)
    , m_image(new ImagePage(context, options::kLoopExportImage, this))
{
    setObjectName(QStringLiteral("frmExportImage"));
    setWindowTitle(tr("Export Graph"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_image);
    layout->addLayout(saveButtons(*this, [this] { btnSaveImage_Click(); }));
    connect(&graph, &QObject::destroyed, this, &QDialog::reject);
}

frmExportImage::~frmExportImage()
{
    m_image->store();
}

Outcome frmExportImage::ExportFile(const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite)
{
    return PictureExport::ExportFile(*m_graph, l_strFileName, iExportFormat, bfCheckOverWrite, m_image->choice(),
                                     m_context.messages);
}

void frmExportImage::btnSaveImage_Click()
{
    const QPointer<frmExportImage> self(this);
    if (m_graph)
        m_image->save(*m_graph, ExportNames::suggested(m_graph->MainTitle(), m_caption));
    if (self)
        accept();
}
