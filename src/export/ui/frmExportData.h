// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "export/ui/ExportContext.h"
#include "values/Outcome.h"

#include <QDialog>
#include <QPointer>

class ImagePage;
class PenDocument;
class QTabWidget;
class TextPage;

/// "Export Graph": writes a document as text (tab 0) or as a picture. Saving ends the dialog, whatever came of it. It
/// closes by itself when the document goes; the chosen tab and the image page are stored when it goes.
class frmExportData : public QDialog
{
    Q_OBJECT

public:
    static constexpr int kTextTab = 0;
    static constexpr int kImageTab = 1;

    frmExportData(PenDocument& document, const ExportContext& context, QWidget* parent = nullptr);
    ~frmExportData() override;

    /// The text of a document, for scripts: as TextExport::ExportTextFile.
    Outcome ExportTextFile(const QString& strFileName, bool bfSubset, bool bfPhase, int iPenIndex, int iPrecision,
                           bool bfHeader, bool bfComma, bool bfUnix) const;
    /// The picture of a document, for scripts, with the choices that the image page shows: as
    /// PictureExport::ExportFile.
    Outcome ExportFile(const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite);
    /// Takes the colours of the document.
    void UpdateDialog();

public Q_SLOTS:
    void btnSaveImage_Click();

Q_SIGNALS:
    /// A pen (from 0) shall have another colour.
    void penColourWanted(int pen);

private:
    QPointer<PenDocument> m_document;
    ExportContext m_context;
    QTabWidget* SSTab1;
    TextPage* m_text;
    ImagePage* m_image;
};
