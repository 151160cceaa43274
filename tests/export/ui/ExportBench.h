// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentBench.h"
#include "export/ui/ExportContext.h"
#include "support/FindControl.h"

#include <QApplication>
#include <QFile>

/// A document with two points in pen 1 and what the export windows work with.
struct ExportBench : DocumentBench
{
    ExportBench()
    {
        preferences.setValue(options::kExportFiles.option, folder.path());
        graph = document(plot::Impedance);
        graph->AddImpedancePoint(1000, 5, 6, -1, 0);
        graph->AddImpedancePoint(2000, 7, 8, 1, 1);
    }
    QByteArray content(const char* name) const
    {
        QFile file(path(QLatin1String(name)));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }
    void write(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(QLatin1String(name)));
        if (!file.open(QFile::WriteOnly) || file.write(bytes) != bytes.size())
            std::abort();
    }
    bool exists(const char* name) const { return QFile::exists(path(QLatin1String(name))); }

    std::unique_ptr<PenDocument> graph;
    ExportContext exports{preferences, messages, picker};
};
