// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/frmExportData.h"

#include "controls/graph/ui/MetafileReader.h"
#include "export/ui/ExportBench.h"
#include "widgets/ui/ColourLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FrmExportDataTest : public ::testing::Test
{
protected:
    void SetUp() override { open(); }

    void open(int tab = frmExportData::kTextTab)
    {
        form.reset();
        form = std::make_unique<frmExportData>(*bench.graph, bench.exports);
        findControl<QTabWidget>(form.get(), "SSTab1")->setCurrentIndex(tab);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    template <typename Control>
    Control* control(const char* name)
    {
        return findControl<Control>(form.get(), name);
    }
    void click(const char* name) { QTest::mouseClick(control<QWidget>(name), Qt::LeftButton); }
    void choose(const char* name) { control<QAbstractButton>(name)->click(); }
    void save(const char* name)
    {
        bench.picker.answer = *name == '\0' ? QString() : bench.path(QLatin1String(name));
        click("btnSaveImage");
    }

    ExportBench bench;
    std::unique_ptr<frmExportData> form;
};

TEST_F(FrmExportDataTest, bearsTheToldTexts)
{
    EXPECT_EQ(form->windowTitle(), "Export Graph");
    EXPECT_EQ(control<QPushButton>("btnSaveImage")->text(), "&Save");
    EXPECT_EQ(control<QRadioButton>("optPenSelect_10")->text(), "Export all");
    EXPECT_EQ(control<QCheckBox>("chkIncludeHeader")->text(), "Include test information header text");
    EXPECT_EQ(control<QRadioButton>("optCommaDelimted")->text(), "Comma-delimited");
    EXPECT_EQ(control<QRadioButton>("optTABDelimited")->text(), "Tab-delimited");
    EXPECT_EQ(control<QCheckBox>("chkUnix")->text(), "Unix text file format");
    EXPECT_EQ(control<QLabel>("lblColour_0")->toolTip(), "Double click to change colour");
    const auto* format = control<QComboBox>("combFormat");
    ASSERT_EQ(format->count(), 3);
    EXPECT_EQ(format->itemText(0), "JPEG image file (*.jpg)");
    EXPECT_EQ(format->itemText(1), "Windows meta file (*.wmf)");
    EXPECT_EQ(format->itemText(2), "Bitmap image file (*.bmp)");
    const auto* resolution = control<QComboBox>("combResolution");
    QStringList sizes;
    for (int i = 0; i < resolution->count(); ++i)
        sizes += resolution->itemText(i);
    EXPECT_EQ(sizes.join(u','), "320 x 320,640 x 640,800 x 800,1024 x 1024,1280 x 1280,1600 x 1600");
}

TEST_F(FrmExportDataTest, opensOnTheImageTabAndThenOnTheOneItWasLeftOn)
{
    form.reset();
    bench.preferences.setDefault(options::kExportDataTab);
    form = std::make_unique<frmExportData>(*bench.graph, bench.exports);
    EXPECT_EQ(control<QTabWidget>("SSTab1")->currentIndex(), 1);
    control<QTabWidget>("SSTab1")->setCurrentIndex(0);
    form.reset();
    EXPECT_EQ(bench.preferences.value(options::kExportDataTab), 0);
    form = std::make_unique<frmExportData>(*bench.graph, bench.exports);
    EXPECT_EQ(control<QTabWidget>("SSTab1")->currentIndex(), 0);
}

TEST_F(FrmExportDataTest, theLayoutIsStoredAtOnce)
{
    EXPECT_TRUE(control<QRadioButton>("optTABDelimited")->isChecked());
    EXPECT_TRUE(control<QCheckBox>("chkIncludeHeader")->isChecked());
    EXPECT_FALSE(control<QCheckBox>("chkUnix")->isChecked());
    choose("optCommaDelimted");
    choose("chkIncludeHeader");
    choose("chkUnix");
    EXPECT_EQ(bench.preferences.text(options::kExportTabDelimited), "False");
    EXPECT_EQ(bench.preferences.text(options::kExportIncludeHeader), "0");
    EXPECT_EQ(bench.preferences.text(options::kExportUnixFileType), "1");
    open();
    EXPECT_TRUE(control<QRadioButton>("optCommaDelimted")->isChecked());
    EXPECT_FALSE(control<QCheckBox>("chkIncludeHeader")->isChecked());
    EXPECT_TRUE(control<QCheckBox>("chkUnix")->isChecked());
    choose("optTABDelimited");
    EXPECT_EQ(bench.preferences.text(options::kExportTabDelimited), "True");
}

TEST_F(FrmExportDataTest, unixFormatWithCommaGivesCommaBlankAndASingleLineFeed)
{
    choose("optCommaDelimted");
    choose("chkIncludeHeader");
    choose("chkUnix");
    choose("optPenSelect_0");
    save("out.csv");
    EXPECT_EQ(bench.content("out.txt"), "1000, 5, -6\n2000, 7, 8\n");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_EQ(bench.picker.title, "Save As");
    EXPECT_EQ(bench.picker.filters, "Text files (*.txt)|*.txt");
    EXPECT_EQ(bench.picker.folder, bench.folder.path());
    EXPECT_EQ(bench.picker.name, "Document 1");
}

TEST_F(FrmExportDataTest, exportAllOfADocumentWithEmptyPensGivesOneFile)
{
    choose("chkIncludeHeader");
    EXPECT_TRUE(control<QRadioButton>("optPenSelect_10")->isChecked());
    save("all");
    EXPECT_EQ(bench.content("all.txt"), "1\t1000\t5\t-6\r\n1\t2000\t7\t8\r\n");
    open();
    choose("chkIncludeHeader");
    save("named");
    EXPECT_EQ(bench.content("named.txt").count("# Pen "), 10);
}

TEST_F(FrmExportDataTest, anEmptyAnswerIsTold)
{
    save("");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].text, "You must enter a filename to save the data.");
    EXPECT_EQ(bench.messages.shown[0].title, "Save Error");
    EXPECT_EQ(QDir(bench.folder.path()).entryList({QStringLiteral("*.txt")}).size(), 0);
    open(frmExportData::kImageTab);
    save("");
    ASSERT_EQ(bench.messages.shown.size(), 2U);
    EXPECT_EQ(bench.messages.shown[1].text, "You must enter a filename to save the image.");
    EXPECT_EQ(bench.messages.shown[1].title, "Save Error");
}

