// SPDX-License-Identifier: GPL-3.0-or-later
// One pen as a grid of text, and grids of all pens.
#include "document/ClipboardPort.h"
#include "document/DocumentHost.h"
#include "document/PenDocument.h"
#include "document/PenGrid.h"
#include "document/PenReader.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"

#include <QPointer>

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1Char kTab('\t');
/// The signed phase of a pen that was measured without phase.
constexpr QLatin1String kNoPhase("65536");

double number(QStringView text)
{
    return values::tolerantNumber(text);
}

/// Which grids a document takes: its own type, and impedance and reactance from each other.
bool fits(std::int16_t gridType, std::int16_t documentType)
{
    return gridType == documentType || (gridType == PenDocument::Impedance && documentType == PenDocument::Reactance) ||
           (gridType == PenDocument::Reactance && documentType == PenDocument::Impedance);
}

} // namespace

QString PenDocument::CopyLineData(int intSubset)
{
    if (!isPen(intSubset))
        return QString();
    QString grid = PenGrid::headerText({m_graph.XAxisLabel(), m_graph.SubsetLabels(intSubset), pgiTestType}) + kLineEnd;
    const int points = PenReader::pointCount(m_graph, intSubset);
    for (int point = 0; point < points; ++point) {
        grid += values::decimalText(m_graph.XData(intSubset, point));
        for (const int offset : {0, kPens, 3 * kPens, 2 * kPens}) {
            grid += kTab;
            grid += values::decimalText(m_graph.YData(intSubset + offset, point));
        }
        grid += kLineEnd;
    }
    if (m_context.clipboard != nullptr)
        m_context.clipboard->setText(grid);
    const QPointer<PenDocument> self(this);
    m_context.host.processEvents();
    if (self)
        SniffClipboardData();
    return grid;
}

void PenDocument::PasteLineData(int intSubset, const QString& strLineData)
{
    if (!isPen(intSubset))
        return;
    if (isLocked(intSubset)) {
        m_context.messages.message(tr("Unlock pen before paste"), UserMessages::Exclamation, tr("Data Paste"));
        return;
    }
    graphEraseLine(intSubset);
    bool phaseLost = false;
    const auto header = PenGrid::readHeader(strLineData);
    if (header && !header->xLabel.isEmpty()) {
        m_graph.setSubsetLabels(intSubset, header->penLabel);
        m_graph.setSubsetLabels(intSubset + kPens, header->penLabel);

        // Converted points take the road of measured ones, into the current pen.
        const std::int16_t currentPen = gCurrentPen;
        gCurrentPen = static_cast<std::int16_t>(intSubset);
        QStringView rest(strLineData);
        PenGrid::takeLine(rest);
        const bool paste = fits(header->testType, pgiTestType);
        for (int point = 0; paste && rest.size() >= 2 && point < m_graph.Points(); ++point) {
            QStringView x, y1, y2, y3, y4;
            if (!PenGrid::SplitData(PenGrid::takeLine(rest), x, y1, y2, y3, y4))
                break;
            if (header->testType == pgiTestType) {
                writePoint(number(x), number(y1), number(y2), number(y3), number(y4), point);
            } else if (header->testType == Impedance) {
                phaseLost = y3 == kNoPhase;
                if (phaseLost)
                    break;
                CalculateReactance(number(x), number(y1), number(y3), 1.0, point);
            } else {
                CalculateImpedance(number(x), number(y1), number(y3), point);
            }
        }
        gCurrentPen = currentPen;
    }
    if (phaseLost) {
        const QPointer<PenDocument> self(this);
        m_context.messages.message(tr("Cannot convert without phase data"), UserMessages::Exclamation,
                                   tr("Paste error"));
        if (!self)
            return;
    }
    SetModified();
    m_graph.PEactions(graph::Reinitialise);
}

bool PenDocument::SniffClipboardData()
{
    m_canPaste = false;
    if (m_context.clipboard != nullptr) {
        const auto header = PenGrid::readHeader(m_context.clipboard->text());
        m_canPaste = header && !header->xLabel.isEmpty() && fits(header->testType, pgiTestType);
    }
    m_graph.setCustomMenuState(PopupPaste, 0, m_canPaste ? graph::MenuNormal : graph::MenuGreyed);
    UpdateToolBars();
    return m_canPaste;
}

QString PenDocument::ExportToStringRows()
{
    const QPointer<PenDocument> self(this);
    QString grid = m_graph.MainTitle() + kLineEnd;
    for (int subset = 0; subset < kPens; ++subset) {
        grid += m_graph.SubsetLabels(subset);
        for (int point = 0; point < m_graph.Points(); ++point) {
            grid += kTab;
            grid += values::decimalText(m_graph.YData(subset, point));
            m_context.host.processEvents();
            if (!self)
                return QString();
        }
        grid += kLineEnd;
    }
    return grid;
}

QString PenDocument::ExportToStringColumns() const
{
    QString grid = m_graph.MainTitle() + kLineEnd + m_graph.XAxisLabel();
    for (int subset = 0; subset < m_graph.Subsets(); ++subset) {
        grid += kTab;
        grid += m_graph.SubsetLabels(subset);
    }
    grid += kLineEnd;
    for (int point = 0; point < m_graph.Points() && m_graph.XData(0, point) != 0.0F; ++point) {
        grid += values::decimalText(m_graph.XData(0, point));
        for (int subset = 0; subset < m_graph.Subsets(); ++subset) {
            grid += kTab;
            grid += values::decimalText(m_graph.YData(subset, point));
        }
        grid += kLineEnd;
    }
    return grid;
}
