// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

class GraphModel;

/// The plot file: a whole graph, data and properties, as CBOR (RFC 8949). docs/plot-file.md describes the layout.
///
/// Loading validates everything before it touches the graph: after a failure the graph is as it was. No length or count
/// of the file is believed; work and memory are bounded by the bytes that are really there. Numbers come back bit for
/// bit, not-a-number and infinities in the data included. Entries that this program does not know are kept and saved
/// again.
namespace GraphFile {

inline constexpr qint64 kLargestFile = 16 * 1024 * 1024; ///< bytes; a full graph takes about a third of a megabyte
inline constexpr int kFormatVersion = 1;

/// Writes the graph beside the old file and puts it in its place only when all of it is on the disk. After a failure, a
/// crash or a full disk the old file is there, whole. A graph that would make a file too large to be read is refused.
Outcome PEsavetofile(const GraphModel& model, const QString& fileName);

/// Fails, with the graph untouched, for a file that is missing, too large, damaged, of a newer format or of another
/// size of graph. The sentence says what is wrong with the file.
Outcome PEloadfromfile(GraphModel& model, const QString& fileName);

/// The same to and from memory. items: when given, takes how many items of the file were looked at, a measure of the
/// work.
QByteArray PEstore(const GraphModel& model);
Outcome PEload(GraphModel& model, const QByteArray& bytes, std::uint64_t* items = nullptr);

} // namespace GraphFile
