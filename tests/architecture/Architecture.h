// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

/// Holds the sources against the map of targets: who may include whom, and who may know of widgets.
namespace architecture {

enum class Kind
{
    Logic,
    Ui,
    Program
};

/// One target of the map: the files directly in its folder belong to it.
struct Target
{
    QString name;
    Kind kind = Kind::Logic;
    QString folder; ///< relative to the source tree, "src/document/ui"
    QStringList uses;
};

/// The map as the build wrote it: one "name|KIND|folder|use;use" a line. Lines that are none of these are reported.
std::vector<Target> readMap(const QString& text, QStringList& problems);

struct Include
{
    QString file; ///< relative to the source tree
    int line = 0;
    QString path;
    bool angled = false;
};

/// The #include lines of a source text; those inside comments are left out.
std::vector<Include> readIncludes(const QString& file, const QString& text);

/// Which library each header comes from: file name as it stands in an angled include ("QWidget", "QtWidgets/QWidget",
/// "qcustomplot.h") to the targets that provide it ("Qt6::Widgets").
using HeaderOwners = QMap<QString, QSet<QString>>;

/// Headers of the installed Qt modules that the map may name, of the plotting library and of the linear algebra.
HeaderOwners installedHeaders();

/// Every violation as one sentence with file and line; empty when the tree fits its map. Looks at src and sim below
/// root.
QStringList violations(const std::vector<Target>& map, const QString& root, const HeaderOwners& headers);

} // namespace architecture
