// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/ResultLine.h"

#include "controls/graph/GraphModel.h"
#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"

#include <QLocale>

namespace resultline {
namespace {

using namespace Qt::StringLiterals;

constexpr int kBottomCentre = 4;
constexpr std::uint32_t kTransparent = 1;

QString headed(int pen, const QString& label)
{
    return QString::number(pen + 1) + u") ["_s + label + u"] - "_s;
}

void putText(GraphModel& graph, const QString& text)
{
    const TableScope scope(graph, graphtexts::kCreditTable);
    graph.setTARows(1);
    graph.setTAColumns(2);
    graph.setTATextSize(100);
    graph.setTAText(0, 1, text);
    graph.setShowTableAnnotation(true);
    graph.setTALocation(kBottomCentre);
    graph.setTABackColor(kTransparent);
    graph.setTAJustification(0, 1, 1);
    graph.setTABorder(2);
    graph.setTAHeaderColumn(false);
}

void clearPieces(GraphModel& graph)
{
    for (int k = 0; k < kPieces; ++k)
        graph.setSubsetLabels(kFirstPiece + k, {});
}

} // namespace

QString grouped(double value)
{
    return QLocale().toString(value, 'f', 2);
}

QString plain(double value)
{
    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', 2);
}

QString resonance(int pen, const QString& label, const Measures& measures)
{
    QString text;
    if (measures.f1)
        text += u"F1:"_s + *measures.f1 + u" Hz "_s;
    if (measures.f2)
        text += u"F2:"_s + *measures.f2 + u" Hz "_s;
    if (measures.fr)
        text += u"Fr:"_s + *measures.fr + u" Hz "_s;
    if (measures.zr)
        text += u"Zr:"_s + *measures.zr + u" Ohms "_s;
    if (measures.q)
        text += u"Q:"_s + *measures.q + measures.behindQ;
    return text.isEmpty() ? text : headed(pen, label) + text;
}

QString capacitance(int pen, const QString& label, const QString& frequency, const QString& capacitance)
{
    return headed(pen, label) + u"Clf at "_s + frequency + u" Hz = "_s + capacitance;
}

QString joined(const QString& resonance, const QString& capacitance)
{
    return resonance.isEmpty() || capacitance.isEmpty() ? resonance + capacitance : resonance + u": "_s + capacitance;
}

bool show(GraphModel& graph, const QString& line)
{
    if (line.isEmpty())
        return false;
    putText(graph, line);
    graph.setWorkingTable(graphtexts::kMaskTable);
    clearPieces(graph);
    // Each label holds the rest of the line from its own start.
    QString rest = line;
    for (int k = 0; k < kPieces; ++k) {
        graph.setSubsetLabels(kFirstPiece + k, rest);
        if (rest.size() <= kPieceLength)
            break;
        rest = rest.mid(kPieceLength);
    }
    graph.PEactions(graph::Reinitialise);
    return true;
}

void remove(GraphModel& graph)
{
    putText(graph, graphtexts::kCredit);
    graph.setWorkingTable(graphtexts::kMaskTable);
    clearPieces(graph);
    graph.PEactions(graph::Reinitialise);
}

} // namespace resultline
