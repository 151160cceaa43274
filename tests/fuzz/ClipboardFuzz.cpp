// SPDX-License-Identifier: GPL-3.0-or-later
// Arbitrary text pasted into documents of each type: only the pen that is pasted into changes, points end where the
// graph ends, and what a pen then holds goes through the clipboard and back unchanged.
#include "document/ActiveDocument.h"
#include "document/ClipboardPort.h"
#include "document/PenDocument.h"
#include "document/content/PenReader.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "tests/support/SilentPorts.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

void check(bool held)
{
    if (!held)
        std::abort();
}

class Clipboard : public ClipboardPort
{
public:
    QString text() const override { return content; }
    void setText(const QString& text) override { content = text; }

    QString content;
};

/// Everything around the documents; made once, since no input changes it.
struct World
{
    World()
    {
        for (std::int16_t type = 1; type <= 3; ++type) {
            documents.push_back(std::make_unique<PenDocument>(context));
            documents.back()->PrepareNew(type, QStringLiteral("fuzz"));
            const std::vector<float> line(1024, static_cast<float>(type));
            GraphModel& graph = documents.back()->peGraph();
            for (const int subset : {1, 11, 21, 31})
                graph.PEvsetEx(GraphModel::PEP_faYDATA, subset * 1024, 1024, line.data());
        }
    }

    int argumentCount = 1;
    char name[5] = "fuzz";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    SettingsStore store{QStringLiteral("/nonexistent")};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    SilentMessages messages;
    PlotSource source;
    ActiveDocument active;
    Clipboard clipboard;
    DocumentContext context{preferences, messages, source, active, &clipboard};
    std::vector<std::unique_ptr<PenDocument>> documents;
};

bool same(float one, float other)
{
    return one == other || (std::isnan(one) && std::isnan(other));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const auto& document : world.documents) {
        GraphModel& graph = document->peGraph();
        world.clipboard.content = text;
        document->SniffClipboardData();
        document->PasteLineData(0, text);
        for (const int subset : {1, 11, 21, 31}) {
            const auto line = graph.yArray(subset);
            check(std::all_of(line.begin(), line.end(), [&](float y) { return y == document->pgiTestType(); }));
        }
        const int points = PenReader::pointCount(graph, 0);
        document->PasteLineData(2, document->CopyLineData(0));
        // Infinite values have no text that reads back; a pen with finite ones comes back whole.
        for (int point = 0; point < points; ++point) {
            bool finite = std::isfinite(graph.XData(0, point));
            for (const int offset : {0, 10, 20, 30})
                finite = finite && std::isfinite(graph.YData(offset, point));
            if (!finite)
                continue;
            for (const int offset : {0, 10, 20, 30})
                check(same(graph.YData(offset, point), graph.YData(offset + 2, point)));
        }
        const std::vector<float> zero(1024, 0.0F);
        for (const int subset : {0, 2})
            graph.PEvsetEx(GraphModel::PEP_faXDATA, subset * 1024, 1024, zero.data());
    }
    return 0;
}
