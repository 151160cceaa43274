// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/ui/frmPrintDialog.h"

#include "document/DocumentBench.h"
#include "print/ui/PagePreview.h"
#include "print/ui/PrintBench.h"
#include "support/FindControl.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

using namespace printbench;

namespace {

class FrmPrintDialogTest : public ::testing::Test
{
protected:
    void open()
    {
        form.reset();
        form = std::make_unique<frmPrintDialog>(bench.preferences, bench.messages, bench.picker);
        form->SetGraph(*graph, QStringLiteral("run"));
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    template <typename Control>
    Control* control(const char* name)
    {
        return findControl<Control>(form.get(), name);
    }
    bool isOn(const char* name) { return control<QRadioButton>(name)->isChecked(); }
    void click(const char* name) { QTest::mouseClick(control<QWidget>(name), Qt::LeftButton); }
    void choose(const char* name) { control<QRadioButton>(name)->click(); }
    QByteArray content(const char* name) const
    {
        QFile file(bench.path(QLatin1String(name)));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    DocumentBench bench;
    std::unique_ptr<GraphModel> graph = greyGraph();
    std::unique_ptr<frmPrintDialog> form;
};

TEST_F(FrmPrintDialogTest, withNoPrinterTheListIsEmptyAndOkSaysSoAndOffersAPdfFile)
{
    open();
    EXPECT_EQ(control<QComboBox>("comboPrinterList")->count(), 0);
    EXPECT_EQ(control<QLabel>("lblPrinterStatus")->text(), "There is no printer. A PDF file can be printed to.");
    bench.messages.replies = {UserMessages::ReplyNo};
    click("BtnOK");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].text, "There is no printer.\nDo you want to print to a PDF file?");
    EXPECT_EQ(bench.messages.shown[0].title, "Print");
    EXPECT_TRUE(form->isVisible()) << "the form stays";
    EXPECT_TRUE(control<QPushButton>("BtnOK")->isEnabled());
    EXPECT_EQ(bench.picker.asked, 0);

