// SPDX-License-Identifier: GPL-3.0-or-later
#include "architecture/MapPage.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace architecture {
namespace {

using namespace Qt::StringLiterals;

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList codeIn(const QString& text)
{
    static const QRegularExpression code(u"`([^`]+)`"_s);
    QStringList found;
    for (auto matches = code.globalMatch(text); matches.hasNext();)
        found.append(matches.next().captured(1));
    return found;
}

void addWords(const QString& text, QSet<QString>& words)
{
    static const QRegularExpression word(u"[A-Za-z_][A-Za-z0-9_]*"_s);
    for (auto matches = word.globalMatch(text); matches.hasNext();)
        words.insert(matches.next().captured());
}

/// A line of the table of folders.
struct Row
{
    QStringList folders;
    QStringList parts; ///< what its text names in code
};

std::vector<Row> rowsOf(const QString& page)
{
    std::vector<Row> rows;
    for (const QString& line : page.split(u'\n')) {
        if (!line.startsWith("| `"_L1))
            continue;
        Row row;
        // Behind the first of a line stand its neighbours.
        for (const QString& name : codeIn(line.section(u'|', 1, 1))) {
            const bool neighbour = !row.folders.isEmpty() && !name.contains(u'/');
            row.folders += neighbour ? row.folders.front().section(u'/', 0, -2) + u'/' + name : name;
        }
        row.parts = codeIn(line.section(u'|', 2));
        rows.push_back(row);
    }
    return rows;
}

class PageChecker
{
public:
    PageChecker(const QString& page, const std::vector<Target>& map, const QString& root)
        : m_page(page)
        , m_map(map)
        , m_root(root)
        , m_rows(rowsOf(page))
    {
        readTree();
    }

    QStringList check()
    {
        checkRows();
        checkOrder();
        QStringList outside;
        for (const QString& line : m_page.split(u'\n'))
            outside += line.startsWith("| `"_L1) ? QString() : line;
        for (const QString& code : codeIn(outside.join(u'\n')))
            checkCode(code.simplified());
        m_reports.removeDuplicates();
        return m_reports;
    }

private:
    void readTree()
    {
        for (const QString& top : {u"src"_s, u"sim"_s, u"tests"_s, u"bench"_s, u"cmake"_s, u"packaging"_s}) {
            QDirIterator files(m_root + u'/' + top, QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString path = files.next();
                m_files += QDir(m_root).relativeFilePath(path);
                static const QRegularExpression read(u"\\.(cpp|h|cmake|txt|py)$"_s);
                if (!path.contains(read))
                    continue;
                const QString text = textOf(path);
                QSet<QString> words;
                addWords(text, words);
                m_words += words;
                if (path.endsWith(".h"_L1))
                    m_headers.push_back({text, words});
            }
        }
        for (const QString& file : {u"CMakeLists.txt"_s, u"CMakePresets.json"_s, u"test"_s, u"run"_s})
            addWords(textOf(m_root + u'/' + file), m_words);
    }

    void checkRows()
    {
        for (const Row& row : m_rows) {
            for (const QString& folder : row.folders) {
                if (!QDir(m_root + u'/' + folder).exists())
                    m_reports += u"the folder %1 is not there"_s.arg(folder);
            }
            for (const QString& part : row.parts) {
                const bool isFolder = std::ranges::any_of(row.folders, [&](const QString& folder) {
                    return QDir(m_root + u'/' + folder + u'/' + part).exists();
                });
                if (!isFolder && !isProgram(part))
                    m_reports += u"%1 has no folder %2"_s.arg(row.folders.front(), part);
            }
        }
    }

    bool isProgram(const QString& name) const
    {
        return std::ranges::any_of(
            m_map, [&](const Target& target) { return target.kind == Kind::Program && target.name == name; });
    }

    /// The line of the table that a folder belongs to: the one that names most of its path.
    int lineOf(const QString& folder) const
    {
        int line = -1;
        qsizetype named = 0;
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            for (const QString& known : m_rows[i].folders) {
                const bool within = folder == known || folder.startsWith(known + u'/');
                if (within && known.size() > named) {
                    named = known.size();
                    line = static_cast<int>(i);
                }
            }
        }
        return line;
    }

