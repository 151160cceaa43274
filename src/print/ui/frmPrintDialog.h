// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "print/ui/GraphPrinter.h"

#include <QDialog>
#include <QPointer>

class FilePicker;
class GraphModel;
class PagePreview;
class Preferences;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class UserMessages;

/// Prints one graph. Choices hold for this job; the orientation is stored when the dialog goes. With no printer the
/// list is empty, and OK says so and offers a PDF file, as btnPdf does at any time.
class frmPrintDialog : public QDialog
{
    Q_OBJECT

public:
    /// All of it outlives the dialog.
    frmPrintDialog(Preferences& preferences, UserMessages& messages, FilePicker& filePicker, QWidget* parent = nullptr);
    ~frmPrintDialog() override;

    /// The graph to print; the dialog closes when it goes. name: proposed for a PDF file.
    void SetGraph(const GraphModel& peGraph, const QString& name);
    void setLandscape(bool landscape);
    /// What the controls say.
    GraphPrinter::Job job() const;

public Q_SLOTS:
    void BtnOK_Click();
    void btnSetup_Click();
    void btnPdf_Click();

private:
    void build();
    void FillPrinters();
    void readPrinter();
    void showPrinter(const class QPrinter& printer);
    void showPage();
    void setUpPrinter();
    void setUpPdfPage();
    void offerPdf();

    Preferences& m_preferences;
    UserMessages& m_messages;
    FilePicker& m_filePicker;
    QPointer<const GraphModel> m_graph;
    QString m_name;
    QPageSize m_paper;
    int m_copies = 1;
    QComboBox* comboPrinterList;
    QLabel* lblPrinterStatus;
    QLabel* lblPaperSize;
    QRadioButton* OptPortrait;
    QRadioButton* OptLandscape;
    QRadioButton* OptPrintStyleMono;
    QRadioButton* OptPrintStyleColour;
    QPushButton* btnSetup;
    QPushButton* btnPdf;
    QPushButton* BtnOK;
    QPushButton* btnCancel;
    PagePreview* m_preview;
};
