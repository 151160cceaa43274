// SPDX-License-Identifier: GPL-3.0-or-later
// The check of a script of 1 MiB, against the time to read and tokenise it, and the memory that its program takes for
// each byte of scripts of several sizes. Exit code 1 when the limit is missed.
#include "controls/ferrolex/Ferrolex.h"
#include "controls/ferrolex/Finding.h"
#include "controls/ferrolex/Lexer.h"
#include "controls/ferrolex/Parser.h"
#include "controls/ferrolex/Source.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <malloc.h>
#include <vector>

namespace {

constexpr double kLimit = 100; // ms
constexpr qsizetype kMiB = 1024 * 1024;

/// A script as people write them, over and over, of that many bytes at most.
QByteArray scriptOf(qsizetype size)
{
    QByteArray script = "let good = 0\nlet limit = 60 Ohm\n";
    for (int part = 0;; ++part) {
        const QByteArray number = QByteArray::number(part);
        const QByteArray block = "# part " + number +
                                 "\n"
                                 "let low" +
                                 number +
                                 " = 35 kHz\n"
                                 "set start low" +
                                 number +
                                 "\n"
                                 "set end 4 * 11k + 0.5 kHz\n"
                                 "set points 400\n"
                                 "prompt \"Insert part {good:4} of the lot\"\n"
                                 "new impedance graph \"Part " +
                                 number +
                                 "\"\n"
                                 "sweep impedance\n"
                                 "if smallest level < limit and frequency of smallest > low" +
                                 number +
                                 " then\n"
                                 "  let good = good + 1\n"
                                 "  notice \"{good} good, at {round(frequency of smallest)} Hz\"\n"
                                 "end if\n"
                                 "save \"part" +
                                 number +
                                 "\"\n"
                                 "close graph\n";
        if (script.size() + block.size() > size)
            return script;
        script += block;
    }
}

double processorTime() // ms of this process, so that others on the machine do not count
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Milliseconds, median of some rounds.
double timeOf(const std::function<void()>& work)
{
    std::vector<double> times;
    for (int round = 0; round < 21; ++round) {
        const double begin = processorTime();
        work();
        times.push_back(processorTime() - begin);
    }
    std::nth_element(times.begin(), times.begin() + 10, times.end());
    return times[10];
}

} // namespace

int main()
{
    const QByteArray script = scriptOf(kMiB);
    std::size_t count = 0;
    const double reading = timeOf([&] {
        const ValueOr<ferrolex::Source> source = ferrolex::Source::of(script);
        std::vector<ferrolex::Token> tokens;
        for (int line = 1; line <= source.value().lineCount(); ++line) {
            ferrolex::lexLine(source.value().line(line), source.value().lineStart(line), tokens);
            count += tokens.size();
        }
    });
    std::int16_t code = Ferrolex::Unreadable;
    const double checking = timeOf([&] { code = Ferrolex().CheckBytes(script, 1.28, QStringLiteral("T46")); });
    std::printf("%lld bytes, %d lines, code %d\n", static_cast<long long>(script.size()),
                static_cast<int>(script.count('\n')), code);
    std::printf("read and tokenise %.1f ms (%zu tokens), check %.1f ms, %.1f times as long; limit %.0f ms\n", reading,
                count / 21, checking, checking / reading, kLimit);
    const QByteArray wrong = QByteArray("sett start 10k\n").repeated(kMiB / 15);
    std::printf("a mistake in every line: %.1f ms\n",
                timeOf([&] { Ferrolex().CheckBytes(wrong, 1.28, QStringLiteral("T46")); }));
    for (const qsizetype size : {kMiB / 16, kMiB / 4, kMiB}) {
        const ValueOr<ferrolex::Source> source = ferrolex::Source::of(scriptOf(size));
        ferrolex::Findings findings(source.value());
        const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        const ferrolex::Program program =
            ferrolex::parse(source.value(), {ferrolex::DeviceRanges(QStringLiteral("T46")), 1.28}, findings);
        const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
        std::printf("%lld bytes of script: a program of %.1f bytes for each, %zu statements\n",
                    static_cast<long long>(size), double(after - before) / double(size), program.statements.size());
    }
    return code == Ferrolex::Clean && checking < kLimit ? 0 : 1;
}
