// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/FirmwareUpdate.h"

#include "sim/protocol/StatusFrames.h"

#include <QCoreApplication>

#include <utility>

namespace sim {

namespace {

constexpr int kBlocksBetweenKeeping = 64;
constexpr int kModelSlot = 6;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::FirmwareUpdate", text);
}

std::uint32_t& count(FaultPlan& plan, Fault fault)
{
    return plan.everyFrames[static_cast<std::size_t>(fault)];
}

} // namespace

FirmwareUpdate::FirmwareUpdate(Flash& flash, InstrumentState& state, Setup setup, FrameSink& sink)
    : m_flash(flash)
    , m_state(state)
    , m_setup(std::move(setup))
    , m_sink(sink)
    , m_factoryMajor(state.firmwareMajor)
    , m_factoryMinor(state.firmwareMinor)
    , m_factoryBuild(state.firmwareBuild)
    , m_loader(flash,
               {state.facts->name, state.boardVersion, m_setup.keys, m_factoryMajor, m_factoryMinor, m_factoryBuild,
                [this] { return runOnTrial(); }},
               sink)
{
    m_loader.onBlock = [this](int number, qsizetype length) { blockComes(number, length); };
    noteVersion();
}

void FirmwareUpdate::tell(const QString& sentence) const
{
    if (m_setup.tell)
        m_setup.tell(sentence);
}

bool FirmwareUpdate::runOnTrial()
{
    std::uint32_t& dead = count(m_setup.faults, Fault::DeadImage);
    if (dead == 0)
        return true;
    --dead;
    tell(tr("The new firmware does not report in; the old one runs again."));
    return false;
}

void FirmwareUpdate::noteVersion()
{
    const std::optional<firmware::Header> header = m_loader.runningHeader();
    m_state.firmwareMajor = header ? header->major : m_factoryMajor;
    m_state.firmwareMinor = header ? header->minor : m_factoryMinor;
    m_state.firmwareBuild = header ? header->build : m_factoryBuild;
}

void FirmwareUpdate::blockComes(int number, qsizetype length)
{
    const auto strikes = [this, number](Fault fault) {
        std::uint32_t& block = count(m_setup.faults, fault);
        return block == static_cast<std::uint32_t>(number) + 1 && std::exchange(block, 0) != 0;
    };
    m_blocks = number + 1;
    m_keepWanted = m_keepWanted || m_blocks % kBlocksBetweenKeeping == 0;
    if (strikes(Fault::PowerLost))
        m_flash.losePowerAfter(length / 2);
    if (strikes(Fault::CableLost))
        m_leave = Device::Leave::CableLost;
}

std::size_t FirmwareUpdate::command(std::string_view word, std::string_view argument, bool busy, Moment now)
{
    m_lastByte = now;
    if (word == "boot") {
        m_sink.send(status::firmware(m_state));
        m_sink.send(status::serial(m_state));
        m_sink.send(status::information(m_state, kModelSlot));
    } else if (busy) {
        m_loader.refuse(BootLoader::Refusal::Busy);
        return 0;
    }
    const std::size_t bytes = m_loader.command(word, argument);
    afterwards();
    return bytes;
}

void FirmwareUpdate::take(std::string_view bytes, Moment now)
{
    m_lastByte = now;
    const bool begun = isExclusive();
    m_loader.take(bytes);
    m_keepWanted = m_keepWanted || begun != isExclusive();
    afterwards();
}

void FirmwareUpdate::afterwards()
{
    if (!m_flash.hasPower()) {
        m_leave = Device::Leave::PowerLost;
    } else if (m_loader.takeRestart()) {
        m_leave = Device::Leave::Restart;
        m_keepWanted = true;
    }
}

void FirmwareUpdate::giveUp()
{
    m_loader.giveUpBytes();
}

std::optional<Moment> FirmwareUpdate::nextDue() const
{
    return isReceiving() ? std::optional(m_lastByte + kSilence) : std::nullopt;
}

bool FirmwareUpdate::takeKeepWanted()
{
    return std::exchange(m_keepWanted, false);
}

Device::Leave FirmwareUpdate::takeLeave()
{
    m_off = m_off || m_leave == Device::Leave::PowerLost || m_leave == Device::Leave::Restart;
    return std::exchange(m_leave, Device::Leave::No);
}

bool FirmwareUpdate::powered()
{
    if (!std::exchange(m_off, false))
        return false;
    m_flash.restorePower();
    m_loader.start();
    noteVersion();
    m_keepWanted = true;
    tell(tr("Running firmware V%1.%2 Build %3.")
             .arg(m_state.firmwareMajor)
             .arg(m_state.firmwareMinor)
             .arg(m_state.firmwareBuild));
    return true;
}

QString FirmwareUpdate::activity() const
{
    return isExclusive() ? tr("receiving firmware, %1 blocks so far").arg(m_blocks) : QString();
}

} // namespace sim
