// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/Workspace.h"

#include "cli/StandardStreams.h"
#include "controls/graph/GraphFile.h"
#include "document/DocumentContext.h"
#include "program/Version.h"

namespace cli {
namespace {

Outcome loadPlot(GraphModel& graph, const QString& fileName)
{
    if (fileName != QLatin1String("-"))
        return GraphFile::PEloadfromfile(graph, fileName);
    const ValueOr<QByteArray> bytes = readStandardInput(GraphFile::kLargestFile);
    return bytes ? GraphFile::PEload(graph, bytes.value()) : Outcome::failure(bytes.sentence());
}

} // namespace

Workspace::Workspace(UserMessages& messages, const PlotSource* source)
    : m_messages(messages)
    , m_source(source != nullptr ? *source : m_noInstrument)
    , m_store(m_settingsFolder.path())
    , m_preferences(m_store, version::programTitle())
{}

PenDocument& Workspace::replaceDocument()
{
    m_document = std::make_unique<PenDocument>(DocumentContext{m_preferences, m_messages, m_source, m_active});
    m_document->gstrKey = QStringLiteral("1");
    return *m_document;
}

PenDocument& Workspace::newDocument(std::int16_t testType, bool withPhase)
{
    replaceDocument();
    m_document->PrepareNew(testType, QStringLiteral("marrowick"));
    m_document->graphSetDefaultView();
    if (testType != PenDocument::Reactance)
        m_document->graphSetPhase(withPhase ? plot::WholeCycle : plot::NoPhase);
    m_active.set(m_document.get());
    return *m_document;
}

ValueOr<PenDocument*> Workspace::openPlot(const QString& fileName)
{
    PenDocument& document = replaceDocument();
    // Not fileLoadPlot(), which gives the plot the look of the preferences.
    if (Outcome loaded = loadPlot(document.peGraph(), fileName); !loaded)
        return loaded;
    document.InitialiseSettings(fileName, fileName);
    return &document;
}

} // namespace cli
