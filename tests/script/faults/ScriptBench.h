// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkFixture.h"
#include "script/DocumentsInMemory.h"
#include "script/FerrolexChecker.h"
#include "script/ScriptActions.h"
#include "script/ScriptHost.h"
#include "script/ScriptWindows.h"
#include "sim/Instrument.h"
#include "sim/parts/PartFile.h"
#include "sim/port/Line.h"
#include "sim/script/Interpreter.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

/// The host of scripts, and at the far end of a transport in memory the simulated instrument behind a line with faults.
/// The instrument's time passes only when nothing else is left to do, so a run takes no longer than its work.
class ScriptBench : public LinkFixture, private ScriptWindows
{
public:
    using LinkFixture::device;
    using LinkFixture::messages;
    using LinkFixture::panel;
    using LinkFixture::peer;
    using LinkFixture::state;
    using LinkFixture::window;

    explicit ScriptBench(const QString& faults = {}, std::uint64_t seed = 1)
        : m_line(planOf(faults), seed)
    {
        sim::Instrument::Setup setup;
        setup.serial = "T46-0042";
        setup.specimen = part();
        setup.seed = seed;
        setup.pace = {sim::Pace::Kind::Fast, 0};
        setup.idleLevelsPerSecond = 0;
        setup.scriptRunner = std::make_unique<sim::Interpreter>();
        m_instrument = std::make_unique<sim::Instrument>(std::move(setup), m_line);
        for (const auto& folderOption : {options::kPlotFiles, options::kExportFiles})
            preferences.setValue(folderOption.option, folder.path());
        window.onProcessEvents = [this] { pump(); };
        window.onCloseAll = [this] { documents.CloseAll(); };
        messages.whileShowing = [this] { pump(); };
        QObject::connect(&module.events(), &InstrumentEvents::sweepGivenUp, [this] { ++gaveUp; });
        peer().onWritten = [this](QByteArrayView bytes) { heard(bytes); };
    }
    void TestBody() override {}

    /// Plugs the instrument in and connects.
    void connect()
    {
        m_line.plugIn();
        m_instrument->hostArrived(m_now);
        device.Configure(QStringLiteral("KorvaLink"), 1, 0, 0);
        ASSERT_TRUE(device.Open()) << device.LastError().toStdString();
        rest();
    }
    /// The cable is pulled.
    void unplug()
    {
        m_line.clear();
        m_coming.clear();
        m_instrument->hostLeft();
        peer().takeWritten();
        peer().unplug();
    }

