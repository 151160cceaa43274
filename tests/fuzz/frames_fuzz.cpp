// SPDX-License-Identifier: GPL-3.0-or-later
// Bytes from an instrument, through link, reader and dispatch into documents. Everything lives as long as the process
// and no event loop runs, so that an execution costs little more than its frames.
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/SweepRecorder.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "tests/support/SilentPorts.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

class Window : public SilentMainWindow
{
public:
    void setPanel(int index, std::string_view text) override
    {
        if (index < 1 || index > 12 || text.size() > 200)
            std::abort();
    }
    void mnuWindowCloseAll_Click() override { active = nullptr; }
};

struct Program
{
    // No file can be there: reading a setting finds nothing and costs little.
    SettingsStore store{QStringLiteral("/dev/null/none")};
    ProgramState state;
    Preferences preferences{store, state.gstrAppTitle};
    InstrumentMirror mirror;
    SilentMessages messages;
    Window window;
    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>{}};
    KorvaLink device{devices};
    InstrumentPlotSource source{device, mirror, state};
    DeviceModule module{LinkContext{device, mirror, state, preferences, messages, window, window.active}};
    std::array<std::unique_ptr<PenDocument>, 3> documents;
    std::shared_ptr<MemoryPeer> peer;

    Program()
    {
        const std::int16_t types[] = {PenDocument::Amplitude, PenDocument::Impedance, PenDocument::Reactance};
        for (std::size_t i = 0; i < documents.size(); ++i) {
            documents[i] = std::make_unique<PenDocument>(DocumentContext{preferences, messages, source, window.active});
            documents[i]->gstrKey = QStringLiteral("Doc%1").arg(i + 1);
            documents[i]->PrepareNew(types[i], documents[i]->gstrKey);
        }
        auto [transport, other] = MemoryTransport::makePair();
        peer = other;
        if (!device.OpenTransport(std::move(transport)))
            std::abort();
    }
};

Program& program()
{
    static int argc = 1;
    static char name[] = "frames";
    static char* argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    static Program instance;
    return instance;
}

constexpr std::size_t kLongestInput = 3 * Frame::kLength + 1; // begin, point and end of a sweep

} // namespace

/// A few callers tell where memory came from; whole stacks would take a quarter of the time.
extern "C" const char* __asan_default_options()
{
    return "malloc_context_size=4";
}

/// The first byte chooses the active document and whether a test runs on it, and whether the rest is sent as it is or
/// cut into frames whose colon and carriage return are in their place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2 || size > kLongestInput)
        return -1;
    Program& p = program();
    const std::uint8_t choice = data[0];
    const char* bytes = reinterpret_cast<const char*>(data) + 1;
    --size;

    p.window.active = (choice & 3) < p.documents.size() ? p.documents[choice & 3].get() : nullptr;
    p.module.recorder().endRun();
    if ((choice & 4) != 0)
        p.module.recorder().GUISetPlotting(p.window.active);
    p.state.gbfScriptRunning = false;
    p.state.gbfDeviceReady = (choice & 8) != 0;

    if ((choice & 16) != 0) {
        std::array<char, Frame::kLength> frame{};
        while (size > 0) {
            const std::size_t taken = std::min(size, Frame::kLength - 2);
            frame.fill(' ');
            std::memcpy(frame.data(), bytes, taken);
            frame[1] = ':';
            frame[Frame::kReturnColumn - 1] = '\r';
            p.peer->send(QByteArrayView(frame.data(), qsizetype{Frame::kLength}));
            bytes += taken;
            size -= taken;
        }
    } else {
        p.peer->send(QByteArrayView(bytes, static_cast<qsizetype>(size)));
    }
    p.module.DeviceReadInput();

    if (!p.device.Connected() || !p.device.DataEventEnabled())
        std::abort();
    // A test belongs to the document that was active when it began, or to none after its points were refused.
    const QString& key = p.module.recorder().gstrPlotKey();
    const auto isKnown = [&key](const auto& document) { return document->gstrKey == key; };
    if (!key.isEmpty() && std::none_of(p.documents.begin(), p.documents.end(), isKnown))
        std::abort();
    for (const auto& document : p.documents) {
        if (document->gCurrentPen() < 0 || document->gCurrentPen() >= PenDocument::kPens)
            std::abort();
    }
    p.peer->takeWritten();
    return 0;
}