TEST_F(FrmExportDataTest, aFileIsReplacedOnlyAfterTheQuestion)
{
    for (const int tab : {frmExportData::kTextTab, frmExportData::kImageTab}) {
        const char* name = tab == frmExportData::kTextTab ? "old.txt" : "old.bmp";
        bench.write(name, "precious");
        bench.messages.shown.clear();
        bench.messages.replies = {UserMessages::ReplyNo};
        open(tab);
        save("old");
        ASSERT_EQ(bench.messages.shown.size(), 1U);
        EXPECT_EQ(bench.messages.shown[0].title, "Overwrite existing?");
        EXPECT_EQ(bench.content(name), "precious");
        bench.messages.replies = {UserMessages::ReplyYes};
        open(tab);
        save("old");
        EXPECT_NE(bench.content(name), "precious");
    }
}

TEST_F(FrmExportDataTest, aTextThatCannotBeWrittenHasNoMessageOnThisRoad)
{
    save("missing/out");
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(FrmExportDataTest, anImageThatCannotBeWrittenIsTold)
{
    open(frmExportData::kImageTab);
    save("missing/out");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].title, "Save Error");
    EXPECT_TRUE(bench.messages.shown[0].text.contains("out.bmp"));
}

TEST_F(FrmExportDataTest, ratiosOfHalfAt1024Give512By512)
{
    open(frmExportData::kImageTab);
    control<QComboBox>("combResolution")->setCurrentIndex(3);
    control<QSlider>("sldXRatio")->setValue(50);
    control<QSlider>("sldYRatio")->setValue(50);
    EXPECT_EQ(control<QLabel>("lblSize")->text(), "Picture: 512 x 512 pixels");
    save("half");
    EXPECT_EQ(QImage(bench.path("half.bmp")).size(), QSize(512, 512));
    EXPECT_EQ(bench.picker.filters, "Bitmap files (*.bmp)|*.bmp");
    open(frmExportData::kImageTab);
    EXPECT_EQ(control<QComboBox>("combResolution")->currentIndex(), 3) << "kept";
    EXPECT_EQ(control<QSlider>("sldYRatio")->value(), 50);
    control<QComboBox>("combFormat")->setCurrentIndex(0);
    control<QSlider>("sldYRatio")->setValue(100);
    save("half.png");
    EXPECT_EQ(bench.picker.filters, "JPEG files (*.jpg)|*.jpg");
    EXPECT_TRUE(bench.content("half.jpg").startsWith("\xff\xd8\xff"));
    EXPECT_EQ(QImage(bench.path("half.jpg")).size(), QSize(512, 1024));
}

