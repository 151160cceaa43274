// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportNames.h"

#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "document/content/GraphTexts.h"
#include "files/FileNames.h"
#include "prefs/Preferences.h"
#include "program/Questions.h"
#include "program/UserMessages.h"

#include <QCoreApplication>

namespace ExportNames {
namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(ExportNames)
};

QString untilDot(const QString& text)
{
    return text.left(text.indexOf(QLatin1Char('.')));
}

} // namespace

QString suggested(const QString& mainTitle, const QString& caption)
{
    const bool isTitled = mainTitle != graphtexts::kNoTitle && files::IsValidFileName(mainTitle);
    return PlotFileNames::proposed(untilDot(files::FileOfPath(isTitled ? mainTitle : caption)));
}

QString suggested(const PenDocument& document)
{
    return suggested(document.peGraph().MainTitle(), document.caption());
}

QString textFile(const QString& fileName)
{
    return untilDot(fileName) + QStringLiteral(".txt");
}

QString ask(FilePicker& picker, const Preferences& preferences, const QString& filter, const QString& suggested)
{
    QString folder = preferences.value(options::kExportFiles.option);
    if (folder.isEmpty())
        folder = QCoreApplication::applicationDirPath();
    return picker.saveFileName(Texts::tr("Save As"), filter, folder, suggested);
}

bool mayWrite(const QString& asked, const QString& completed, UserMessages& messages)
{
    if (PlotFileNames::isCutInFolder(asked)) {
        const int reply = messages.message(
            Texts::tr("The name of an export ends at its first dot, and a folder's name holds one here.\n"
                      "The file would be saved as \"%1\". Save it there?")
                .arg(completed),
            UserMessages::YesNo | UserMessages::Question, Texts::tr("Save As"));
        if (reply != UserMessages::ReplyYes)
            return false;
    }
    return questions::QuestionOverwriteFile(completed, messages);
}

} // namespace ExportNames
