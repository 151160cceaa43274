// SPDX-License-Identifier: GPL-3.0-or-later
// Locks, display, colours and erasure of the pens.
#include "document/DocumentHost.h"
#include "document/GraphScope.h"
#include "document/GraphTexts.h"
#include "document/PenDocument.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QPointer>

#include <algorithm>

namespace {

/// One empty line: the source for erasing a subset.
const std::array<float, 1024>& gsngBlankLine()
{
    static const std::array<float, 1024> line = [] {
        std::array<float, 1024> blank;
        blank.fill(graph::kNullValue);
        return blank;
    }();
    return line;
}

bool isMaskPen(int pen)
{
    return pen == 8 || pen == 9;
}

} // namespace

std::int16_t PenDocument::GetPenLock(int Index) const
{
    return isLocked(Index) ? 1 : 0;
}

bool PenDocument::activeDocumentHasMasks() const
{
    PenDocument* active = m_context.host.activeDocument();
    if (active == nullptr)
        return false;
    const TableScope scope(active->m_graph, graphtexts::kMaskTable);
    return active->m_graph.TAText(0, 0) == graphtexts::kMask;
}

std::int16_t PenDocument::TogglePenLock(int Index)
{
    if (!isPen(Index))
        return 0;
    if (isMaskPen(Index) && activeDocumentHasMasks()) {
        const QPointer<PenDocument> self(this);
        const std::int16_t lock = GetPenLock(Index);
        m_context.messages.message(tr("Disable mask before unlocking pen"), UserMessages::Exclamation,
                                   tr("Masks Enabled"));
        return self ? GetPenLock(Index) : lock;
    }
    bool& lock = gbfPenLock[static_cast<std::size_t>(Index)];
    lock = !lock;
    UpdateToolBars();
    SetModified();
    return GetPenLock(Index);
}

void PenDocument::UpdatePenLock(int Index, bool bfLock)
{
    if (!isPen(Index))
        return;
    gbfPenLock[static_cast<std::size_t>(Index)] = bfLock;
    UpdateToolBars();
}

void PenDocument::LockAllPens()
{
    gbfPenLock.fill(true);
    gbfModified = true;
    UpdateToolBars();
}

void PenDocument::UnlockAllPens()
{
    gbfPenLock.fill(false);
    gbfModified = true;
}

std::int16_t PenDocument::GetPenDisplay(int Index) const
{
    return isHidden(Index) ? 1 : 0;
}

std::int16_t PenDocument::TogglePenDisplay(int Index)
{
    if (!isPen(Index))
        return 0;
    UpdatePenHide(Index, !isHidden(Index));
    if (std::all_of(gbfPenHide.begin(), gbfPenHide.end(), [](bool hidden) { return hidden; })) {
        DisplayAllPens();
        UpdatePenHide(Index, isHidden(Index));
    }
    return GetPenDisplay(Index);
}

void PenDocument::UpdatePenHide(int Index, bool bfHide)
{
    if (!isPen(Index))
        return;
    gbfPenHide[static_cast<std::size_t>(Index)] = bfHide;
    graphUpdateDisplayedPens();
    UpdateToolBars();
    SetModified();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::DisplayAllPens()
{
    gbfPenHide.fill(false);
    graphUpdateDisplayedPens();
    SetModified();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::SetPenColour(int Index, std::uint32_t Colour)
{
    if (!isPen(Index))
        return;
    for (int subset = Index; subset < m_graph.Subsets(); subset += kPens)
        m_graph.setSubsetColors(subset, Colour);
    m_graph.PEactions(graph::Reinitialise);
    UpdateToolBars();
    SetModified();
}

bool PenDocument::SelectNextPen()
{
    if (m_context.preferences.value(options::kLockPenAfterPlot))
        UpdatePenLock(gCurrentPen, true);
    for (int step = 1; step <= kPens; ++step) {
        const int pen = (gCurrentPen + step) % kPens;
        if (isLocked(pen))
            continue;
        gCurrentPen = static_cast<std::int16_t>(pen);
        m_context.host.penShowCurrent(pen + 1);
        UpdateToolBars();
        return true;
    }
    UpdateToolBars();
    return false;
}

bool PenDocument::TestCurrentPenLock() const
{
    return isLocked(gCurrentPen);
}

void PenDocument::setCurrentPen(int Index)
{
    if (isPen(Index))
        gCurrentPen = static_cast<std::int16_t>(Index);
}

void PenDocument::DefaultToolBars()
{
    m_context.host.defaultToolBars();
}

void PenDocument::UpdateToolBars()
{
    if (m_gbfInitialised)
        m_context.host.updateToolBars(*this);
}

void PenDocument::graphEraseLine(int Index)
{
    if (!isPen(Index) || isLocked(Index))
        return;
    const auto& blank = gsngBlankLine();
    static_assert(std::tuple_size_v<std::remove_cvref_t<decltype(blank)>> == 1024);
    for (int subset = Index; subset < m_graph.Subsets(); subset += kPens)
        m_graph.PEvsetEx(GraphModel::PEP_faYDATA, subset * m_graph.Points(), static_cast<int>(blank.size()),
                         blank.data());
    gbfModified = true;
}

void PenDocument::graphResetPenName(int Index)
{
    if (!isPen(Index))
        return;
    const QString name = QStringLiteral("Pen %1").arg(Index + 1);
    m_graph.setSubsetLabels(Index, name);
    m_graph.setSubsetLabels(Index + kPens, name);
    SetModified();
}

void PenDocument::graphResetData()
{
    m_graph.setMainTitle(graphtexts::kNoTitle);
    m_graph.setSubTitle(QString());
    for (int pen = 0; pen < kPens; ++pen) {
        graphResetPenName(pen);
        graphEraseLine(pen);
    }
}

void PenDocument::KeyPressed(QChar key)
{
    if (m_context.state.gbfPlotting)
        return;
    const QPointer<PenDocument> self(this);
    if (key >= QLatin1Char('0') && key <= QLatin1Char('9')) {
        const int pen = (key.unicode() - u'0' + kPens - 1) % kPens;
        setCurrentPen(pen);
        m_context.host.penShowCurrent(pen + 1);
    } else if (key == QLatin1Char('L') || key == QLatin1Char('l')) {
        TogglePenLock(gCurrentPen);
    } else if (key == QLatin1Char('V') || key == QLatin1Char('v')) {
        TogglePenDisplay(gCurrentPen);
    } else {
        return;
    }
    if (self)
        UpdateToolBars();
}
