// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/boot/BootLoader.h"

#include <QtEndian>

#include <array>
#include <utility>

namespace sim {

namespace {

enum AnswerKind
{
    kState,
    kBegun,
    kBlockTaken,
    kRefused,
    kSwitches
};

enum Phase
{
    kSettled,    ///< the image has reported in
    kNew,        ///< chosen, has not run yet
    kOnTrial,    ///< has been started, has not reported in
    kRolledBack, ///< is the old one again
};

constexpr char kCode = 'w';
constexpr qsizetype kLongestSealedHeader = firmware::kLongestHeader + firmware::kSealSize;
constexpr qsizetype kRecordSize = 12;

/// The blank-divided whole numbers of an argument; nothing when one is none.
template <std::size_t Count>
std::optional<std::array<std::uint32_t, Count>> wholeNumbers(std::string_view argument)
{
    std::array<std::uint32_t, Count> numbers{};
    const QList<QByteArray> words =
        QByteArray(argument.data(), static_cast<qsizetype>(argument.size())).simplified().split(' ');
    if (words.size() != qsizetype(Count))
        return {};
    for (std::size_t i = 0; i < Count; ++i) {
        bool ok = false;
        numbers[i] = words[qsizetype(i)].toUInt(&ok);
        if (!ok)
            return {};
    }
    return numbers;
}

} // namespace

/// Two of them are kept; a newer one is written over the older, so that one is always whole.
struct BootLoader::Record
{
    std::uint32_t sequence = 0;
    int running = 0;
    int phase = kSettled;

    QByteArray toBytes() const
    {
        QByteArray bytes(kRecordSize, '\0');
        qToLittleEndian(sequence, bytes.data());
        bytes[4] = static_cast<char>(running);
        bytes[5] = static_cast<char>(phase);
        qToLittleEndian(checkOf(bytes.first(8)), bytes.data() + 8);
        return bytes;
    }

