// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/Pens.h"

#include <QTime>

#include <algorithm>

namespace {

/// One empty line: the source for erasing a subset.
const std::array<float, plot::kPoints>& gsngBlankLine()
{
    static const std::array<float, plot::kPoints> line = [] {
        std::array<float, plot::kPoints> blank;
        blank.fill(graph::kNullValue);
        return blank;
    }();
    return line;
}

QString numberedName(int pen)
{
    return QStringLiteral("Pen %1").arg(pen + 1);
}

} // namespace

void Pens::setLocked(int pen, bool locked)
{
    if (isPen(pen))
        m_locked[static_cast<std::size_t>(pen)] = locked;
}

std::optional<int> Pens::nextUnlocked(int pen) const
{
    for (int step = 1; step <= plot::kPens; ++step) {
        const int next = (pen + step) % plot::kPens;
        if (!isLocked(next))
            return next;
    }
    return std::nullopt;
}

void Pens::storeLocks()
{
    QString text(plot::kPens, QLatin1Char('0'));
    for (int pen = 0; pen < plot::kPens; ++pen) {
        if (isLocked(pen))
            text[pen] = QLatin1Char('X');
    }
    m_graph.setMultiSubTitles(0, text);
}

void Pens::readLocks()
{
    const QString text = m_graph.MultiSubTitles(0);
    for (int pen = 0; pen < plot::kPens; ++pen)
        setLocked(pen, pen < text.size() && text.at(pen) == QLatin1Char('X'));
}

void Pens::setHidden(int pen, bool hidden)
{
    if (isPen(pen))
        m_hidden[static_cast<std::size_t>(pen)] = hidden;
}

bool Pens::areAllHidden() const
{
    return std::all_of(m_hidden.begin(), m_hidden.end(), [](bool hidden) { return hidden; });
}

void Pens::setColour(int pen, std::uint32_t colour)
{
    if (!isPen(pen))
        return;
    for (int subset = pen; subset < m_graph.Subsets(); subset += plot::kPens)
        m_graph.setSubsetColors(subset, colour);
}

void Pens::setLineType(int pen, int type)
{
    if (!isPen(pen))
        return;
    for (int subset = pen; subset < m_graph.Subsets(); subset += plot::kPens)
        m_graph.setSubsetLineTypes(subset, type);
}

void Pens::setName(int pen, const QString& name)
{
    if (!isPen(pen))
        return;
    m_graph.setSubsetLabels(pen, name);
    m_graph.setSubsetLabels(pen + plot::kPens, name);
}

void Pens::resetName(int pen)
{
    setName(pen, numberedName(pen));
}

bool Pens::isNamedByUser(int pen) const
{
    const QString present = name(pen);
    return present != numberedName(pen) && !QTime::fromString(present, QStringLiteral("HH:mm:ss")).isValid();
}

bool Pens::erase(int pen)
{
    if (!isPen(pen) || isLocked(pen))
        return false;
    const auto& blank = gsngBlankLine();
    for (int subset = pen; subset < m_graph.Subsets(); subset += plot::kPens)
        m_graph.PEvsetEx(GraphModel::PEP_faYDATA, subset * m_graph.Points(), static_cast<int>(blank.size()),
                         blank.data());
    return true;
}

bool Pens::hasData(int pen) const
{
    const float null = m_graph.NullDataValueY();
    const auto values = m_graph.yArray(isPen(pen) ? pen : -1);
    return std::any_of(values.begin(), values.end(), [null](float y) { return y != null; });
}
