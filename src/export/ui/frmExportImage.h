// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/ui/ExportContext.h"
#include "values/Outcome.h"

#include <QDialog>
#include <QPointer>

class GraphModel;
class ImagePage;

/// Writes any graph as a picture: the image tab of frmExportData as a window of its own, with settings of its own. It
/// closes by itself when the graph goes; what it shows is stored when it goes.
class frmExportImage : public QDialog
{
    Q_OBJECT

public:
    /// caption: of the window that shows the graph, for the name to propose.
    frmExportImage(const GraphModel& graph, const QString& caption, const ExportContext& context,
                   QWidget* parent = nullptr);
    ~frmExportImage() override;

    /// For scripts, with the choices that the page shows: as PictureExport::ExportFile.
    Outcome ExportFile(const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite);

public Q_SLOTS:
    void btnSaveImage_Click();

private:
    QPointer<const GraphModel> m_graph;
    QString m_caption;
    ExportContext m_context;
    ImagePage* m_image;
};
