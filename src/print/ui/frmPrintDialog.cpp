// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/ui/frmPrintDialog.h"

#include "controls/graph/GraphModel.h"
#include "document/FilePicker.h"
#include "document/PlotFileNames.h"
#include "prefs/Preferences.h"
#include "print/PaperName.h"
#include "print/ui/PagePreview.h"
#include "program/Questions.h"
#include "program/UserMessages.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

template <typename Control>
Control* named(Control* control, const char* name)
{
    control->setObjectName(QLatin1String(name));
    return control;
}

QGroupBox* groupOf(const QString& title, std::initializer_list<QRadioButton*> buttons)
{
    auto* const group = new QGroupBox(title);
    auto* const layout = new QVBoxLayout(group);
    for (QRadioButton* button : buttons) {
        button->setAccessibleName(
            QStringLiteral("%1: %2").arg(title, QString(button->text()).remove(QLatin1Char('&'))));
        layout->addWidget(button);
    }
    return group;
}

QString statusOf(QPrinter::PrinterState state)
{
    switch (state) {
    case QPrinter::Idle:
        return frmPrintDialog::tr("Ready");
    case QPrinter::Active:
        return frmPrintDialog::tr("Printing");
    case QPrinter::Aborted:
        return frmPrintDialog::tr("Stopped");
    default:
        return frmPrintDialog::tr("Error");
    }
}

} // namespace

