// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/PlotFileNames.h"

#include "document/content/TestType.h"
#include "files/FileNames.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace PlotFileNames {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(PlotFileNames)
};

} // namespace

QString extension(std::int16_t testType)
{
    switch (testType) {
    case plot::Amplitude:
        return QStringLiteral(".gad");
    case plot::Impedance:
        return QStringLiteral(".gzd");
    default:
        return QString();
    }
}

QString saveFilter(std::int16_t testType)
{
    switch (testType) {
    case plot::Amplitude:
        return Texts::tr("Amplitude files (*.gad)|*.gad");
    case plot::Impedance:
        return Texts::tr("Impedance files (*.gzd)|*.gzd");
    default:
        return QString();
    }
}

QString openFilter()
{
    return Texts::tr("All plot files(*.*)|*.*|Amplitude plot files(*.gad)|*.gad|Impedance plot files(*.gzd)|*.gzd");
}

QString completed(const QString& fileName, std::int16_t testType)
{
    return fileName.left(fileName.indexOf(QLatin1Char('.'))) + extension(testType);
}

bool isCutInFolder(const QString& fileName)
{
    return files::PathOfFile(fileName).contains(QLatin1Char('.'));
}

QString proposed(const QString& title)
{
    const QString name = files::FileOfPath(title);
    return name.isEmpty() || !files::IsValidFileName(name) ? QStringLiteral("fileName") : name;
}

bool sameFile(const QString& one, const QString& other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    if (one == other)
        return true;
    const QString canonical = QFileInfo(one).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(other).canonicalFilePath();
}

} // namespace PlotFileNames
