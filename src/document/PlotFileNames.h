// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

/// Names of plot files by type of document (1 amplitude, 2 impedance, 3 reactance).
namespace PlotFileNames {

/// ".gad", ".gzd"; empty for a reactance document, whose plots are written without an extension.
QString extension(std::int16_t testType);
/// Filters of the save dialog as "Text|pattern"; empty for a reactance document.
QString saveFilter(std::int16_t testType);
/// Filters of the open dialog.
QString openFilter();
/// The name under which a plot is written: cut at its first "." anywhere, folders included, then the extension.
QString completed(const QString& fileName, std::int16_t testType);
/// True when that cut falls into the name of a folder, so that the plot would not be written where the name says.
bool isCutInFolder(const QString& fileName);
/// Name to propose for a document: the last component of its title, or "fileName" when a file cannot bear that.
QString proposed(const QString& title);
/// True when both name the same file.
bool sameFile(const QString& one, const QString& other);

} // namespace PlotFileNames
