// SPDX-License-Identifier: GPL-3.0-or-later
#include "architecture/Architecture.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>

#include <algorithm>

namespace architecture {
namespace {

using namespace Qt::StringLiterals;

const QStringList kWidgetLibraries = {u"Qt6::Widgets"_s, u"Qt6::PrintSupport"_s, u"Qt6::SvgWidgets"_s,
                                      u"QCustomPlotQt6"_s};

/// What a library brings along by itself.
const QMap<QString, QStringList> kBroughtAlong = {
    {u"Qt6::Gui"_s, {u"Qt6::Core"_s}},
    {u"Qt6::Widgets"_s, {u"Qt6::Gui"_s}},
    {u"Qt6::Svg"_s, {u"Qt6::Gui"_s}},
    {u"Qt6::PrintSupport"_s, {u"Qt6::Widgets"_s}},
    {u"Qt6::Network"_s, {u"Qt6::Core"_s}},
    {u"Qt6::SerialPort"_s, {u"Qt6::Core"_s}},
    {u"QCustomPlotQt6"_s, {u"Qt6::PrintSupport"_s}},
};

/// Comments become blanks, line ends stay, so that line numbers hold. Literals are respected.
QString withoutComments(const QString& text)
{
    static const QRegularExpression pattern(
        uR"re(R"([^(\s]*)\(.*?\)\g1"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'|//[^\n]*|/\*.*?(?:\*/|\z))re"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QString result;
    qsizetype done = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString found = match.captured();
        result += QStringView(text).sliced(done, match.capturedStart() - done);
        if (found.startsWith(u'/'))
            result += QString(found.count(u'\n'), u'\n');
        else
            result += found;
        done = match.capturedEnd();
    }
    result += QStringView(text).sliced(done);
    return result;
}

class Checker
{
public:
    Checker(const std::vector<Target>& map, const HeaderOwners& headers)
        : m_headers(headers)
    {
        for (const Target& target : map) {
            if (m_targets.contains(target.name))
                report(u"the target %1 stands in the map twice"_s.arg(target.name));
            m_targets.insert(target.name, &target);
            m_byFolder.insert(target.folder, &target);
        }
    }

    void checkMap()
    {
        for (const Target* target : std::as_const(m_targets)) {
            for (const QString& use : target->uses) {
                const Target* used = m_targets.value(use);
                if (!used && !use.contains("::"_L1) && use != "QCustomPlotQt6"_L1)
                    report(u"the target %1 uses %2, which is not in the map"_s.arg(target->name, use));
                if (used && used->kind == Kind::Program)
                    report(u"the target %1 uses the program %2"_s.arg(target->name, use));
            }
            const QSet<QString> all = reach(*target);
            if (all.contains(target->name))
                report(u"the target %1 uses itself by way of others"_s.arg(target->name));
            if (target->kind != Kind::Logic)
                continue;
            for (const QString& library : kWidgetLibraries) {
                if (all.contains(library))
                    report(u"the logic target %1 is linked to %2"_s.arg(target->name, library));
            }
        }
    }

    void checkFile(const QString& root, const QString& file)
    {
        const QString folder = file.left(file.lastIndexOf(u'/'));
        const Target* target = m_byFolder.value(folder);
        if (!target) {
            report(u"%1 belongs to no target of the map"_s.arg(file));
            return;
        }
        QFile source(root + u'/' + file);
        if (!source.open(QFile::ReadOnly)) {
            report(u"%1 cannot be read"_s.arg(file));
            return;
        }
        for (const Include& include : readIncludes(file, QString::fromUtf8(source.readAll()))) {
            if (include.angled)
                checkAngled(*target, include);
            else
                checkQuoted(*target, include, root, folder);
        }
    }

    QStringList takeReports()
    {
        m_reports.sort();
        return m_reports;
    }

private:
    void report(const QString& sentence) { m_reports.append(sentence); }

    void report(const Include& include, const QString& sentence)
    {
        report(u"%1:%2: %3"_s.arg(include.file).arg(include.line).arg(sentence));
    }

    /// Everything the target may use, directly or by way of others.
    const QSet<QString>& reach(const Target& target)
    {
        if (const auto known = m_reach.constFind(target.name); known != m_reach.constEnd())
            return *known;
        QSet<QString> all;
        QStringList open = target.uses;
        while (!open.isEmpty()) {
            const QString name = open.takeLast();
            if (all.contains(name))
                continue;
            all.insert(name);
            const Target* used = m_targets.value(name);
            open += used ? used->uses : kBroughtAlong.value(name);
        }
        return *m_reach.insert(target.name, all);
    }

    /// What its sources may include: a library what its line names, a program also what that uses.
    const QSet<QString>& allowed(const Target& target)
    {
        if (target.kind == Kind::Program)
            return reach(target);
        if (const auto known = m_allowed.constFind(target.name); known != m_allowed.constEnd())
            return *known;
        QSet<QString> names;
        for (QStringList open = target.uses; !open.isEmpty();) {
            const QString name = open.takeLast();
            names.insert(name);
            open += kBroughtAlong.value(name);
        }
        return *m_allowed.insert(target.name, names);
    }

    void checkAngled(const Target& target, const Include& include)
    {
        const QSet<QString> owners = m_headers.value(include.path);
        if (owners.isEmpty() || owners.intersects(allowed(target)))
            return;
        QStringList names(owners.begin(), owners.end());
        names.sort();
        report(include, u"<%1> is of %2, which the target %3 does not use"_s.arg(include.path, names.join(u" or "_s),
                                                                                 target.name));
    }

    void checkQuoted(const Target& target, const Include& include, const QString& root, const QString& folder)
    {
        if (include.path.endsWith(".moc"_L1))
            return;
        if (include.path.startsWith("ui_"_L1)) {
            if (target.kind == Kind::Logic)
                report(include, u"the logic target %1 includes the form \"%2\""_s.arg(target.name, include.path));
            return;
        }
        for (const QString& base : {u"src"_s, QString(), folder}) {
            const QString path = QDir::cleanPath(base.isEmpty() ? include.path : base + u'/' + include.path);
            if (!QFile::exists(root + u'/' + path))
                continue;
            const Target* owner = m_byFolder.value(path.left(path.lastIndexOf(u'/')));
            if (!owner)
                report(include, u"\"%1\" belongs to no target of the map"_s.arg(include.path));
            else if (owner->name != target.name && !allowed(target).contains(owner->name))
                report(include, u"\"%1\" is of %2, which the target %3 does not use"_s.arg(include.path, owner->name,
                                                                                           target.name));
            return;
        }
        if (!m_headers.contains(include.path))
            report(include, u"\"%1\" is nowhere in the tree"_s.arg(include.path));
        else
            checkAngled(target, include);
    }

    const HeaderOwners& m_headers;
    QMap<QString, const Target*> m_targets;
    QMap<QString, const Target*> m_byFolder;
    QMap<QString, QSet<QString>> m_reach;
    QMap<QString, QSet<QString>> m_allowed;
    QStringList m_reports;
};

} // namespace

std::vector<Target> readMap(const QString& text, QStringList& problems)
{
    static const QMap<QString, Kind> kinds = {
        {u"LOGIC"_s, Kind::Logic}, {u"UI"_s, Kind::Ui}, {u"PROGRAM"_s, Kind::Program}};
    std::vector<Target> map;
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(u'|');
        if (fields.size() != 4 || !kinds.contains(fields[1]))
            problems.append(u"the map's line \"%1\" names no target"_s.arg(line));
        else
            map.push_back({fields[0], kinds[fields[1]], fields[2], fields[3].split(u';', Qt::SkipEmptyParts)});
    }
    return map;
}

std::vector<Include> readIncludes(const QString& file, const QString& text)
{
    static const QRegularExpression pattern(uR"re(^[ \t]*#[ \t]*include[ \t]*(?:<([^>\n]+)>|"([^"\n]+)"))re"_s);
    std::vector<Include> includes;
    int line = 0;
    for (const QString& content : withoutComments(text).split(u'\n')) {
        ++line;
        const QRegularExpressionMatch match = pattern.match(content);
        if (!match.hasMatch())
            continue;
        const bool angled = match.hasCaptured(1);
        includes.push_back({file, line, match.captured(angled ? 1 : 2), angled});
    }
    return includes;
}

HeaderOwners installedHeaders()
{
    HeaderOwners owners;
    const QString base = QLibraryInfo::path(QLibraryInfo::HeadersPath);
    for (const QString& module : {u"Core"_s, u"Gui"_s, u"Widgets"_s, u"PrintSupport"_s, u"Svg"_s, u"SvgWidgets"_s,
                                  u"SerialPort"_s, u"Network"_s, u"Test"_s}) {
        for (const QString& header : QDir(base + u"/Qt"_s + module).entryList(QDir::Files)) {
            owners[header].insert(u"Qt6::"_s + module);
            owners[u"Qt%1/%2"_s.arg(module, header)].insert(u"Qt6::"_s + module);
        }
    }
    owners[u"qcustomplot.h"_s].insert(u"QCustomPlotQt6"_s);
    for (const QString& header : {u"Cholesky"_s, u"Core"_s, u"Dense"_s, u"Eigen"_s, u"Eigenvalues"_s, u"Geometry"_s,
                                  u"LU"_s, u"QR"_s, u"SVD"_s})
        owners[u"Eigen/"_s + header].insert(u"Eigen3::Eigen"_s);
    return owners;
}

QStringList violations(const std::vector<Target>& map, const QString& root, const HeaderOwners& headers)
{
    Checker checker(map, headers);
    checker.checkMap();
    for (const QString& top : {u"src"_s, u"sim"_s}) {
        QDirIterator files(root + u'/' + top, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            checker.checkFile(root, QDir(root).relativeFilePath(files.next()));
    }
    return checker.takeReports();
}

} // namespace architecture
