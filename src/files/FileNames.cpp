// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileNames.h"

#include <algorithm>

namespace files {
namespace {

qsizetype lastSeparator(const QString& path)
{
    return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
}

} // namespace

QString PathOfFile(const QString& strFileName)
{
    return strFileName.first(lastSeparator(strFileName) + 1);
}

QString FileOfPath(const QString& strFileName)
{
    return strFileName.sliced(lastSeparator(strFileName) + 1);
}

bool IsValidFileName(const QString& strFileName)
{
    static constexpr QStringView kForbidden = u"\\/:*?\"<>|";
    return std::none_of(strFileName.begin(), strFileName.end(), [](QChar c) { return kForbidden.contains(c); });
}

QString RemoveQuotes(QString& strText)
{
    return strText.remove(u'"');
}

} // namespace files