    bench.messages.replies = {UserMessages::ReplyYes};
    bench.picker.answer = bench.path("page");
    choose("OptLandscape");
    click("BtnOK");
    EXPECT_EQ(bench.picker.name, "run");
    EXPECT_EQ(bench.picker.filters, "PDF document (*.pdf)|*.pdf");
    const QSizeF size = pageSize(content("page.pdf"));
    EXPECT_GT(size.width(), size.height());
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(FrmPrintDialogTest, aPdfFileIsReplacedOnlyAfterTheQuestionAndAFailureIsTold)
{
    open();
    QFile old(bench.path("page.pdf"));
    ASSERT_TRUE(old.open(QFile::WriteOnly));
    old.write("precious");
    old.close();
    bench.picker.answer = bench.path("page.pdf");
    bench.messages.replies = {UserMessages::ReplyNo};
    click("btnPdf");
    EXPECT_EQ(content("page.pdf"), "precious");
    EXPECT_TRUE(form->isVisible());
    bench.picker.answer = QStringLiteral("/nowhere/page.pdf");
    click("btnPdf");
    ASSERT_EQ(bench.messages.shown.size(), 2U);
    EXPECT_TRUE(bench.messages.shown[1].text.contains("/nowhere/page.pdf"));
    EXPECT_TRUE(form->isVisible());
    bench.picker.answer.clear();
    click("btnPdf");
    EXPECT_EQ(bench.messages.shown.size(), 2U);
}

TEST_F(FrmPrintDialogTest, theOrientationIsKeptUnderItsOldSpelling)
{
    open();
    EXPECT_TRUE(isOn("OptPortrait")) << "the default";
    form.reset();
    EXPECT_EQ(bench.preferences.text(options::kPrintOrientation), "Portrate");
    open();
    form->setLandscape(true);
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
    form.reset();
    EXPECT_EQ(bench.preferences.text(options::kPrintOrientation), "Landscape");
    open();
    EXPECT_TRUE(isOn("OptLandscape"));
    bench.preferences.setValue(options::kPrintOrientation, QStringLiteral("Portrait"));
    auto other = std::make_unique<frmPrintDialog>(bench.preferences, bench.messages, bench.picker);
    EXPECT_TRUE(findControl<QRadioButton>(other.get(), "OptLandscape")->isChecked()) << "any text but Portrate";
}

TEST_F(FrmPrintDialogTest, thePreviewFollowsOrientationAndStyle)
{
    open();
    const auto* preview = control<PagePreview>("preview");
    EXPECT_GT(preview->paper().height(), preview->paper().width());
    choose("OptLandscape");
    EXPECT_GT(preview->paper().width(), preview->paper().height());
    EXPECT_TRUE(preview->paper().contains(preview->printed()));
    EXPECT_GT(preview->printed().width(), preview->paper().width() * 0.9);
    const QImage colour = control<PagePreview>("preview")->grab().toImage();
    EXPECT_EQ(colour.pixelColor((preview->printed().bottomLeft() + QPointF(3, -3)).toPoint()).lightness(), 0xC0);
    choose("OptPrintStyleMono");
    const QImage mono = control<PagePreview>("preview")->grab().toImage();
    EXPECT_EQ(mono.pixelColor((preview->printed().bottomLeft() + QPointF(3, -3)).toPoint()).lightness(), 255);
    EXPECT_TRUE(form->job().monochrome);
}

TEST_F(FrmPrintDialogTest, setupWithoutAPrinterIsThePageOfThePdf)
{
    open();
    QTimer poll;
    bool seen = false;
    QObject::connect(&poll, &QTimer::timeout, [&seen] {
        if (auto* dialog = qobject_cast<QPageSetupDialog*>(QApplication::activeModalWidget())) {
            seen = true;
            dialog->findChild<QRadioButton*>(QStringLiteral("landscape"))->click();
            dialog->done(QDialog::Accepted);
        }
    });
    poll.start(2);
    EXPECT_TRUE(isOn("OptPortrait"));
    click("btnSetup");
    EXPECT_TRUE(seen);
    EXPECT_TRUE(isOn("OptLandscape"));
}

TEST_F(FrmPrintDialogTest, closesWhenTheGraphGoes)
{
    open();
    graph.reset();
    EXPECT_FALSE(form->isVisible());
}

TEST_F(FrmPrintDialogTest, everyControlIsReachedByTheKeyboard)
{
    open();
    QSet<QString> reached;
    for (int i = 0; i < 30; ++i) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : form.get(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget()->objectName());
    }
    for (const char* name : {"comboPrinterList", "btnSetup", "btnPdf", "BtnOK", "btnCancel"})
        EXPECT_TRUE(reached.contains(QLatin1String(name))) << name;
    EXPECT_TRUE(reached.contains("OptPortrait") || reached.contains("OptLandscape"));
    EXPECT_TRUE(reached.contains("OptPrintStyleMono") || reached.contains("OptPrintStyleColour"));
}

TEST_F(FrmPrintDialogTest, aRealPrinterIsListedReadAndPrintedTo)
{
    if (!CupsServer::isInstalled()) {
        std::printf("left out, since cups-daemon and cups-client are not installed: the dialog over a printer\n");
        return;
    }
    CupsServer server;
    bench.preferences.setValue(options::kPrintOrientation, QString(options::kLandscape));
    open();
    EXPECT_EQ(control<QComboBox>("comboPrinterList")->currentText(), "Paper");
    EXPECT_EQ(control<QLabel>("lblPrinterStatus")->text(), "Ready");
    EXPECT_EQ(control<QLabel>("lblPaperSize")->text(), "A4, 210 x 297 mm");
    EXPECT_TRUE(isOn("OptPrintStyleColour"));
    EXPECT_TRUE(isOn("OptLandscape")) << "the saved value, after the printer's";
    click("BtnOK");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(bench.messages.shown.empty());
    const QSizeF size = pageSize(server.takePage());
    EXPECT_EQ(size, QPageSize(QPageSize::A4).size(QPageSize::Point).transposed());
}

} // namespace
