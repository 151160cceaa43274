// SPDX-License-Identifier: GPL-3.0-or-later
// The byte framer under arbitrary bytes in arbitrary chunks: what it hands out must not depend on the chunks, every
// piece must end one byte behind a carriage return, and memory must stay within its promise.
#include "controls/korvalink/FrameBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

constexpr qint64 kRun = 200;
constexpr qint64 kLimit = 4096;

void check(bool held)
{
    if (!held)
        std::abort();
}

void readInto(FrameBuffer& buffer, std::string& seen, qint64 count)
{
    char bytes[kLimit];
    const qint64 got = buffer.read(bytes, std::min(count, kLimit));
    check(got >= 0 && got <= count);
    check(got == 0 || (got >= 2 && bytes[got - 2] == '\r'));
    seen.append(bytes, std::size_t(got));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const auto* bytes = reinterpret_cast<const char*>(data);

    // Kept from run to run: clear() has to leave nothing behind, and making them anew would take most of the time.
    static FrameBuffer chunked(kRun, kLimit);
    static FrameBuffer single(kRun, kLimit);
    static FrameBuffer unread(kRun, kLimit / 16);
    chunked.clear();
    single.clear();
    unread.clear();
    static std::string fromChunks;
    static std::string fromParts;
    fromChunks.clear();
    fromParts.clear();
    std::uint32_t step = data[0];
    for (std::size_t at = 1; at < size;) {
        step = step * 1103515245u + 12345u;
        const std::size_t chunk = std::min<std::size_t>(1 + (step >> 16) % 300, size - at);
        chunked.append(bytes + at, qint64(chunk));
        unread.append(bytes + at, qint64(chunk));
        check(unread.wholeBytes() <= kLimit / 16);
        check(chunked.wholeWithin(67) <= 67);
        readInto(chunked, fromChunks, kLimit);
        for (std::size_t i = 0; i < chunk;) {
            const std::size_t part = std::min<std::size_t>(1 + (step >> 4) % 31, chunk - i);
            single.append(bytes + at + i, qint64(part));
            i += part;
        }
        readInto(single, fromParts, qint64((step >> 8) % 512));
        readInto(single, fromParts, kLimit);
        at += chunk;
        check(chunked.capacity() <= 2 * 65536);
    }
    check(fromChunks == fromParts);
    check(chunked.droppedBytes() == single.droppedBytes());
    return 0;
}
