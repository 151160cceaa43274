// SPDX-License-Identifier: GPL-3.0-or-later
// Listing pages from anywhere: the name found is a bare file name whose version is a number, or there is none.
#include "update/web/ListingPage.h"
#include "update/web/UpdateVersion.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray page(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const char* tag : {"MG", "T46", "DT46"}) {
        const QString name = listingpage::fileWithTag(page, QLatin1String(tag));
        if (name.isEmpty())
            continue;
        if (!name.startsWith(QLatin1String(tag)) || name.contains(u'/') || name.contains(QLatin1String("..")) ||
            name.contains(QChar(0)) || name.toUtf8().size() > 255 || !page.contains(name.toUtf8()))
            std::abort();
        if (!std::isfinite(updateversion::GetVersionFromFileName(name)))
            std::abort();
    }
    // Versions of names that no listing gives are numbers as well.
    if (!std::isfinite(updateversion::GetVersionFromFileName(QString::fromUtf8(page.left(4096)))))
        std::abort();
    return 0;
}
