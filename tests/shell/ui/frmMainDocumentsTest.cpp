// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/GraphScope.h"
#include "document/ui/frmOptionsTestType.h"
#include "shell/commands/files/ui/QuickFileMenu.h"
#include "shell/commands/ui/FileDialogs.h"
#include "shell/ui/MainWindowHarness.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTimer>

namespace {

class FrmMainDocumentsTest : public MainWindowHarness
{
protected:
    void SetUp() override { load(); }

    /// Answers the test type dialog when it opens; says whether it did.
    void answerTypeDialog(const std::function<void(QDialog&)>& answer)
    {
        m_poll.setInterval(5);
        QObject::connect(&m_poll, &QTimer::timeout, [this, answer] {
            auto* dialog = qobject_cast<frmOptionsTestType*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_poll.stop();
            dialogSeen = true;
            answer(*dialog);
        });
        m_poll.start();
    }

    /// Gives the file dialog of that title this name when it opens.
    void answerFileDialog(const QString& title, const QString& name)
    {
        fileDialogSeen = false;
        m_filePoll.disconnect();
        QObject::connect(&m_filePoll, &QTimer::timeout, [this, title, name] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_filePoll.stop();
            fileDialogSeen = dialog->windowTitle() == title;
            auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            edit->setText(name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        m_filePoll.start(5);
    }

    QTimer m_poll;
    QTimer m_filePoll;
    bool dialogSeen = false;
    bool fileDialogSeen = false;
};

TEST_F(FrmMainDocumentsTest, anInstrumentForAmplitudeOnlyGetsAnAmplitudeDocument)
{
    mirror.bfAmplitudeTest = true;
    mirror.bfImpedanceTest = false;
    trigger("mnuFileNew");
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Amplitude);
    EXPECT_TRUE(main->activeDocument()->gbfSendZoom);
    EXPECT_EQ(main->activeDocument()->caption(), QStringLiteral("Document 1"));
}

TEST_F(FrmMainDocumentsTest, anInstrumentForImpedanceOnlyGetsAnImpedanceDocument)
{
    mirror.bfAmplitudeTest = false;
    mirror.bfImpedanceTest = true;
    trigger("mnuFileNew");
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Impedance);
}

TEST_F(FrmMainDocumentsTest, anInstrumentForBothLetsTheUserChoose)
{
    mirror.bfAmplitudeTest = mirror.bfImpedanceTest = true;
    answerTypeDialog([](QDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QWidget*>(QStringLiteral("optReactVsFreq")), Qt::LeftButton);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    trigger("mnuFileNew");
    EXPECT_TRUE(dialogSeen);
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Reactance);
}

TEST_F(FrmMainDocumentsTest, escapeInTheTypeDialogCreatesNoDocument)
{
    mirror.bfAmplitudeTest = mirror.bfImpedanceTest = false;
    answerTypeDialog([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    trigger("mnuFileNew");
    EXPECT_TRUE(dialogSeen);
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    EXPECT_EQ(state.giNewDocType, 0);
}

TEST_F(FrmMainDocumentsTest, fileNewDuringATestAsksFirst)
{
    connectInstrument();
    PenDocument* first = newDocument(PenDocument::Impedance);
    receive(frame('D', 0, 1, 1000, 2000, 0, 0));
    ASSERT_TRUE(state.gbfPlotting);
    messages.replies = {UserMessages::ReplyCancel};
    mirror.bfAmplitudeTest = false;
    trigger("mnuFileNew");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Abort test?"));
    EXPECT_EQ(messages.shown[0].text,
              QStringLiteral("This action will stop the test, click Cancel to continue testing"));
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_TRUE(state.gbfPlotting);
    messages.replies = {UserMessages::ReplyOk};
    trigger("mnuFileNew");
    EXPECT_EQ(main->gcolDocuments().count(), 2);
    EXPECT_NE(main->activeDocument(), first);
    EXPECT_FALSE(state.gbfPlotting);
}

TEST_F(FrmMainDocumentsTest, withOneDocumentNextAndPreviousDoNothing)
{
    PenDocument* only = newDocument(PenDocument::Impedance);
    trigger("mnuNextDocument");
    EXPECT_EQ(main->activeDocument(), only);
    trigger("mnuPreviousDocument");
    EXPECT_EQ(main->activeDocument(), only);
}

TEST_F(FrmMainDocumentsTest, nextAndPreviousWrapRound)
{
    PenDocument* first = newDocument(PenDocument::Impedance);
    PenDocument* second = newDocument(PenDocument::Amplitude);
    PenDocument* third = newDocument(PenDocument::Reactance);
    ASSERT_EQ(main->activeDocument(), third);
    trigger("mnuNextDocument");
    EXPECT_EQ(main->activeDocument(), first);
    trigger("mnuNextDocument");
    EXPECT_EQ(main->activeDocument(), second);
    trigger("mnuPreviousDocument");
    trigger("mnuPreviousDocument");
    EXPECT_EQ(main->activeDocument(), third);
    EXPECT_EQ(main->gcolDocuments().GetCurrentDocumentIndex(), 3);
}

TEST_F(FrmMainDocumentsTest, afterCloseAllTheNextDocumentTakesTheNumber1)
{
    newDocument(PenDocument::Impedance);
    newDocument(PenDocument::Impedance);
    trigger("mnuWindowCloseAll");
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    EXPECT_EQ(main->activeDocument(), nullptr);
    EXPECT_EQ(newDocument(PenDocument::Impedance)->caption(), QStringLiteral("Document 1"));
}

TEST_F(FrmMainDocumentsTest, closeAllStopsAtTheFirstThatRefuses)
{
    PenDocument* first = newDocument(PenDocument::Impedance);
    PenDocument* second = newDocument(PenDocument::Impedance);
    newDocument(PenDocument::Impedance);
    second->SetModified();
    first->SetModified();
    messages.replies = {UserMessages::ReplyCancel};
    trigger("mnuWindowCloseAll");
    EXPECT_EQ(main->gcolDocuments().count(), 2);
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_FALSE(main->gcolDocuments().gbfSuppressPrompts());
}

TEST_F(FrmMainDocumentsTest, fileCloseAsksForAnUnsavedDocument)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    document->SetModified();
    messages.replies = {UserMessages::ReplyCancel};
    trigger("mnuFileClose");
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    messages.replies = {UserMessages::ReplyNo};
    trigger("mnuFileClose");
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(messages.shown[0].style & 15, UserMessages::YesNoCancel);
}

TEST_F(FrmMainDocumentsTest, theCloseBoxOfADocumentRunsFileCloseForThatDocument)
{
    PenDocument* first = newDocument(PenDocument::Impedance);
    const QPointer<PenDocument> second = newDocument(PenDocument::Impedance);
    first->SetModified();
    messages.replies = {UserMessages::ReplyNo};
    const QPointer<PenDocument> watched = first;
    windowOf(first)->close();
    settle();
    EXPECT_FALSE(watched);
    EXPECT_TRUE(second);
    EXPECT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_EQ(main->activeDocument(), second);
}

TEST_F(FrmMainDocumentsTest, documentsOfANewerFormatAreGuardedUnderEachCommandsTitle)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    {
        const TableScope scope(document->peGraph(), 2);
        document->peGraph().setTAText(0, 0, QStringLiteral("2"));
    }
    document->readFormat();
    const std::pair<const char*, const char*> guarded[] = {
        {"mnuFileSave", "File save not possible"},          {"mnuFileSaveAs", "File save not possible"},
        {"mnuEditCut", "Copy data not possible"},           {"mnuEditCopy", "Copy data not possible"},
        {"mnuEditPaste", "Data paste not possible"},        {"mnuViewAddText", "Add text not possible"},
        {"mnuFileExport", "Export data not possible"},      {"mnuFileExportPicture", "Export data not possible"},
        {"mnuEditCopyPicture", "Export data not possible"}, {"mnuViewOptions", "View changes not possible"},
    };
    main->registry().setEnabled(QStringLiteral("mnuEditPaste"), true);
    for (const auto& [name, title] : guarded) {
        messages.shown.clear();
        trigger(name);
        ASSERT_EQ(messages.shown.size(), 1U) << name;
        EXPECT_EQ(messages.shown[0].title, QLatin1String(title));
        EXPECT_EQ(messages.shown[0].text, QStringLiteral("New data format. Please check for updates."));
    }
}

TEST_F(FrmMainDocumentsTest, saveAllSavesWhatItCanAndLeavesANewerFormatAlone)
{
    QString newer = folder.filePath(QStringLiteral("newer.gzd"));
    QString present = folder.filePath(QStringLiteral("present.gzd"));
    PenDocument* first = newDocument(PenDocument::Impedance);
    ASSERT_TRUE(first->fileSavePlot(newer));
    first->SetFileName(newer);
    PenDocument* second = newDocument(PenDocument::Impedance);
    ASSERT_TRUE(second->fileSavePlot(present));
    second->SetFileName(present);
    for (PenDocument* document : {first, second}) {
        document->AddImpedancePoint(1000, 47, 12, 1, 0);
        document->SetModified();
    }
    {
        const TableScope scope(first->peGraph(), 2);
        first->peGraph().setTAText(0, 0, QStringLiteral("2"));
    }
    first->readFormat();
    QFile file(newer);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    trigger("mnuFileSaveAll");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File save not possible"));
    EXPECT_TRUE(first->gbfModified());
    EXPECT_FALSE(second->gbfModified());
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
    first->setModified(false);
}

TEST_F(FrmMainDocumentsTest, theQuickFileListShowsItsSeparatorOnlyWithEntries)
{
    const auto shown = [this](const char* name) {
        const auto* entry = main->findChild<QAction*>(QLatin1String(name));
        return entry && entry->isVisible();
    };
    EXPECT_FALSE(shown("mnuFileMRU_0"));
    EXPECT_FALSE(shown("mnuFileBar4"));
    const QString one = folder.filePath(QStringLiteral("one.gzd"));
    const QString two = folder.filePath(QStringLiteral("two & three.gzd"));
    main->quickFiles().UpdateQuickFileList(one);
    main->quickFiles().UpdateQuickFileList(two);
    settle();
    ASSERT_TRUE(shown("mnuFileMRU_0"));
    EXPECT_TRUE(
        main->findChild<QAction*>(QStringLiteral("mnuFileMRU_0"))->text().contains(QStringLiteral("two && three.gzd")));
    EXPECT_TRUE(shown("mnuFileBar4"));
    main->quickFiles().UpdateQuickFileList(one.toUpper());
    settle();
    EXPECT_FALSE(shown("mnuFileMRU_2"));
}

TEST_F(FrmMainDocumentsTest, aClickOnAQuickFileOpensIt)
{
    const QString gone = folder.filePath(QStringLiteral("gone.gzd"));
    main->quickFiles().UpdateQuickFileList(gone);
    main->findChild<QAction*>(QStringLiteral("mnuFileMRU_0"))->trigger();
    settle();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("File not found ") + gone);
}