    static std::optional<Record> fromBytes(const QByteArray& bytes)
    {
        if (bytes.size() != kRecordSize ||
            qFromLittleEndian<std::uint32_t>(bytes.constData() + 8) != checkOf(bytes.first(8)) || bytes[4] < 0 ||
            bytes[4] > 1 || bytes[5] < kSettled || bytes[5] > kRolledBack)
            return {};
        return Record{qFromLittleEndian<std::uint32_t>(bytes.constData()), bytes[4], bytes[5]};
    }
};

BootLoader::BootLoader(Flash& flash, Facts facts, FrameSink& sink)
    : m_flash(flash)
    , m_facts(std::move(facts))
    , m_sink(sink)
{
    start();
}

BootLoader::Record BootLoader::newest() const
{
    const std::optional<Record> first = Record::fromBytes(m_flash.bytes(Flash::Record0));
    const std::optional<Record> second = Record::fromBytes(m_flash.bytes(Flash::Record1));
    if (first && second)
        return first->sequence > second->sequence ? *first : *second;
    return first ? *first : second.value_or(Record());
}

bool BootLoader::record(int running, int phase)
{
    const Record next{newest().sequence + 1, running, phase};
    if (!m_flash.write(next.sequence % 2 == 0 ? Flash::Record0 : Flash::Record1, 0, next.toBytes()))
        return false;
    m_running = running;
    m_rolledBack = phase == kRolledBack;
    return true;
}

void BootLoader::start()
{
    hostLeft();
    m_restart = false;
    const Record last = newest();
    m_running = last.running;
    m_rolledBack = last.phase == kRolledBack;
    if (last.phase == kNew) {
        // That it is being tried is written first: an image that takes the power down with it is tried once only.
        if (!record(m_running, kOnTrial))
            return;
        const bool reportsIn = slot(m_running).isWhole() && (!m_facts.runOnTrial || m_facts.runOnTrial());
        static_cast<void>(reportsIn ? record(m_running, kSettled) : record(1 - m_running, kRolledBack));
    } else if (last.phase == kOnTrial) {
        static_cast<void>(record(1 - m_running, kRolledBack));
    }
}

bool BootLoader::runningIsWhole() const
{
    const Slot running = slot(m_running);
    if (running.isErased())
        return true;
    const QByteArray sealed = running.sealedHeader();
    return running.isWhole() &&
           firmware::judgeSeal(sealed.chopped(firmware::kSealSize), sealed.right(firmware::kSealSize), m_facts.keys) ==
               firmware::Problem::None;
}

BootLoader::State BootLoader::state() const
{
    const int all = spare().blocksInAll(), held = spare().blocksHeld();
    if (held < all)
        return State::Receiving;
    // The image before the last update is whole as well, but nobody has sent it for this one.
    if (m_begun)
        return State::Whole;
    return m_rolledBack ? State::RolledBack : State::Idle;
}

void BootLoader::hostLeft()
{
    m_awaited = 0;
    m_bytes.clear();
    m_begun = false;
}

bool BootLoader::takeRestart()
{
    return std::exchange(m_restart, false);
}

void BootLoader::answer(int kind, double n1, double n2, double n3, double n4, int i)
{
    if (m_flash.hasPower())
        m_sink.send(numberFrame(kCode, kind, {n1, n2, n3, n4, i}));
}

void BootLoader::refuse(Refusal reason)
{
    answer(kRefused, static_cast<double>(reason), m_begun ? m_next : 0);
}

void BootLoader::tellState()
{
    answer(kState, static_cast<double>(state()), spare().blocksHeld(), spare().blocksInAll(),
           slot(m_running).headerCheck(), m_running);
}

std::size_t BootLoader::command(std::string_view word, std::string_view argument)
{
    m_awaited = 0;
    m_bytes.clear();
    if (word == "boot") {
        tellState();
    } else if (word == "bootbegin") {
        const auto numbers = wholeNumbers<3>(argument);
        if (!numbers || (*numbers)[0] == 0 || (*numbers)[0] > kLongestSealedHeader) {
            refuse(Refusal::Damaged);
            return 0;
        }
        m_announced = {true, 0, (*numbers)[1], (*numbers)[2] != 0};
        m_awaited = (*numbers)[0];
    } else if (word == "bootblock") {
        const auto numbers = wholeNumbers<3>(argument);
        if (!numbers || (*numbers)[1] == 0 || (*numbers)[1] > std::uint32_t(Slot::kBlockSize)) {
            refuse(Refusal::Damaged);
            return 0;
        }
        m_announced = {false, static_cast<int>((*numbers)[0] & 0x7fffffff), (*numbers)[2], false};
        m_awaited = (*numbers)[1];
    } else if (word == "bootswitch") {
        const auto numbers = wholeNumbers<1>(argument);
        if (numbers)
            switchOver((*numbers)[0] != 0);
        else
            refuse(Refusal::Damaged);
    }
    return m_awaited;
}

void BootLoader::take(std::string_view bytes)
{
    m_bytes.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (m_bytes.size() < qsizetype(m_awaited))
        return;
    m_awaited = 0;
    if (m_announced.header)
        begin();
    else
        block();
    m_bytes.clear();
}

void BootLoader::giveUpBytes()
{
    m_awaited = 0;
    m_bytes.clear();
    refuse(Refusal::Damaged);
}

bool BootLoader::isOlder(const firmware::Header& header) const
{
    const std::optional<firmware::Header> running = runningHeader();
    return running ? header.isOlderThan(running->major, running->minor, running->build)
                   : header.isOlderThan(m_facts.factoryMajor, m_facts.factoryMinor, m_facts.factoryBuild);
}

std::optional<BootLoader::Refusal> BootLoader::judge(const QByteArray& sealed, bool older) const
{
    if (sealed.size() <= firmware::kSealSize)
        return Refusal::Damaged;
    const QByteArray bytes = sealed.chopped(firmware::kSealSize);
    const std::optional<firmware::Header> header = firmware::Header::fromBytes(bytes);
    if (!header)
        return Refusal::Damaged;
    if (firmware::judgeSeal(bytes, sealed.right(firmware::kSealSize), m_facts.keys) != firmware::Problem::None)
        return Refusal::NotTrusted;
    if (header->model != QLatin1String(m_facts.model))
        return Refusal::OtherModel;
    if (!header->fitsHardware(m_facts.hardware))
        return Refusal::OtherHardware;
    if (header->imageSize > Slot::kLargestImage)
        return Refusal::TooLarge;
    return isOlder(*header) && !older ? std::optional(Refusal::Older) : std::nullopt;
}

void BootLoader::begin()
{
    if (checkOf(m_bytes) != m_announced.check)
        return refuse(Refusal::Damaged);
    if (const std::optional<Refusal> reason = judge(m_bytes, m_announced.older))
        return refuse(*reason);
    // An update that was broken off goes on where it stopped.
    if (spare().sealedHeader() != m_bytes && !spare().begin(m_bytes))
        return refuse(Refusal::MemoryFailed);
    m_begun = true;
    m_next = spare().blocksHeld();
    answer(kBegun, m_next, spare().blocksInAll(), Slot::kBlockSize, spare().headerCheck());
}

void BootLoader::block()
{
    if (!m_begun)
        return refuse(Refusal::NothingBegun);
    const int number = m_announced.number;
    if (m_bytes.size() != spare().blockLength(number) || blockCheck(number, m_bytes) != m_announced.check)
        return refuse(Refusal::Damaged);
    if (number > m_next)
        return refuse(Refusal::OutOfTurn);
    // One that is held already was acknowledged, and the host has not heard it.
    if (number == m_next) {
        if (onBlock)
            onBlock(number, m_bytes.size());
        if (!spare().writeBlock(number, m_bytes))
            return refuse(Refusal::MemoryFailed);
        ++m_next;
    }
    answer(kBlockTaken, number);
}

void BootLoader::switchOver(bool older)
{
    if (!m_begun)
        return refuse(Refusal::NothingBegun);
    if (const std::optional<Refusal> reason = judge(spare().sealedHeader(), older))
        return refuse(*reason);
    if (m_next != spare().blocksInAll())
        return refuse(Refusal::OutOfTurn);
    if (!spare().isWhole()) {
        // Every block came as it was sent, so sending them again would end the same way.
        static_cast<void>(m_flash.erase(m_running == 0 ? Flash::Slot1 : Flash::Slot0));
        m_begun = false;
        return refuse(Refusal::OtherImage);
    }
    const double check = spare().headerCheck();
    const int running = m_running;
    if (!record(1 - m_running, kNew))
        return refuse(Refusal::MemoryFailed);
    // Until the restart the old one runs.
    m_running = running;
    m_restart = true;
    answer(kSwitches, check);
}

} // namespace sim
