// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/MemoryTransport.h"
#include "controls/tarnload/UpGrade.h"
#include "sim/FirmwareUpdate.h"
#include "sim/protocol/CommandParser.h"
#include "support/FirmwareMaker.h"

#include <QTimer>

#include <memory>

/// One simulated instrument's boot side on a link in memory, with a loader in front of it. Power and cable go where the
/// test says, byte by byte.
class UpgradeBench : public sim::FrameSink
{
public:
    static constexpr int kImageSize = 5 * 1024 + 300;

    explicit UpgradeBench(const sim::FaultPlan& faults = {})
    {
        state.constants.serial = "T46-0042";
        state.firmwareMajor = 1;
        state.firmwareMinor = 28;
        state.firmwareBuild = 3;
        state.boardVersion = 2;
        sim::FirmwareUpdate::Setup setup{firmware::TrustedKeys::ofFolder(maker.keyFolder()), faults, {}};
        update = std::make_unique<sim::FirmwareUpdate>(flash, state, setup, *this);
        peer->onWritten = [this](QByteArrayView bytes) { receive(bytes); };
        std::vector<std::unique_ptr<DeviceSource>> sources;
        sources.push_back(std::make_unique<Source>(*this));
        devices = std::make_unique<DeviceList>(std::move(sources));
        devices->refresh();
        loader = std::make_unique<UpGrade>(*devices, maker.keyFolder());
        patience.answer = 40;
        patience.begin = 40;
        patience.change = 200;
        patience.comeBack = 2000;
        patience.look = 1;
        loader->setPatience(patience);
        QObject::connect(loader.get(), &UpGrade::ProgressRange, [this](std::int16_t total) { ranges.append(total); });
        QObject::connect(loader.get(), &UpGrade::ProgressValue, [this](std::int16_t value) { values.append(value); });
    }

    /// A signed file of that version on the disk.
    QString file(const firmware::Header& header = FirmwareMaker::header(), qsizetype size = kImageSize)
    {
        return maker.write(QStringLiteral("new.mfw"), maker.make(header, FirmwareMaker::image(size)).toBytes());
    }

    tarnload::UpgradeError program(const QString& fileName)
    {
        EXPECT_TRUE(loader->OpenUpgradeFile(fileName));
        const auto error = static_cast<tarnload::UpgradeError>(loader->ProgramDevice(QStringLiteral("KorvaLink"), 0));
        loader->CloseUpgradeFile();
        return error;
    }

    /// The instrument does not come back by itself after power or cable is lost.
    void staysAway()
    {
        comesBack = false;
        patience.comeBack = 1;
        loader->setPatience(patience);
    }
    /// From now on it does, and is waited for.
    void staysNoMore()
    {
        comesBack = true;
        patience.comeBack = 2000;
        loader->setPatience(patience);
    }
    /// It is plugged in again, with power.
    void plugIn()
    {
        flash.restorePower();
        bytesToCut = -1;
        update->powered();
        plugged = true;
    }

    bool runsNew() const { return state.firmwareMinor == 29 && update->runsWhole(); }
    bool runsOld() const { return state.firmwareMinor == 28 && update->runsWhole(); }

    FirmwareMaker maker;
    sim::Flash flash;
    sim::InstrumentState state;
    std::shared_ptr<MemoryPeer> peer = std::make_shared<MemoryPeer>();
    std::unique_ptr<sim::FirmwareUpdate> update;
    std::unique_ptr<DeviceList> devices;
    std::unique_ptr<UpGrade> loader;
    tarnload::Patience patience;
    QList<int> ranges, values;
    QString listedAs = QStringLiteral("T46-0042");
    bool anotherInFront = false; ///< a silent instrument stands before this one in the list
    bool plugged = true;
    bool comesBack = true;
    bool silent = false;
    qint64 bytesToCut = -1; ///< from the host, until the cable goes; -1 never
    qint64 bytesHeard = 0;  ///< from the host, in all
    int framesToLose = 0;   ///< answers that get lost from now on
    int framesToCut = -1;   ///< answers until the cable goes in place of one; -1 never
    int framesSent = 0;     ///< answers, in all
    int unplugs = 0;
    std::function<void()> onUnplug;                         ///< it goes away, for whatever reason
    bool busy = false;                                      ///< a test runs
    std::function<void(const std::string& word)> onCommand; ///< any command that is none of an upgrade

private:
    class Source : public DeviceSource
    {
    public:
        explicit Source(UpgradeBench& bench)
            : m_bench(bench)
        {}
        std::vector<DeviceEntry> devices() const override
        {
            if (!m_bench.plugged)
                return {};
            std::vector<DeviceEntry> entries{{m_bench.listedAs, QStringLiteral("/memory/one"), {}}};
            if (m_bench.anotherInFront)
                entries.insert(entries.begin(), {QStringLiteral("T46-0001"), QStringLiteral("/memory/other"), {}});
            return entries;
        }
        std::unique_ptr<Transport> makeTransport(const DeviceEntry& entry) const override
        {
            if (entry.name == QLatin1String("T46-0001"))
                return std::make_unique<MemoryTransport>(std::make_shared<MemoryPeer>());
            m_bench.parser.reset();
            return std::make_unique<MemoryTransport>(m_bench.peer);
        }

    private:
        UpgradeBench& m_bench;
    };

    void send(const sim::Frame& frame) override
    {
        ++framesSent;
        if (framesToCut >= 0 && framesToCut-- == 0)
            unplug(false);
        else if (framesToLose > 0)
            --framesToLose;
        else if (plugged && !silent)
            peer->send(QByteArrayView(frame.data(), qsizetype(frame.size())));
    }
    void sendRaw(std::string_view) override {}

    void receive(QByteArrayView bytes)
    {
        for (const char byte : bytes) {
            if (!plugged)
                return;
            ++bytesHeard;
            if (bytesToCut >= 0 && bytesToCut-- == 0) {
                unplug(false);
                return;
            }
            take(byte);
        }
    }

    void take(char byte)
    {
        parser.feed({&byte, 1}, now);
        while (const auto input = parser.next(now)) {
            if (input->kind == sim::CommandParser::Kind::Block)
                update->take(input->argument, now);
            else if (input->kind == sim::CommandParser::Kind::Command && sim::FirmwareUpdate::isOwn(input->word)) {
                if (const std::size_t count = update->command(input->word, input->argument, busy, now))
                    parser.expectBlock(count);
            } else if (onCommand && input->kind == sim::CommandParser::Kind::Command) {
                onCommand(input->word);
            }
        }
        switch (update->takeLeave()) {
        case sim::Device::Leave::No:
            break;
        case sim::Device::Leave::CableLost:
            unplug(false);
            break;
        case sim::Device::Leave::PowerLost:
        case sim::Device::Leave::Restart:
            unplug(flash.hasPower());
            break;
        }
    }

    void unplug(bool restarts)
    {
        plugged = false;
        ++unplugs;
        if (onUnplug)
            onUnplug();
        update->hostLeft();
        // The link hears of it from the event loop, as it does of a real one.
        QTimer::singleShot(0, &m_context, [this, restarts] {
            peer->unplug();
            if (restarts || comesBack)
                QTimer::singleShot(2, &m_context, [this] { plugIn(); });
        });
    }

    sim::CommandParser parser;
    sim::Moment now{0};
    QObject m_context;
};