    void checkOrder()
    {
        for (const Target& target : m_map) {
            const int line = lineOf(target.folder);
            if (line < 0)
                m_reports += u"the table leaves out %1"_s.arg(target.folder);
            for (const Target& used : m_map) {
                if (line >= 0 && target.uses.contains(used.name) && lineOf(used.folder) > line)
                    m_reports += u"%1 uses %2, which stands below it in the table"_s.arg(target.folder, used.folder);
            }
        }
    }

    bool isFile(const QString& path) const
    {
        return QFile::exists(m_root + u'/' + path) || QFile::exists(m_root + u"/src/"_s + path) ||
               std::ranges::any_of(m_files, [&](const QString& file) { return file.endsWith(u'/' + path); });
    }

    void checkCode(const QString& code)
    {
        static const QRegularExpression path(u"^[\\w.-]*(/[\\w.-]*)+$|^[\\w-]*\\.(cpp|h|md|txt|py)$"_s);
        static const QRegularExpression name(u"^(\\w+)(?:::(\\w+))?$"_s);
        // Of a command each word; of what stands for many files nothing.
        if (code.contains(u' ')) {
            for (const QString& word : code.split(u' '))
                checkWordOfCommand(word);
        } else if (const auto match = name.match(code); match.hasMatch()) {
            checkName(match.captured(1), match.captured(2));
        } else if (path.match(code).hasMatch() && !isFile(code)) {
            m_reports += u"there is no %1"_s.arg(code);
        }
    }

    void checkWordOfCommand(const QString& word)
    {
        if (word.contains(u'='))
            checkWordOfCommand(word.section(u'=', 0, 0));
        else if (word.contains("/bin/"_L1))
            checkProgram(word.section(u'/', -1));
        else if (word.contains(u'/') && !word.startsWith("build/"_L1))
            checkCode(word);
        else if (word.startsWith("MARROWICK_"_L1))
            checkName(word, {});
    }

    void checkProgram(const QString& program)
    {
        const QString lists = textOf(m_root + u"/tests/CMakeLists.txt"_s);
        if (!program.startsWith("test_"_L1) || !lists.contains(u"mg_tests("_s + program.mid(5) + u' '))
            m_reports += u"there is no program %1"_s.arg(program);
    }

    /// A name of the sources, or one within a class or namespace: then a header that defines this has it.
    void checkName(const QString& outer, const QString& inner)
    {
        if (inner.isEmpty()) {
            const bool isEnding = outer.startsWith(u'_');
            if (!isEnding && !m_words.contains(outer) && !isFile(outer))
                m_reports += u"the name %1 is nowhere"_s.arg(outer);
            return;
        }
        const QRegularExpression definition(u"\\b(?:class|struct|namespace|enum)\\s+"_s + outer + u"\\b(?!\\s*;)"_s);
        const bool known = std::ranges::any_of(m_headers, [&](const Header& header) {
            return header.words.contains(inner) && header.text.contains(definition);
        });
        if (!known)
            m_reports += u"%1 has no %2"_s.arg(outer, inner);
    }

    struct Header
    {
        QString text;
        QSet<QString> words;
    };
    QString m_page;
    const std::vector<Target>& m_map;
    QString m_root;
    std::vector<Row> m_rows;
    QStringList m_files;
    QSet<QString> m_words;
    std::vector<Header> m_headers;
    QStringList m_reports;
};

} // namespace

QStringList pageViolations(const QString& page, const std::vector<Target>& map, const QString& root)
{
    return PageChecker(page, map, root).check();
}

QStringList unbuiltTests(const QString& lists, const QString& root)
{
    static const QRegularExpression holdsTests(u"^TEST(_F|_P)?\\("_s, QRegularExpression::MultilineOption);
    const QDir tree(root);
    QStringList folders;
    QDirIterator files(root + u"/tests"_s, {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        const QString folder = tree.relativeFilePath(file.section(u'/', 0, -2));
        const QRegularExpression program(u"^mg_tests\\(\\w+\\s+"_s + QRegularExpression::escape(folder) + u"[\\s)]"_s,
                                         QRegularExpression::MultilineOption);
        if (!folders.contains(folder) && textOf(file).contains(holdsTests) && !lists.contains(program))
            folders.append(folder);
    }
    folders.sort();
    return folders;
}

} // namespace architecture
