// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/Workspace.h"

#include "cli/StandardStreams.h"
#include "controls/graph/GraphFile.h"
#include "document/DocumentContext.h"

namespace cli {
namespace {

// Views of the phase axis.
constexpr std::int16_t kNoPhase = 0;
constexpr std::int16_t kSignedPhase = 2;

Outcome loadPlot(GraphModel& graph, const QString& fileName)
{
    if (fileName != QLatin1String("-"))
        return GraphFile::PEloadfromfile(graph, fileName);
    const ValueOr<QByteArray> bytes = readStandardInput(GraphFile::kLargestFile);
    return bytes ? GraphFile::PEload(graph, bytes.value()) : Outcome::failure(bytes.sentence());
}

} // namespace

/// In place of a main window: nothing is shown, nothing refused.
class Workspace::NoWindow : public DocumentHost
{
public:
    PenDocument* activeDocument() const override { return nullptr; }
    void updateToolBars(PenDocument&) override {}
    void defaultToolBars() override {}
    void penShowCurrent(int) override {}
    bool QuestionTestCancel() override { return false; }
    void UpdateQuickFileList(const QString&) override {}
    void removeDocument(const QString&) override {}
    void processEvents() override {}
};

Workspace::Workspace(UserMessages& messages, DocumentHost* host)
    : m_ownHost(host == nullptr ? std::make_shared<NoWindow>() : nullptr)
    , m_host(host == nullptr ? *m_ownHost : *host)
    , m_store(m_settingsFolder.path())
    , m_preferences(m_store, m_state.gstrAppTitle)
    , m_messages(messages)
    , m_device(m_devices)
{
    for (std::size_t pen = 0; pen < m_state.glPenColour.size(); ++pen)
        m_state.glPenColour[pen] = m_preferences.value(options::kPens[pen]);
}

PenDocument& Workspace::replaceDocument()
{
    const DocumentContext context{m_device, m_mirror, m_state, m_preferences, m_messages, m_host};
    m_document = std::make_unique<PenDocument>(context);
    m_document->gstrKey = QStringLiteral("1");
    if (onNewDocument)
        onNewDocument(*m_document);
    return *m_document;
}

PenDocument& Workspace::newDocument(std::int16_t testType)
{
    replaceDocument();
    m_document->PrepareNew(testType, QStringLiteral("marrowick"));
    m_document->graphSetDefaultView();
    if (testType != PenDocument::Reactance)
        m_document->graphSetPhase(m_mirror.bfPhaseOn ? kSignedPhase : kNoPhase);
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
