// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/Programmer.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/tarnload/file/ModelNames.h"

#include <QDeadlineTimer>

#include <limits>

namespace tarnload {

namespace {

constexpr std::int64_t kAnyNumber = -1;
constexpr int kRolledBack = 3;
constexpr int kLargestBlock = 4096;

/// Reasons of a refusal, as docs/instrument-protocol.md numbers them.
enum Refusal
{
    kDamaged = 1,
    kOutOfTurn,
    kNotTrusted,
    kOtherModel,
    kOtherHardware,
    kTooLarge,
    kBusy,
    kNothingBegun,
    kOtherImage,
    kMemoryFailed,
    kOlder
};

int bounded(std::int64_t number)
{
    return static_cast<int>(std::min<std::int64_t>(number, std::numeric_limits<int>::max()));
}

} // namespace

Programmer::Programmer(DeviceList& devices, const firmware::FirmwareFile& file, const Patience& patience)
    : m_devices(devices)
    , m_file(file)
    , m_patience(patience)
    , m_link(devices)
    , m_sealed(file.headerBytes + file.seal)
    , m_check(checkOf(m_sealed))
{}

// The instrument and the file
// ------------------------------------------------------------------------------------------

bool Programmer::askState(Told& told)
{
    for (int i = 0; i < m_patience.repetitions && m_link.isOpen(); ++i) {
        int heard = 0;
        const auto take = [&](const BootAnswer& answer) {
            switch (answer.kind) {
            case BootAnswer::Kind::Version:
                told.major = bounded(answer.n1);
                told.minor = bounded(answer.n2);
                told.build = bounded(answer.n3);
                told.board = bounded(answer.n4);
                heard |= 1;
                break;
            case BootAnswer::Kind::Serial:
                told.serial = answer.text;
                heard |= 2;
                break;
            case BootAnswer::Kind::Model:
                told.model = answer.text;
                heard |= 4;
                break;
            case BootAnswer::Kind::State:
                told.state = bounded(answer.n1);
                told.runningCheck = answer.n4;
                return true;
            default:
                break;
            }
            return false;
        };
        if (m_link.ask(askCommand(), take, m_patience.answer) && heard == 7)
            return true;
    }
    return false;
}

bool Programmer::isChosen(const Told& told) const
{
    if (!m_serial.isEmpty())
        return told.serial == m_serial;
    // A port that tells no serial number stands in the list by its own name, which is all that was chosen.
    return m_nameIsPort || told.serial == m_name;
}

UpgradeError Programmer::compare(const Told& told)
{
    if (!isChosen(told))
        return UpgradeError::OtherInstrument;
    m_serial = told.serial;
    const firmware::Header& header = m_file.header;
    const firmware::ModelNames* const model = firmware::modelReportedAs(told.model);
    if (model == nullptr || header.model != model->file)
        return UpgradeError::WrongModel;
    if (!header.fitsHardware(told.board))
        return UpgradeError::WrongHardware;
    if (header.isOlderThan(told.major, told.minor, told.build)) {
        if (!askOlder)
            return UpgradeError::OlderVersion;
        firmware::Header running;
        running.major = told.major;
        running.minor = told.minor;
        running.build = told.build;
        if (!askOlder(running.versionText(), header.versionText()))
            return UpgradeError::Declined;
        m_older = true;
    }
    return UpgradeError::None;
}

int Programmer::placeOf(const QString& name, int otherwise) const
{
    for (int i = 0; i < m_devices.count(); ++i) {
        if (!name.isEmpty() && m_devices.device(i).name == name)
            return i;
    }
    return otherwise;
}

UpgradeError Programmer::check(int index)
{
    m_devices.refresh();
    // Instruments may have come and gone since the index was told; it counts where no name was.
    index = placeOf(expectedSerial, index);
    const DeviceEntry entry = m_devices.device(index);
    m_name = expectedSerial.isEmpty() ? entry.name : expectedSerial;
    m_nameIsPort = entry.name == m_name && (entry.path == m_name || entry.path == QLatin1String("/dev/") + m_name);
    if (!m_link.open(index))
        return UpgradeError::NoDevice;
    Told told;
    if (!askState(told))
        return UpgradeError::NoAnswer;
    return compare(told);
}

UpgradeError Programmer::program(int index)
{
    if (const UpgradeError error = check(index); error != UpgradeError::None)
        return error;
    if (const UpgradeError error = transfer(); error != UpgradeError::None)
        return error;
    return awaitRestart();
}

// The transfer
// ---------------------------------------------------------------------------------------------------------

UpgradeError Programmer::transfer()
{
    int breaks = 0;
    for (;;) {
        const int heldBefore = m_held;
        const Step step = sendAll();
        if (step == Step::Done)
            return UpgradeError::None;
        if (step == Step::Failed)
            return m_error;
        breaks = m_held > heldBefore ? 0 : breaks + 1;
        if (breaks > m_patience.breaksInPlace)
            return UpgradeError::Interrupted;
        if (m_link.isOpen())
            continue;
        Told told;
        // Behind the change of images it may be the restart.
        const bool tells = linkLost && !m_switchAsked;
        if (tells)
            linkLost(true);
        const bool back = comeBack(told);
        if (tells)
            linkLost(false);
        if (!back)
            return m_switchAsked ? UpgradeError::NotBack : UpgradeError::Interrupted;
        // The answer to the change of images may have been lost with the link.
        if (m_switchAsked && (runs(told) || told.state == kRolledBack))
            return UpgradeError::None;
    }
}

Programmer::Step Programmer::sendAll()
{
    int next = 0, blockSize = 0;
    if (const Step step = begin(next, blockSize); step != Step::Done)
        return step;
    if (const Step step = sendBlocks(next, blockSize); step != Step::Done)
        return step;
    return switchOver();
}

Programmer::Step Programmer::refused(const BootAnswer& answer)
{
    switch (answer.n1) {
    case kOutOfTurn:
    case kNothingBegun:
        return Step::Again;
    case kNotTrusted:
        m_error = UpgradeError::NotTrustedThere;
        break;
    case kOtherModel:
        m_error = UpgradeError::WrongModel;
        break;
    case kOtherHardware:
        m_error = UpgradeError::WrongHardware;
        break;
    case kTooLarge:
        m_error = UpgradeError::TooLarge;
        break;
    case kBusy:
        m_error = UpgradeError::InstrumentBusy;
        break;
    case kOtherImage:
        m_error = UpgradeError::OtherImage;
        break;
    case kMemoryFailed:
        m_error = UpgradeError::MemoryFailed;
        break;
    case kOlder:
        m_error = UpgradeError::OlderVersion;
        break;
    default:
        m_error = UpgradeError::NotTaken;
        break;
    }
    return Step::Failed;
}

Programmer::Step Programmer::askWell(const QByteArray& command, BootAnswer::Kind wanted, std::int64_t number,
                                     int milliseconds, BootAnswer& answer)
{
    for (int i = 0; i < m_patience.repetitions; ++i) {
        if (!m_link.isOpen())
            return Step::Again;
        const auto answered = m_link.ask(
            command,
            [wanted, number](const BootAnswer& heard) {
                return heard.kind == BootAnswer::Kind::Refused ||
                       (heard.kind == wanted && (number == kAnyNumber || heard.n1 == number));
            },
            milliseconds);
        if (!answered || (answered->kind == BootAnswer::Kind::Refused && answered->n1 == kDamaged))
            continue;
        if (answered->kind == BootAnswer::Kind::Refused)
            return refused(*answered);
        answer = *answered;
        return Step::Done;
    }
    if (!m_link.isOpen())
        return Step::Again;
    m_error = UpgradeError::NotTaken;
    return Step::Failed;
}

Programmer::Step Programmer::begin(int& next, int& blockSize)
{
    BootAnswer answer;
    if (const Step step =
            askWell(beginCommand(m_sealed, m_older), BootAnswer::Kind::Begun, kAnyNumber, m_patience.begin, answer);
        step != Step::Done)
        return step;
    const std::int64_t size = m_file.header.imageSize;
    if (answer.n3 < 1 || answer.n3 > kLargestBlock || answer.n2 != (size + answer.n3 - 1) / answer.n3 ||
        answer.n1 > answer.n2 || answer.n2 > std::numeric_limits<std::int16_t>::max() || answer.n4 != m_check) {
        m_error = UpgradeError::NotTaken;
        return Step::Failed;
    }
    next = bounded(answer.n1);
    blockSize = bounded(answer.n3);
    if (range)
        range(bounded(answer.n2));
    return Step::Done;
}

Programmer::Step Programmer::sendBlocks(int next, int blockSize)
{
    const int all = static_cast<int>((m_file.image.size() + blockSize - 1) / blockSize);
    m_held = next;
    while (m_held < all) {
        if (value)
            value(m_held);
        BootAnswer answer;
        const QByteArray bytes = m_file.image.mid(qsizetype(m_held) * blockSize, blockSize);
        if (const Step step =
                askWell(blockCommand(m_held, bytes), BootAnswer::Kind::BlockTaken, m_held, m_patience.answer, answer);
            step != Step::Done)
            return step;
        ++m_held;
    }
    if (value)
        value(m_held);
    return Step::Done;
}

Programmer::Step Programmer::switchOver()
{
    m_switchAsked = true;
    BootAnswer answer;
    return askWell(switchCommand(m_older), BootAnswer::Kind::Switches, m_check, m_patience.change, answer);
}

// The restart
// ----------------------------------------------------------------------------------------------------------

bool Programmer::comeBack(Told& told)
{
    m_link.close();
    const QDeadlineTimer deadline(m_patience.comeBack);
    while (!deadline.hasExpired()) {
        m_devices.refresh();
        for (int i = 0; i < m_devices.count(); ++i) {
            const DeviceEntry entry = m_devices.device(i);
            // One that was chosen by its port may come back at another, and is listed by its number.
            const bool mayBe = entry.name == m_name || (!m_serial.isEmpty() && entry.name == m_serial);
            if (!mayBe || !entry.problem.isEmpty() || !m_link.open(i))
                continue;
            if (askState(told) && isChosen(told))
                return true;
            m_link.close();
        }
        m_link.wait(m_patience.look);
    }
    return false;
}

UpgradeError Programmer::awaitRestart()
{
    const QDeadlineTimer deadline(m_patience.answer);
    while (m_link.isOpen() && !deadline.hasExpired())
        m_link.wait(m_patience.look);
    Told told;
    if (!m_link.isOpen() ? !comeBack(told) : !askState(told) && !comeBack(told))
        return UpgradeError::NotBack;
    if (runs(told))
        return UpgradeError::None;
    return told.state == kRolledBack ? UpgradeError::RolledBack : UpgradeError::NotBack;
}

} // namespace tarnload
