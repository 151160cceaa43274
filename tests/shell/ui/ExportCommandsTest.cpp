// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/ExportCommands.h"

#include "controls/graph/ui/GraphView.h"
#include "export/ui/frmExportData.h"
#include "shell/commands/ui/FileDialogs.h"
#include "shell/ui/MainWindowHarness.h"

#include <QClipboard>
#include <QFileDialog>
#include <QImage>
#include <QMimeData>
#include <QSvgRenderer>
#include <QTimer>

namespace {

class ExportCommandsTest : public MainWindowHarness
{
protected:
    void SetUp() override
    {
        load();
        document = measuredDocument();
    }
    void TearDown() override
    {
        document->setModified(false);
        QGuiApplication::clipboard()->clear();
    }

    /// Does this with the modal dialog of that kind as soon as it is on the screen.
    template <typename Dialog>
    void whenShown(const std::function<void(Dialog&)>& then)
    {
        m_poll.disconnect();
        QObject::connect(&m_poll, &QTimer::timeout, [this, then] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_poll.stop();
            ++seen;
            then(*dialog);
        });
        m_poll.start(2);
    }
    void answerFileDialog(const QString& name)
    {
        whenShown<QFileDialog>([name](QFileDialog& dialog) {
            dialog.selectFile(name);
            dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
    }
    QByteArray content(const QString& name) const
    {
        QFile file(folder.filePath(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    PenDocument* document = nullptr;
    QTimer m_poll;
    int seen = 0;
};

TEST_F(ExportCommandsTest, menuKeyButtonAndPopupOpenTheDialogOfTheDocument)
{
    const std::function<void()> ways[] = {
        [this] { EXPECT_TRUE(pressMenu("mnuFileExport")); },
        [this] { EXPECT_TRUE(pressShortcut("Ctrl+Shift+E")); },
        [this] { main->buttonClick(QStringLiteral("Export Data")); },
        [this] { EXPECT_TRUE(pressPopup(document, {QStringLiteral("Export")})); },
    };
    for (const auto& way : ways) {
        QString title;
        whenShown<frmExportData>([&title](frmExportData& form) {
            title = form.windowTitle();
            form.reject();
        });
        way();
        settle();
        EXPECT_EQ(title, "Export Graph");
    }
    EXPECT_EQ(seen, 4);
}

TEST_F(ExportCommandsTest, aPictureIsWrittenAsItsNameEnds)
{
    const std::pair<const char*, QByteArray> kinds[] = {
        {"a.png", "\x89PNG"}, {"a.svg", "<?xml"}, {"a.pdf", "%PDF"}, {"b.PNG", "\x89PNG"}};
    for (const auto& [name, beginning] : kinds) {
        answerFileDialog(folder.filePath(QLatin1String(name)));
        trigger("mnuFileExportPicture");
        EXPECT_TRUE(content(QLatin1String(name)).startsWith(beginning)) << name;
    }
    EXPECT_EQ(QImage(folder.filePath("a.png")).size(), windowOf(document)->view().size());
    messages.replies = {UserMessages::ReplyNo};
    const QByteArray before = content("a.png");
    document->peGraph().setMainTitle(QStringLiteral("other"));
    document->peGraph().PEactions(graph::Reinitialise);
    answerFileDialog(folder.filePath("a.png"));
    trigger("mnuFileExportPicture");
    EXPECT_EQ(content("a.png"), before) << "not replaced against the answer";
}

TEST_F(ExportCommandsTest, aNameWithoutAnExtensionTakesThatOfTheChosenKind)
{
    EXPECT_EQ(FileDialogs::withExtension("/lab/a", "SVG drawing (*.svg)"), "/lab/a.svg");
    EXPECT_EQ(FileDialogs::withExtension("/lab.d/a", "PDF document (*.pdf)"), "/lab.d/a.pdf");
    EXPECT_EQ(FileDialogs::withExtension("/lab/a.png", "SVG drawing (*.svg)"), "/lab/a.png");
    EXPECT_EQ(FileDialogs::withExtension("/lab/a", "All files (*)"), "/lab/a");
}

TEST_F(ExportCommandsTest, aCopiedPictureIsSvgPdfAndPngOfThePresentSize)
{
    EXPECT_TRUE(pressMenu("mnuEditCopyPicture"));
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(data, nullptr);
    const QSize size = windowOf(document)->view().size();
    EXPECT_EQ(QImage::fromData(data->data("image/png")).size(), size);
    EXPECT_EQ(qvariant_cast<QImage>(data->imageData()).size(), size);
    EXPECT_EQ(QSvgRenderer(data->data("image/svg+xml")).viewBox().size(), size);
    EXPECT_TRUE(data->data("application/pdf").startsWith("%PDF"));
    EXPECT_FALSE(data->hasText());
}

} // namespace
