// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/ConsoleWindow.h"

#include "document/PenDocument.h"

#include <QCoreApplication>

namespace cli {
namespace {

void call(const std::function<void()>& callback)
{
    if (callback)
        callback();
}

} // namespace

void ConsoleWindow::setActiveDocument(PenDocument* document)
{
    m_document = document;
}

PenDocument* ConsoleWindow::activeDocument() const
{
    return m_document;
}

void ConsoleWindow::penShowCurrent(int)
{
    call(onNextPen);
}

void ConsoleWindow::processEvents()
{
    QCoreApplication::processEvents();
}

void ConsoleWindow::setPenBarEnabled(bool enabled)
{
    call(enabled ? onViewing : onPlotting);
}

void ConsoleWindow::penSetActive(int iPenNumber)
{
    if (m_document)
        m_document->setCurrentPen(iPenNumber - 1);
}

void ConsoleWindow::endProgram()
{
    call(onEndProgram);
}

} // namespace cli
