// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/WindowParts.h"

#include "controls/tarnload/file/ModelNames.h"
#include "document/PenDocument.h"
#include "program/CommandLine.h"
#include "shell/ui/frmMain.h"

#include <QMenuBar>
#include <QToolBar>

namespace {

FileOpener::Reader plotReader(DocumentList& documents)
{
    // What every plot file of ours begins with: the tag of self-described CBOR.
    static const QByteArray kPlot("\xd9\xd9\xf7", 3);
    return {[](const QByteArray& head) { return head.startsWith(kPlot); }, FileKind::isPlotFile,
            [&documents](const QString& file) { return documents.LoadExistingDocument(file); }};
}

QString listingTag(const QString& deviceModel)
{
    const firmware::ModelNames* const names = firmware::modelReportedAs(deviceModel);
    return names ? QString(names->tag) : QString();
}

/// Scripts are known by their name alone.
FileOpener::Reader scriptReader(ScriptHost& host)
{
    const auto opened = [&host](void (ScriptHost::*open)(const QString&)) {
        return [&host, open](const QString& file) {
            (host.*open)(file);
            return true;
        };
    };
    return {[](const QByteArray&) { return false; }, FileKind::isScriptFile, opened(&ScriptHost::checkAndRun),
            opened(&ScriptHost::runAtStart)};
}

} // namespace

WindowParts::WindowParts(frmMain& window, const ShellContext& context)
    : fileDialogs(window)
    , plotSource(context.device, context.mirror, context.state)
    , documentContext{context.preferences, context.messages, plotSource, active, &clipboard, &fileDialogs}
    , area(*new DocumentArea(documentContext, context.state, active, &window))
    , penBar(*new PenBar(&window))
    , statusBar(*new StatusBar(&window))
    , toolBar(*new QToolBar(frmMain::tr("Toolbar"), &window))
    , documents(documentContext, context.state, area)
    , deviceModule(
          {context.device, context.mirror, context.state, context.preferences, context.messages, window, active})
    , journal(recovery::stateFolder())
    , testRun(deviceModule)
    , deviceWindows(window, deviceModule, window, registry)
    , scriptQuestions(window, context.messages)
    , scriptActions(deviceModule, documents, area)
    , analysis(window, deviceModule, registry)
    , bars(registry, penBar, statusBar, context.device, context.state)
    , commandContext{context, window, registry, active, area, documents, testRun, deviceWindows, fileDialogs, clipboard}
    , file(commandContext, opener)
    , edit(commandContext)
    , pens(commandContext)
    , test(commandContext)
    , scripts({window, registry, context.preferences, deviceModule, testRun, deviceWindows, fileDialogs})
    , windows(commandContext)
    , help(commandContext)
    , preferences(commandContext, window)
    , recovery(commandContext, journal)
    , maskFrame(deviceModule)
    , masks({registry, active, context.preferences, context.messages, fileDialogs})
    , exports(commandContext, pens)
    , firmware(window, deviceModule, context.devices, registry,
               [this](const QString& title, const QString& filter, const QString& folder) {
                   return fileDialogs.openFileNames(title, filter, folder).value(0);
               })
    , updates(commandContext, window, {[this](QWidget& owner) { firmware.showWizard(owner); }, &listingTag})
    , view({registry, active, context.preferences, context.messages, window})
    , scriptOutputs(commandContext, analysis)
    , scriptSwitches(scripts.checker())
    , commands(window, registry, *window.menuBar(), toolBar, penBar)
    , quickFiles(window, commands, context.preferences,
                 [this](const QString& fileName) { documents.LoadExistingDocument(fileName); })
{
    opener.add(plotReader(documents));
    opener.add(scriptReader(scripts.host()));
    windows.listDocuments(commands);
    scriptActions.ports().fileNames = &scriptQuestions;
    scriptActions.ports().input = &scriptQuestions;
    scriptActions.ports().pictures = &scriptOutputs;
    scriptActions.ports().printing = &scriptOutputs;
    scriptActions.ports().loop = &scriptOutputs;
    analysis.script().setSwitches(scriptSwitches);
    journal.listen(deviceModule.events());
    QObject::connect(&documents, &DocumentList::added, &journal,
                     [this](PenDocument* document) { journal.follow(*document); });
}