frmPrintDialog::frmPrintDialog(Preferences& preferences, UserMessages& messages, FilePicker& filePicker,
                               QWidget* parent)
    : QDialog(parent)
    , m_preferences(preferences)
    , m_messages(messages)
    , m_filePicker(filePicker)
    , comboPrinterList(named(new QComboBox(this), "comboPrinterList"))
    , lblPrinterStatus(named(new QLabel(this), "lblPrinterStatus"))
    , lblPaperSize(named(new QLabel(this), "lblPaperSize"))
    , OptPortrait(named(new QRadioButton(tr("Portr&ait")), "OptPortrait"))
    , OptLandscape(named(new QRadioButton(tr("&Landscape")), "OptLandscape"))
    , OptPrintStyleMono(named(new QRadioButton(tr("&Monochrome")), "OptPrintStyleMono"))
    , OptPrintStyleColour(named(new QRadioButton(tr("&Colour")), "OptPrintStyleColour"))
    , btnSetup(named(new QPushButton(tr("&Setup..."), this), "btnSetup"))
    , btnPdf(named(new QPushButton(tr("P&DF File..."), this), "btnPdf"))
    , BtnOK(named(new QPushButton(tr("OK"), this), "BtnOK"))
    , btnCancel(named(new QPushButton(tr("Cancel"), this), "btnCancel"))
    , m_preview(named(new PagePreview(this), "preview"))
{
    setObjectName(QStringLiteral("frmPrintDialog"));
    setWindowTitle(tr("Print"));
    build();
    OptPortrait->setChecked(true);
    OptPrintStyleColour->setChecked(true);
    FillPrinters();
    setLandscape(m_preferences.value(options::kPrintOrientation) != options::kPortrait);
    showPage();

    connect(comboPrinterList, &QComboBox::activated, this, &frmPrintDialog::readPrinter);
    for (const QRadioButton* option : {OptPortrait, OptPrintStyleColour})
        connect(option, &QRadioButton::toggled, this, &frmPrintDialog::showPage);
    connect(btnSetup, &QPushButton::clicked, this, &frmPrintDialog::btnSetup_Click);
    connect(btnPdf, &QPushButton::clicked, this, &frmPrintDialog::btnPdf_Click);
    connect(BtnOK, &QPushButton::clicked, this, &frmPrintDialog::BtnOK_Click);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmPrintDialog::~frmPrintDialog()
{
    m_preferences.setValue(options::kPrintOrientation,
                           QString(OptPortrait->isChecked() ? options::kPortrait : options::kLandscape));
}

void frmPrintDialog::build()
{
    auto* const form = new QFormLayout;
    form->addRow(tr("&Printer"), comboPrinterList);
    form->addRow(tr("Status"), lblPrinterStatus);
    form->addRow(tr("Paper"), lblPaperSize);
    lblPrinterStatus->setWordWrap(true);
    auto* const left = new QVBoxLayout;
    left->addLayout(form);
    left->addWidget(groupOf(tr("Orientation"), {OptPortrait, OptLandscape}));
    left->addWidget(groupOf(tr("Print style"), {OptPrintStyleMono, OptPrintStyleColour}));
    left->addStretch();
    auto* const upper = new QHBoxLayout;
    upper->addLayout(left, 1);
    upper->addWidget(m_preview, 1);

    BtnOK->setDefault(true);
    auto* const buttons = new QHBoxLayout;
    for (QPushButton* button : {btnSetup, btnPdf}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    btnCancel->setAutoDefault(false);
    buttons->addStretch();
    buttons->addWidget(BtnOK);
    buttons->addWidget(btnCancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(upper);
    layout->addLayout(buttons);
}

void frmPrintDialog::SetGraph(const GraphModel& peGraph, const QString& name)
{
    m_graph = &peGraph;
    m_name = name;
    connect(&peGraph, &QObject::destroyed, this, &QDialog::reject);
    m_preview->setGraph(&peGraph);
}

void frmPrintDialog::setLandscape(bool landscape)
{
    (landscape ? OptLandscape : OptPortrait)->setChecked(true);
}

GraphPrinter::Job frmPrintDialog::job() const
{
    return {comboPrinterList->currentText(), m_paper,
            OptLandscape->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait, OptPrintStyleMono->isChecked(),
            m_copies};
}

void frmPrintDialog::FillPrinters()
{
    comboPrinterList->addItems(QPrinterInfo::availablePrinterNames());
    if (const int own = comboPrinterList->findText(QPrinterInfo::defaultPrinterName()); own >= 0)
        comboPrinterList->setCurrentIndex(own);
    readPrinter();
}

void frmPrintDialog::readPrinter()
{
    m_copies = 1;
    m_paper = QPageSize();
    const QPrinterInfo info = QPrinterInfo::printerInfo(comboPrinterList->currentText());
    if (comboPrinterList->count() == 0 || info.isNull()) {
        lblPrinterStatus->setText(comboPrinterList->count() == 0
                                      ? tr("There is no printer. A PDF file can be printed to.")
                                      : tr("The printer is not there any more."));
        showPage();
        return;
    }
    lblPrinterStatus->setText(statusOf(info.state()));
    showPrinter(QPrinter(info));
}

void frmPrintDialog::showPrinter(const QPrinter& printer)
{
    m_paper = printer.pageLayout().pageSize();
    setLandscape(printer.pageLayout().orientation() == QPageLayout::Landscape);
    (printer.colorMode() == QPrinter::GrayScale ? OptPrintStyleMono : OptPrintStyleColour)->setChecked(true);
    showPage();
}

void frmPrintDialog::showPage()
{
    const GraphPrinter::Job shown = job();
    const std::unique_ptr<QPrinter> printer = shown.printer.isEmpty() ? nullptr : GraphPrinter::printerFor(shown);
    const QPageLayout page = printer ? GraphPrinter::printableLayout(*printer) : GraphPrinter::pdfLayout(shown);
    lblPaperSize->setText(PaperName(page.pageSize().windowsId()));
    m_preview->setPage(page, shown.monochrome);
}

void frmPrintDialog::BtnOK_Click()
{
    if (!m_graph)
        return;
    if (comboPrinterList->count() == 0)
        return offerPdf();
    BtnOK->setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const Outcome printed = GraphPrinter::print(*m_graph, job());
    QApplication::restoreOverrideCursor();
    BtnOK->setEnabled(true);
    if (printed)
        return accept();
    m_messages.message(printed.sentence(), UserMessages::OkOnly | UserMessages::Exclamation, tr("Print"));
}

void frmPrintDialog::offerPdf()
{
    const QPointer<frmPrintDialog> self(this);
    const int reply = m_messages.message(tr("There is no printer.\nDo you want to print to a PDF file?"),
                                         UserMessages::YesNo | UserMessages::Question, tr("Print"));
    if (self && reply == UserMessages::ReplyYes)
        btnPdf_Click();
}

void frmPrintDialog::btnPdf_Click()
{
    const QPointer<frmPrintDialog> self(this);
    QString name =
        m_filePicker.saveFileName(tr("Print to PDF"), tr("PDF document (*.pdf)|*.pdf"),
                                  m_preferences.value(options::kExportFiles.option), PlotFileNames::proposed(m_name));
    if (!self || name.isEmpty())
        return;
    if (!name.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
        name += QStringLiteral(".pdf");
    if (!questions::QuestionOverwriteFile(name, m_messages) || !self || !m_graph)
        return;
    if (const Outcome written = GraphPrinter::printToPdf(*m_graph, job(), name); !written) {
        m_messages.message(written.sentence(), UserMessages::OkOnly | UserMessages::Exclamation, tr("Print"));
        return;
    }
    accept();
}

void frmPrintDialog::btnSetup_Click()
{
    if (comboPrinterList->count() == 0)
        setUpPdfPage();
    else
        setUpPrinter();
}

void frmPrintDialog::setUpPrinter()
{
    const QPointer<frmPrintDialog> self(this);
    const std::unique_ptr<QPrinter> printer = GraphPrinter::printerFor(job());
    if (!printer)
        return readPrinter();
    const QPointer<QPrintDialog> dialog = new QPrintDialog(printer.get(), this);
    dialog->setOptions(QAbstractPrintDialog::PrintShowPageSize);
    dialog->setWindowTitle(tr("Printer Setup"));
    // Nothing is printed yet.
    if (auto* const buttons = dialog->findChild<QDialogButtonBox*>(); buttons && buttons->button(QDialogButtonBox::Ok))
        buttons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
    const bool accepted = dialog->exec() == QDialog::Accepted;
    delete dialog;
    if (!self || !accepted)
        return;
    comboPrinterList->setCurrentIndex(comboPrinterList->findText(printer->printerName()));
    m_copies = printer->copyCount();
    lblPrinterStatus->setText(statusOf(QPrinterInfo(*printer).state()));
    showPrinter(*printer);
}

void frmPrintDialog::setUpPdfPage()
{
    const QPointer<frmPrintDialog> self(this);
    QPrinter page;
    page.setOutputFormat(QPrinter::PdfFormat);
    page.setPageLayout(GraphPrinter::pdfLayout(job()));
    const QPointer<QPageSetupDialog> dialog = new QPageSetupDialog(&page, this);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    delete dialog;
    if (self && accepted) {
        m_paper = page.pageLayout().pageSize();
        setLandscape(page.pageLayout().orientation() == QPageLayout::Landscape);
        showPage();
    }
}
