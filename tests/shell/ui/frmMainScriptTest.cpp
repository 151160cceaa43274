// SPDX-License-Identifier: GPL-3.0-or-later
// What a running script does in the real window.
#include "program/CommandRegistry.h"
#include "script/ScriptTransfer.h"
#include "script/ui/frmSendScript.h"
#include "shell/ui/MainWindowHarness.h"
#include "support/FindControl.h"

#include <QClipboard>
#include <QDialog>
#include <QDropEvent>
#include <QFileDialog>
#include <QFont>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>

namespace {

class FrmMainScriptTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        connectInstrument();
        receive(frametext::numbers('m', '0', 0, 0, 0, 1, 0));
        written();
    }
    void TearDown() override { main->gcolDocuments().discardAll(); }

    /// What the instrument is answered, but for the output pin of the document.
    QByteArray answered()
    {
        QByteArray bytes = written();
        return bytes.startsWith("setpin") ? bytes.mid(bytes.indexOf('\r') + 1) : bytes;
    }
    void text(char code, char f, const QByteArray& text) { receive(frametext::text(code, f, text)); }
};

TEST_F(FrmMainScriptTest, aNewGraphIsShownInItsWindowWithTheFocus)
{
    text('U', '1', "Batch 12");
    PenDocument* document = main->activeDocument();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->pgiTestType(), PenDocument::Impedance);
    EXPECT_TRUE(windowOf(document)->isVisible());
    EXPECT_EQ(document->peGraph().MainTitle(), QStringLiteral("Batch 12"));
    EXPECT_EQ(answered(), " ");
}

TEST_F(FrmMainScriptTest, aSavedPlotNamesItsWindowAndStandsInTheQuickFileList)
{
    text('U', '1', "Batch 12");
    text('b', '0', "part");
    const QString name = folder.filePath(QStringLiteral("part.gzd"));
    EXPECT_TRUE(QFile::exists(name));
    EXPECT_EQ(windowOf(main->activeDocument())->windowTitle(), name);
    QStringList entries;
    for (const QAction* entry : main->commands().menu(Command::Menu::File).actions())
        entries << entry->text();
    EXPECT_EQ(entries.filter(QStringLiteral("part.gzd")).size(), 1);
}

TEST_F(FrmMainScriptTest, aMissingNameIsTypedIntoTheFormOverTheWindow)
{
    text('U', '1', "Batch 12");
    QString caption;
    const press::WhileModal typing([&caption](QWidget& form) {
        caption = form.windowTitle();
        QTest::keyClicks(findControl<QLineEdit>(&form, "txtFileName"), QStringLiteral("ty/ped"));
        QTest::keyClick(&form, Qt::Key_Return);
    });
    text('o', '0', "");
    EXPECT_EQ(caption, QStringLiteral("Enter text file name"));
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("typed.txt"))));
}

TEST_F(FrmMainScriptTest, anEmptyTitleIsTypedIntoABox)
{
    text('U', '1', "Batch 12");
    const press::WhileModal typing([](QWidget& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Graph Title Text"));
        EXPECT_EQ(static_cast<QInputDialog&>(box).labelText(), QStringLiteral("Enter Title:"));
        QTest::keyClicks(box.findChild<QLineEdit*>(), QStringLiteral("Typed"));
        QTest::keyClick(&box, Qt::Key_Return);
    });
    text('Z', 'A', "");
    EXPECT_TRUE(typing.happened());
    EXPECT_EQ(main->activeDocument()->peGraph().MainTitle(), QStringLiteral("Typed"));
}

TEST_F(FrmMainScriptTest, closingAsksNothingAndActivatesTheDocumentBefore)
{
    text('U', '1', "First");
    PenDocument* first = main->activeDocument();
    text('U', '0', "Second");
    main->activeDocument()->SetModified();
    text('j', '0', "");
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_EQ(main->activeDocument(), first);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmMainScriptTest, closingADocumentUnderTestAsksAndLeavesItsQuestionsWhenItStays)
{
    text('U', '1', "First");
    const QPointer<PenDocument> document = main->activeDocument();
    document->SetModified();
    receive(frame('P', 0, 5) + frame('D', 0, 1, 1000, 2000, 0, 0));
    ASSERT_TRUE(state.gbfPlotting);
    messages.replies = {UserMessages::ReplyCancel};
    text('j', '0', "");
    ASSERT_TRUE(document);
    receive(frame('E', 0, 0, 1000, 2000, 0, 0));
    messages.shown.clear();
    messages.replies = {UserMessages::ReplyCancel};
    trigger("mnuFileClose");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Save Document"));
}

TEST_F(FrmMainScriptTest, theProgramMayEndWhileAPromptIsOpen)
{
    messages.whileShowing = [this] { main->endUnasked(); };
    text('f', '0', "Insert part 3");
    EXPECT_TRUE(main->isUnloaded());
    EXPECT_FALSE(device.Connected());
}

// The road to a running script ----------------------------------------------------------------------------------------

