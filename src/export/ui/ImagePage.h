// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/ImageExport.h"
#include "export/ui/ExportContext.h"

#include <QWidget>

class GraphModel;
class QComboBox;
class QFormLayout;
class QLabel;
class QSlider;

/// Format, size and shape of a picture: the image tab of frmExportData, and all of frmExportImage.
class ImagePage : public QWidget
{
    Q_OBJECT

public:
    /// Shows what is stored there.
    ImagePage(const ExportContext& context, const options::ImageOptions& where, QWidget* parent = nullptr);

    /// What the controls show.
    ImageExport::Choice choice() const;
    void store();
    /// Asks for a name, proposing that one, and writes the graph; what goes wrong is told. May run nested event loops,
    /// in which the page may go.
    void save(const GraphModel& graph, const QString& suggestedName);

private:
    QSlider* addSlider(const QString& axis, const char* name, QFormLayout& form);
    void showResolution();
    QString sizeText() const;
    void showSize();

    ExportContext m_context;
    options::ImageOptions m_where;
    QComboBox* combFormat;
    QComboBox* combResolution;
    QLabel* lblResolution;
    QSlider* sldXRatio;
    QSlider* sldYRatio;
    QLabel* lblSize;
};
