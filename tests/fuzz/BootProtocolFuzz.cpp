// SPDX-License-Identifier: GPL-3.0-or-later
// Both ends of a firmware update against anything: answers that the loader reads, and commands that an instrument
// takes, which must leave it with the image it runs.
#include "controls/tarnload/BootAnswer.h"
#include "sim/boot/BootLoader.h"
#include "sim/protocol/CommandParser.h"

#include <cstdlib>

namespace {

class Nowhere : public sim::FrameSink
{
public:
    void send(const sim::Frame& frame) override
    {
        // What an instrument says is understood.
        if (!tarnload::BootAnswer::fromFrame(QByteArrayView(frame.data(), qsizetype(frame.size()))))
            std::abort();
    }
    void sendRaw(std::string_view) override {}
};

void readAnswers(QByteArrayView bytes)
{
    constexpr qsizetype kFrame = 67;
    for (qsizetype begin = 0; begin < bytes.size(); begin += kFrame)
        static_cast<void>(tarnload::BootAnswer::fromFrame(bytes.sliced(begin, std::min(kFrame, bytes.size() - begin))));
}

void giveCommands(std::string_view bytes)
{
    Nowhere sink;
    sim::Flash flash;
    sim::BootLoader::Facts facts;
    facts.model = "T46";
    facts.keys.add(firmware::SigningKey::generate().publicKey());
    sim::BootLoader loader(flash, facts, sink);
    sim::CommandParser parser;
    const sim::Moment now{0};
    parser.feed(bytes, now);
    while (const auto input = parser.next(now)) {
        if (input->kind == sim::CommandParser::Kind::Block)
            loader.take(input->argument);
        else if (input->kind == sim::CommandParser::Kind::Command && sim::BootLoader::isOwn(input->word)) {
            if (const std::size_t count = loader.command(input->word, input->argument))
                parser.expectBlock(count);
        }
    }
    // Nobody could sign anything: no image was taken.
    if (loader.takeRestart() || loader.runningSlot() != 0 || !(flash == sim::Flash()))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const bytes = reinterpret_cast<const char*>(data);
    readAnswers(QByteArrayView(bytes, static_cast<qsizetype>(size)));
    giveCommands({bytes, size});
    return 0;
}
