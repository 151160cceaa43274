// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphFile.h"
#include "document/DocumentBench.h"
#include "instrument/InstrumentEvents.h"
#include "recovery/RecoveryJournal.h"
#include "recovery/RecoveryStore.h"

#include <gtest/gtest.h>

/// A document, the signals of an instrument, and a folder for journals.
struct JournalBench : ::testing::Test
{
    DocumentBench bench;
    InstrumentEvents events;
    QString folder = bench.path(QStringLiteral("state/marrowick/recovery"));

    std::unique_ptr<RecoveryJournal> journal(const recovery::Limits& limits = {})
    {
        auto made = std::make_unique<RecoveryJournal>(folder, limits);
        made->listen(events);
        return made;
    }
    RecoveryStore store() const { return RecoveryStore(folder); }

    /// Point i of a sweep, different in every value from those of other sweeps.
    static void add(PenDocument& document, int point, int sweep)
    {
        document.AddImpedancePoint(1000.5 + point * 7.25, 50.125 + sweep * 100 + point, 12.5 + point % 70, 1, point);
    }
    void begin(PenDocument& document)
    {
        ASSERT_TRUE(document.SetPlotting({}));
        Q_EMIT events.sweepStarted(&document);
    }
    void measure(PenDocument& document, int point, int sweep)
    {
        add(document, point, sweep);
        document.SetModified();
        Q_EMIT events.pointStored(&document, point);
    }
    void sweep(PenDocument& document, int points, int number = 0)
    {
        begin(document);
        for (int point = 0; point < points; ++point)
            measure(document, point, number);
        document.SetViewing();
        Q_EMIT events.sweepEnded(&document);
    }
    /// The graph that a stored plot holds.
    static std::unique_ptr<GraphModel> graphOf(const ValueOr<QByteArray>& plot)
    {
        auto graph = std::make_unique<GraphModel>();
        EXPECT_TRUE(plot.ok()) << qPrintable(plot.sentence());
        if (plot) {
            EXPECT_TRUE(GraphFile::PEload(*graph, plot.value()).ok());
        }
        return graph;
    }
};
