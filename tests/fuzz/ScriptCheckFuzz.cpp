// SPDX-License-Identifier: GPL-3.0-or-later
// The checker under arbitrary bytes: it ends, keeps to its bounds, points into the script, and judges the same bytes
// the same way twice.
#include "controls/ferrolex/Ferrolex.h"

#include <QByteArray>

#include <cstdlib>

namespace {

void check(bool held)
{
    if (!held)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray script(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    Ferrolex ferrolex;
    const std::int16_t code = ferrolex.CheckBytes(script, 1.28, QStringLiteral("T46"));
    check(code >= Ferrolex::Clean && code <= Ferrolex::Unreadable);
    check((code == Ferrolex::Clean) == ferrolex.findings().empty());
    for (const ferrolex::Finding& finding : ferrolex.findings()) {
        check(finding.line >= 1 && finding.column >= 1 && !finding.sentence.isEmpty());
        check(finding.line <= 1 + script.count('\n') + script.count('\r'));
    }
    QString text;
    ferrolex.GetMessages(Ferrolex::kLongestMessages, text);
    check(text.size() <= Ferrolex::kLongestMessages && text.isEmpty() == (code == Ferrolex::Clean));
    QString little;
    ferrolex.GetMessages(200, little);
    check(little.size() <= 200);
    Ferrolex again;
    check(again.CheckBytes(script, 1.28, QStringLiteral("T46")) == code);
    QString same;
    again.GetMessages(Ferrolex::kLongestMessages, same);
    check(same == text);
    return 0;
}