    QString file(const QByteArray& script) const
    {
        QFile file(folder.filePath(QStringLiteral("job.mgs")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(script);
        return file.fileName();
    }

    /// One turn of host, instrument and line. False when there was nothing to do for any of them.
    bool pump()
    {
        QCoreApplication::processEvents();
        const QByteArray written = peer().takeWritten();
        if (!written.isEmpty())
            m_instrument->receive({written.constData(), static_cast<std::size_t>(written.size())}, m_now);
        m_instrument->advance(m_now, kFramesATurn);
        if (m_line.takeUnplugged()) {
            unplug();
            return true;
        }
        if (deliver() || !written.isEmpty())
            return true;
        if (peer().isOpen())
            return letTimePass();
        return false;
    }
    /// Until nothing is left to do.
    void rest()
    {
        for (int turn = 0; turn < kMostTurns; ++turn) {
            if (!pump())
                return;
        }
        ADD_FAILURE() << "it never comes to rest";
    }
    /// Until nothing is left to do; while the host still takes a script or a sweep for running, its user presses stop.
    void restWithUser()
    {
        rest();
        for (userStops = 0; state.gbfScriptRunning || state.gbfPlotting; ++userStops) {
            ASSERT_LT(userStops, 50) << "it cannot be stopped";
            ASSERT_TRUE(device.Connected()) << "a lost link is the end of a run";
            run.mnuTestStopTest_Click();
            rest();
        }
    }

    bool instrumentRuns() const { return m_instrument->scriptIsRunning(); }
    const QByteArray& heldScript() const { return m_instrument->script(); }
    /// By what its name begins with: the frame that switches the stamp of names off may be the one that is lost.
    bool hasText(const char* name) const
    {
        return !QDir(folder.path()).entryList({QLatin1String(name) + QStringLiteral("*.txt")}).isEmpty();
    }

    int asked = 0;   ///< frames that came whole and are to be answered
    int frames = 0;  ///< all that came whole
    int wentOn = 0;  ///< replies that the host wrote, on all its connections
    int stopped = 0; ///< " y\r"
    int runs = 0;    ///< "run\r"
    int unasked = 0; ///< replies ahead of what they could have answered
    int gaveUp = 0;  ///< sweeps that the host ended for a point that is none, and with them the script
    int userStops = 0;
    std::function<void()> onFrame; ///< behind each frame that came whole

    DocumentContext documentContext{preferences, messages, plotSource, window.active};
    DocumentsInMemory memory{documentContext, window.active};
    DocumentList documents{documentContext, state, memory};
    ScriptActions actions{module, documents, memory};
    FerrolexChecker checker{preferences};
    ScriptHost host{module, run, checker, *this};
    std::function<void(ScriptTransfer&)> onTransfer;

private:
    static constexpr int kFramesATurn = 64;
    static constexpr int kMostTurns = 20'000;

    static sim::FaultPlan planOf(const QString& faults)
    {
        sim::FaultPlan plan;
        const Outcome added = faults.isEmpty() ? Outcome::success() : plan.add(faults);
        EXPECT_TRUE(added.ok()) << added.sentence().toStdString();
        return plan;
    }
    static std::shared_ptr<const sim::PartModel> part()
    {
        static const auto shipped =
            std::make_shared<const sim::PartModel>(sim::partfile::load(QStringLiteral("langevin40k")).value());
        return shipped;
    }

    /// To the host, as much of it as comes in one piece.
    bool deliver()
    {
        const std::string bytes(m_line.ready(m_now));
        if (bytes.empty() || !peer().isOpen())
            return false;
        // One frame at a time, so that a test can pull the plug behind each.
        const std::size_t end = bytes.find('\r');
        const std::size_t length = onFrame && end != std::string::npos ? std::min(bytes.size(), end + 2) : bytes.size();
        m_line.written(length);
        count(std::string_view(bytes).substr(0, length));
        peer().send(QByteArrayView(bytes.data(), static_cast<qsizetype>(length)));
        // A copy: it may take itself away.
        if (const std::function<void()> act = m_counted > 0 ? onFrame : nullptr)
            act();
        return true;
    }

    void count(std::string_view bytes)
    {
        m_counted = 0;
        m_coming += bytes;
        for (std::size_t end = m_coming.find('\r'); end != std::string::npos && end + 1 < m_coming.size();
             end = m_coming.find('\r')) {
            const std::string frame = m_coming.substr(0, end + 2);
            m_coming.erase(0, end + 2);
            if (frame.size() != 67 || frame[1] != ':')
                continue;
            ++m_counted;
            ++frames;
            asked += std::string_view("Ubgjioxnfp").find(frame[0]) != std::string_view::npos ? 1 : 0;
        }
    }

    /// What the host writes, in the pieces in which it writes it.
    void heard(QByteArrayView bytes)
    {
        wentOn += bytes == QByteArrayView(" ") ? 1 : 0;
        stopped += bytes == QByteArrayView(" y\r") ? 1 : 0;
        runs += bytes.toByteArray().count("run\r");
        if (wentOn + stopped > asked)
            ++unasked;
    }

    /// To whatever is due next. False: nothing ever will be.
    bool letTimePass()
    {
        std::optional<sim::Moment> due = m_instrument->nextDue();
        if (const auto stall = m_line.stalledUntil())
            due = due ? std::min(*due, *stall) : *stall;
        if (!due)
            return false;
        m_now = std::max(m_now, *due);
        return true;
    }

    QString openFileName(const QString&, const QString&, const QString&) override { return {}; }
    void refresh() override {}
    void showMessages(ScriptChecker&) override {}
    void showTransfer(ScriptTransfer& transfer) override
    {
        if (onTransfer)
            onTransfer(transfer);
    }
    void unloadTransfer() override {}
    void unloadSettings() override {}

    sim::Line m_line;
    std::unique_ptr<sim::Instrument> m_instrument;
    sim::Moment m_now{std::chrono::hours(1)};
    std::string m_coming;
    int m_counted = 0;
};