class FrmMainRunScriptTest : public FrmMainScriptTest
{
protected:
    QString script(const QByteArray& content, const char* name = "job.mgs")
    {
        QFile file(folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }
    /// Chooses the file in the dialog that the menu entry opens.
    testing::AssertionResult choose(const char* entry, const QString& file, QString* title = nullptr)
    {
        const press::WhileModal choosing([&](QWidget& dialog) {
            if (title)
                *title = dialog.windowTitle();
            auto* const files = qobject_cast<QFileDialog*>(&dialog);
            ASSERT_TRUE(files) << dialog.metaObject()->className();
            files->selectFile(file);
            QMetaObject::invokeMethod(files, "accept");
        });
        return pressMenu(entry);
    }
    void drop(const QString& file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(main.get(), &enter);
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(main.get(), &event);
        settle();
    }
    static QByteArray sent(const QByteArray& script)
    {
        return "loadscript " + QByteArray::number(script.size()) + '\r' + script;
    }

    const QByteArray kClean{"new impedance graph \"A\"\nsweep impedance\nsave \"part\"\n"};
    const QByteArray kFaulty{"new impedance graph \"A\"\nsweeep impedance\n"};
};

TEST_F(FrmMainRunScriptTest, aCleanScriptIsSentAndRunFromTheMenu)
{
    newDocument(PenDocument::Impedance);
    written();
    QString title;
    const QString file = script(kClean);
    messages.replies = {UserMessages::ReplyOk};
    ASSERT_TRUE(choose("mnuRunTestScript", file, &title));
    EXPECT_EQ(title, QStringLiteral("Run Script"));
    EXPECT_TRUE(written().endsWith(sent(kClean) + "run\r"));
    EXPECT_TRUE(state.gbfScriptRunning);
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    EXPECT_FALSE(main->findChild<QDialog*>(QStringLiteral("frmSendScript")));
}

TEST_F(FrmMainRunScriptTest, errorsAreShownInAMonospacedTextWithTheFirstInSightAndCanBeCopied)
{
    const QString file = script(kFaulty);
    QString shown, caption;
    const press::WhileModal reading([&](QWidget& form) {
        caption = form.windowTitle();
        auto* const text = findControl<QPlainTextEdit>(&form, "txtMessages");
        shown = text->toPlainText();
        EXPECT_EQ(text->font().styleHint(), QFont::Monospace);
        EXPECT_TRUE(text->isReadOnly());
        EXPECT_EQ(text->verticalScrollBar()->value(), 0);
        QTest::mouseClick(findControl<QPushButton>(&form, "cmdCopy"), Qt::LeftButton);
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    drop(file);
    EXPECT_EQ(caption, QStringLiteral("Script error and warning messages"));
    EXPECT_TRUE(shown.startsWith(QLatin1String("2:1: error: "))) << shown.toStdString();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), shown);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Errors found in script, click OK to view messages"));
    EXPECT_FALSE(written().contains("loadscript"));
}

TEST_F(FrmMainRunScriptTest, aDroppedScriptInUpperCaseIsCheckedAndRun)
{
    messages.replies = {UserMessages::ReplyOk};
    drop(script(kClean, "JOB.MGS"));
    EXPECT_TRUE(written().endsWith("run\r"));
}

TEST_F(FrmMainRunScriptTest, aPlotWithTheScriptsExtensionInItsNameOpensAsAPlot)
{
    drop(script("no plot", "job.mgs.gad"));
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File Load Error"));
    EXPECT_FALSE(written().contains("loadscript"));
}

TEST_F(FrmMainRunScriptTest, sendOnlyKeepsDocumentsAndRunsNothing)
{
    newDocument(PenDocument::Impedance);
    written();
    ASSERT_TRUE(choose("mnuSendTestScript", script(kFaulty)));
    EXPECT_EQ(written(), sent(kFaulty));
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_FALSE(state.gbfScriptRunning);
}

TEST_F(FrmMainRunScriptTest, theTransferShowsItsProgressWithoutModalityAndEscapeCancelsIt)
{
    ScriptTransfer transfer(device, *main);
    frmSendScript form(transfer, main.get());
    form.show();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Send Test Script"));
    EXPECT_FALSE(form.isModal());
    auto* const bar = findControl<QProgressBar>(&form, "ProgressBar");
    QList<int> values;
    QObject::connect(bar, &QProgressBar::valueChanged, [&](int value) {
        values << value;
        if (value == 2048)
            QTest::keyClick(&form, Qt::Key_Escape);
    });
    const QString file = script(QByteArray(5000, '#'));
    EXPECT_EQ(transfer.DownLoadFile(file), ScriptTransfer::End::Cancelled);
    EXPECT_EQ(bar->minimum(), 0);
    EXPECT_EQ(bar->maximum(), 5000);
    EXPECT_EQ(values, (QList<int>{0, 1024, 2048}));
    EXPECT_FALSE(findControl<QPushButton>(&form, "cmdCancel")->isEnabled());
}

} // namespace