TEST_F(FrmExportDataTest, theMetafileHasNoResolutionAndItsSizeIgnoresIt)
{
    open(frmExportData::kImageTab);
    EXPECT_TRUE(control<QComboBox>("combResolution")->isVisible());
    control<QComboBox>("combResolution")->setCurrentIndex(0);
    control<QSlider>("sldYRatio")->setValue(50);
    control<QComboBox>("combFormat")->setCurrentIndex(1);
    EXPECT_FALSE(control<QComboBox>("combResolution")->isVisible());
    EXPECT_FALSE(control<QLabel>("lblResolution")->isVisible());
    EXPECT_EQ(control<QLabel>("lblSize")->text(), "Picture: 20.0 x 10.0 cm, lines and texts");
    save("meta");
    EXPECT_EQ(bench.picker.filters, "Meta files (*.wmf)|*.wmf");
    const MetafileReader read(bench.content("meta.wmf"));
    EXPECT_EQ(read.problem, QString());
    EXPECT_EQ(read.bounds, QRect(0, 0, 20000, 10000));
}

TEST_F(FrmExportDataTest, aScriptThatPassesFalseReplacesAFileWithoutAWord)
{
    bench.write("run.bmp", "precious");
    EXPECT_TRUE(form->ExportFile(bench.path("run"), 2, false));
    EXPECT_TRUE(bench.content("run.bmp").startsWith("BM"));
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_TRUE(form->ExportFile(bench.path("run"), 2, true));
    EXPECT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_TRUE(form->ExportFile(bench.path("other"), 3, false));
    EXPECT_FALSE(bench.exists("other.wmf")) << "other formats end without writing";
    EXPECT_TRUE(form->ExportTextFile(bench.path("run.txt"), false, false, 0, 0, false, false, true));
    EXPECT_EQ(bench.content("run.txt"), "1000\t5\t-6\n2000\t7\t8\n");
}

TEST_F(FrmExportDataTest, aDoubleClickOnAColourAsksForAnotherAndTheBoxFollowsTheDocument)
{
    const QSignalSpy wanted(form.get(), &frmExportData::penColourWanted);
    QTest::mouseDClick(control<QWidget>("lblColour_3"), Qt::LeftButton);
    ASSERT_EQ(wanted.count(), 1);
    EXPECT_EQ(wanted[0][0].toInt(), 3);
    bench.graph->SetPenColour(3, 0x123456);
    EXPECT_EQ(control<ColourLabel>("lblColour_3")->colour(), 0x123456U);
    bench.graph->setPenName(3, QStringLiteral("with horn"));
    form->UpdateDialog();
    EXPECT_EQ(control<QLabel>("lblPen1_3")->text(), "with horn");
}

TEST_F(FrmExportDataTest, theDialogClosesWhenItsDocumentGoesEvenDuringTheQuestion)
{
    bench.write("old.txt", "precious");
    bench.messages.replies = {UserMessages::ReplyYes};
    bench.messages.whileShowing = [this] { bench.graph.reset(); };
    save("old");
    EXPECT_EQ(bench.content("old.txt"), "precious");
    EXPECT_FALSE(form->isVisible());
}

TEST_F(FrmExportDataTest, everyControlIsReachedByTheKeyboardAndHasAName)
{
    for (const int tab : {0, 1}) {
        open(tab);
        QSet<QWidget*> reached;
        for (int i = 0; i < 60; ++i) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : form.get(), Qt::Key_Tab);
            reached.insert(QApplication::focusWidget());
        }
        const QStringList names =
            tab == 0
                ? QStringList{"lblColour_0",      "lblColour_9", "optPenSelect_0", "optCommaDelimted",
                              "chkIncludeHeader", "chkUnix",     "btnSaveImage"}
                : QStringList{"combFormat", "combResolution", "sldXRatio", "sldYRatio", "btnSaveImage", "btnCancel"};
        for (const QString& name : names)
            EXPECT_TRUE(reached.contains(form->findChild<QWidget*>(name))) << name.toStdString();
    }
    EXPECT_EQ(control<QSlider>("sldXRatio")->accessibleName(), "Aspect ratio (%): Width");
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
}

} // namespace