TEST_F(FrmMainDocumentsTest, tilingDividesTheAreaWithoutGapsOrOverlap)
{
    QList<frmDocument*> windows;
    for (const int type : {1, 2, 3})
        windows.append(windowOf(newDocument(type)));
    const QSize area = main->documentArea().viewport()->size();
    trigger("mnuWindowTileVertical");
    int covered = 0;
    for (const frmDocument* window : windows) {
        EXPECT_EQ(window->geometry().left(), covered);
        EXPECT_EQ(window->height(), area.height());
        covered += window->width();
    }
    EXPECT_EQ(covered, area.width());
    trigger("mnuWindowTileHorizontal");
    covered = 0;
    for (const frmDocument* window : windows) {
        EXPECT_EQ(window->geometry().top(), covered);
        EXPECT_EQ(window->width(), area.width());
        covered += window->height();
    }
    EXPECT_EQ(covered, area.height());
    trigger("mnuWindowCascade");
    EXPECT_NE(windows[0]->pos(), windows[1]->pos());
}

TEST_F(FrmMainDocumentsTest, theWindowMenuListsTheDocuments)
{
    PenDocument* first = newDocument(PenDocument::Impedance);
    newDocument(PenDocument::Amplitude);
    auto* menu = qobject_cast<QMenu*>(action("mnuWindowCloseAll").associatedObjects().constLast());
    ASSERT_NE(menu, nullptr);
    Q_EMIT menu->aboutToShow();
    auto* entry = main->findChild<QAction*>(QStringLiteral("mnuWindowDocument_1"));
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->text().contains(first->caption()));
    EXPECT_FALSE(entry->isChecked());
    entry->trigger();
    settle();
    EXPECT_EQ(main->activeDocument(), first);
}

