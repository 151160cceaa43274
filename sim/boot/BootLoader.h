// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/file/Keys.h"
#include "sim/boot/Slot.h"
#include "sim/protocol/FrameSink.h"

#include <functional>
#include <optional>
#include <string_view>

namespace sim {

/// The instrument's end of a firmware update, as docs/instrument-protocol.md tells it: chooses the image that runs when
/// power comes, takes a new one into the other place, and lets it run only when it is whole and sealed by a trusted
/// key.
///
/// The running image is never erased or written to. A new one runs on trial first; when it does not report in, the old
/// one runs again.
class BootLoader
{
public:
    struct Facts
    {
        QByteArray model; ///< as in a firmware file
        int hardware = 0; ///< board revision
        firmware::TrustedKeys keys;
        int factoryMajor = 0, factoryMinor = 0, factoryBuild = 0; ///< of the image that the instrument was made with
        /// Runs an image for the first time; true when it reports in. Empty: every image does.
        std::function<bool()> runOnTrial;
    };
    /// What the host is told of the last update.
    enum class State
    {
        Idle,      ///< none, or it is done
        Receiving, ///< some of a new image is held
        Whole,     ///< all of it
        RolledBack ///< a new image did not report in
    };
    enum class Refusal
    {
        Damaged = 1,
        OutOfTurn = 2,
        NotTrusted = 3,
        OtherModel = 4,
        OtherHardware = 5,
        TooLarge = 6,
        Busy = 7,
        NothingBegun = 8,
        OtherImage = 9,
        MemoryFailed = 10,
        Older = 11
    };

    /// Sink and flash outlive it. Starts the image at once, as start().
    BootLoader(Flash& flash, Facts facts, FrameSink& sink);

    /// Power comes, or a restart.
    void start();

    static bool isOwn(std::string_view word) { return word.substr(0, 4) == "boot"; }
    /// Does what the command asks. Returns how many bytes follow it that are no commands.
    std::size_t command(std::string_view word, std::string_view argument);
    /// Bytes that were announced, in any pieces.
    void take(std::string_view bytes);
    /// Those that are missing will not come.
    void giveUpBytes();
    /// Bytes are awaited.
    bool isReceiving() const { return m_awaited > 0; }
    /// Only its own commands are to be obeyed, until the host leaves.
    bool isExclusive() const { return m_begun; }
    void hostLeft();
    /// Tells the host that what it asked for is not done.
    void refuse(Refusal reason);

    /// True once after an image was switched to: the instrument is to restart.
    bool takeRestart();
    /// Called with the number of each block, from 0, and its length before it is written.
    std::function<void(int number, qsizetype length)> onBlock;

    int runningSlot() const { return m_running; }
    /// Of the running image; none for that of the factory.
    std::optional<firmware::Header> runningHeader() const { return slot(m_running).header(); }
    /// The image that runs is one of the factory, or whole and as its maker has sealed it.
    bool runningIsWhole() const;
    State state() const;

private:
    struct Record;
    struct Announced
    {
        bool header = false;
        int number = 0;
        std::uint32_t check = 0;
        bool older = false;
    };

    Slot slot(int number) const { return {m_flash, number == 0 ? Flash::Slot0 : Flash::Slot1}; }
    Slot spare() const { return slot(1 - m_running); }
    Record newest() const;
    bool record(int running, int phase);
    bool isOlder(const firmware::Header& header) const;
    std::optional<Refusal> judge(const QByteArray& sealed, bool older) const;

    void begin();
    void block();
    void switchOver(bool older);
    void tellState();
    void answer(int kind, double n1, double n2 = 0, double n3 = 0, double n4 = 0, int i = 0);

    Flash& m_flash;
    Facts m_facts;
    FrameSink& m_sink;
    int m_running = 0;
    bool m_rolledBack = false;
    bool m_begun = false;
    int m_next = 0; ///< block to come, from m_begun on
    bool m_restart = false;
    Announced m_announced;
    std::size_t m_awaited = 0;
    QByteArray m_bytes;
};

} // namespace sim
