// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ExportActions.h"

#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "export/TextExport.h"
#include "link/DeviceModule.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "script/ScriptContext.h"
#include "script/ScriptNames.h"
#include "script/ScriptReply.h"

#include <QPointer>

#include <array>

namespace {

/// By ScriptPicture.
constexpr std::array kExtensions{".jpg", ".wmf", ".bmp"};

} // namespace

ExportActions::ExportActions(ScriptContext& context, DeviceModule& module)
    : m_context(context)
{
    module.registerHandler('m', [this](const Frame& frame) { return m_context.exports.read(frame); });
    module.registerHandler('i', [this](const Frame& frame) { return exportImage(frame); });
    module.registerHandler('o',
                           [this](const Frame& frame) { return exportText(frame, m_context.exports.iExportPenIndex); });
    module.registerHandler('x', [this](const Frame& frame) { return exportText(frame, TextStore::kAllPens); });
    module.registerHandler('n', [this](const Frame& frame) { return print(frame); });
}

// Pictures ------------------------------------------------------------------------------------------------------------

bool ExportActions::exportImage(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    const QPointer<PenDocument> document(m_context.link.active.get());
    std::int32_t format = 0;
    if (!frame.ParseF(format))
        return false;
    const QString prompts[] = {tr("Enter JPEG file name [.jpg]"), tr("Enter Windows Meta File file name [.wmf]"),
                               tr("Enter bitmap file name [.bmp]")};
    const QString prompt = format >= 0 && format < 3 ? prompts[format] : QString();
    const QString given = document ? m_context.nameOr(frame.text(), prompt) : QString();
    if (document && !given.isEmpty())
        writeImage(*document, given, format);
    reply.goOn();
    return true;
}

void ExportActions::writeImage(PenDocument& document, const QString& given, int format)
{
    // A format that there is not writes nothing: scripts use that to wait for what comes without a reply.
    if (format < 0 || static_cast<std::size_t>(format) >= kExtensions.size())
        return;
    const QString folder = m_context.link.preferences.value(options::kExportFiles.option);
    const QString name = m_context.stamped(scriptnames::inFolder(folder, given));
    Outcome written = Outcome::failure(tr("Pictures cannot be made here."));
    if (m_context.loopShows())
        written = m_context.ports.loop->ExportFile(name, format);
    else if (m_context.ports.pictures != nullptr)
        written = m_context.ports.pictures->ExportFile(document, name, format);
    if (written)
        m_context.report(ScriptResult::Picture,
                         scriptnames::cutAtDot(name) + QLatin1String(kExtensions.at(static_cast<std::size_t>(format))));
    else
        m_context.tell(tr("The picture %1 is not written. %2").arg(name, written.sentence()), UserMessages::Exclamation,
                       tr("Export Graph"));
}

// Text ----------------------------------------------------------------------------------------------------------------

bool ExportActions::exportText(const Frame& frame, int pen)
{
    const ScriptReply reply(m_context.link.device);
    const QPointer<PenDocument> document(m_context.link.active.get());
    const QString given = document ? m_context.nameOr(frame.text(), tr("Enter text file name")) : QString();
    if (document && !given.isEmpty())
        writeText(*document, given, pen);
    reply.goOn();
    return true;
}

void ExportActions::writeText(const PenDocument& document, const QString& given, int pen)
{
    const ScriptExportOptions& options = m_context.exports;
    const QString folder = m_context.link.preferences.value(options::kExportFiles.option);
    const QString path = scriptnames::cutAtDot(scriptnames::inFolder(folder, given));
    const QString name = scriptnames::withTextExtension(m_context.stamped(path));
    ExportStore store;
    TextExport::collect(store, document, name, pen,
                        {options.bfExportHeader, options.bfExportComma, options.bfExportUnix});
    if (store.ExportWrite(pen))
        m_context.report(ScriptResult::Text, name);
    else
        m_context.tell(tr("The text %1 is not written. %2").arg(name, store.exportOutcome().sentence()),
                       UserMessages::Exclamation, tr("Export Graph"));
}

// Print ---------------------------------------------------------------------------------------------------------------

bool ExportActions::print(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    const QPointer<PenDocument> document(m_context.link.active.get());
    std::int32_t landscape = 0;
    if (!frame.ParseF(landscape))
        return false;
    if (document && m_context.link.state.gbfPlotting) {
        m_context.tell(tr("Can't print when plotting!"), UserMessages::Exclamation, tr("File Print"));
    } else if (document) {
        Outcome printed = Outcome::failure(tr("Nothing can be printed here."));
        if (m_context.loopShows())
            printed = m_context.ports.loop->print(landscape != 0);
        else if (m_context.ports.printing != nullptr)
            printed = m_context.ports.printing->print(*document, landscape != 0);
        if (!printed)
            m_context.tell(printed.sentence(), UserMessages::Exclamation, tr("File Print"));
    }
    reply.goOn();
    return true;
}