TEST_F(FrmMainDocumentsTest, aPlotIsSavedAndOpenedAgainThroughTheFileDialogs)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 47, 12, 1, 0);
    document->SetModified();
    const QString wanted = folder.filePath(QStringLiteral("part7"));
    const QString file = wanted + QStringLiteral(".gzd");
    answerFileDialog(QStringLiteral("Save As"), wanted);
    trigger("mnuFileSaveAs");
    ASSERT_TRUE(fileDialogSeen);
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_FALSE(document->gbfModified());
    EXPECT_EQ(windowOf(document)->windowTitle(), document->GetFileName());
    auto* quick = main->findChild<QAction*>(QStringLiteral("mnuFileMRU_0"));
    ASSERT_NE(quick, nullptr);
    EXPECT_TRUE(quick->text().contains(QStringLiteral("part7")));

    trigger("mnuFileClose");
    ASSERT_EQ(main->gcolDocuments().count(), 0);
    answerFileDialog(QStringLiteral("Open Plot file"), file);
    trigger("mnuFileOpen");
    ASSERT_TRUE(fileDialogSeen);
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_EQ(main->activeDocument()->pgiTestType(), PenDocument::Impedance);
    EXPECT_EQ(main->activeDocument()->peGraph().YData(0, 0), 47.0F);
    EXPECT_EQ(windowOf(main->activeDocument())->windowTitle(), file);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmMainDocumentsTest, openingTheOpenFileAndAnsweringNoLeavesTheDocumentUntouched)
{
    PenDocument* document = newDocument(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 47, 12, 1, 0);
    QString file = folder.filePath(QStringLiteral("same.gzd"));
    ASSERT_TRUE(document->fileSavePlot(file));
    document->AddImpedancePoint(2000, 48, 12, 1, 1);
    messages.replies = {UserMessages::ReplyNo};
    EXPECT_FALSE(main->gcolDocuments().LoadExistingDocument(file));
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File already open"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Do you want to reload the file?"));
    EXPECT_EQ(messages.shown[0].style, 68);
    EXPECT_EQ(document->peGraph().YData(0, 1), 48.0F);
    messages.replies = {UserMessages::ReplyYes};
    EXPECT_TRUE(main->gcolDocuments().LoadExistingDocument(file));
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_EQ(document->peGraph().YData(0, 1), -65536.0F);
}

TEST_F(FrmMainDocumentsTest, aFileThatIsNoPlotIsToldAndItsDocumentIsGoneAgain)
{
    const QString name = folder.filePath(QStringLiteral("noplot.gad"));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is no plot");
    file.close();
    EXPECT_FALSE(main->gcolDocuments().LoadExistingDocument(name));
    settle();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File Load Error"));
    EXPECT_TRUE(messages.shown[0].text.startsWith(QStringLiteral("File of unknown data format\n")));
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    EXPECT_TRUE(main->documentArea().subWindowList().isEmpty());
}

TEST_F(FrmMainDocumentsTest, fileFiltersKeepTheirTextsAndPatterns)
{
    EXPECT_EQ(FileDialogs::nameFilters(QStringLiteral(
                  "All plot files(*.*)|*.*|Amplitude plot files(*.gad)|*.gad|Impedance plot files(*.gzd)|*.gzd")),
              QStringList({QStringLiteral("All plot files (*)"), QStringLiteral("Amplitude plot files (*.gad)"),
                           QStringLiteral("Impedance plot files (*.gzd)")}));
    EXPECT_TRUE(FileDialogs::nameFilters(QString()).isEmpty());
}

} // namespace
