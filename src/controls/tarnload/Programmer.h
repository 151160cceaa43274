// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/BootLink.h"
#include "controls/tarnload/Patience.h"
#include "controls/tarnload/UpgradeErrors.h"

#include <QString>

#include <functional>

class DeviceList;

namespace tarnload {

/// One upgrade of one instrument, over as many connections as it takes.
class Programmer
{
public:
    /// List and file outlive it. The file has been judged.
    Programmer(DeviceList& devices, const firmware::FirmwareFile& file, const Patience& patience);

    QString expectedSerial;                                                    ///< empty: what the list tells
    std::function<bool(const QString& running, const QString& file)> askOlder; ///< empty: refuse an older version
    std::function<void(int)> range, value; ///< blocks in all, blocks held by the instrument
    std::function<void(bool)> linkLost;    ///< true when it is lost in mid-transfer, false when it is back or given up

    /// Opens the device and holds the file against it. Nothing is changed.
    UpgradeError check(int index);
    /// The same, and then the upgrade.
    UpgradeError program(int index);
    /// As told by the instrument; empty until it was asked and is the chosen one.
    const QString& serial() const { return m_serial; }

private:
    /// What the instrument tells of itself.
    struct Told
    {
        QString serial, model;
        int major = 0, minor = 0, build = 0, board = 0;
        int state = 0;
        std::int64_t runningCheck = 0;
    };
    enum class Step
    {
        Done,
        Again, ///< the link is lost, or the instrument has forgotten where it was
        Failed
    };

    int placeOf(const QString& name, int otherwise) const;
    bool askState(Told& told);
    UpgradeError compare(const Told& told);
    bool isChosen(const Told& told) const;
    bool runs(const Told& told) const { return told.runningCheck == m_check; }

    /// Until the instrument has been told to change to the new image.
    UpgradeError transfer();
    Step sendAll();
    Step begin(int& next, int& blockSize);
    Step sendBlocks(int next, int blockSize);
    Step switchOver();
    /// Asks until it is answered by one of these kinds; a refusal that asks for a repetition is followed.
    Step askWell(const QByteArray& command, BootAnswer::Kind wanted, std::int64_t number, int milliseconds,
                 BootAnswer& answer);
    Step refused(const BootAnswer& answer);
    /// Until it answers, and with what.
    bool comeBack(Told& told);
    UpgradeError awaitRestart();

    DeviceList& m_devices;
    const firmware::FirmwareFile& m_file;
    Patience m_patience;
    BootLink m_link;
    QString m_name;   ///< in the list of devices
    QString m_serial; ///< as told by the instrument
    bool m_nameIsPort = false;
    bool m_older = false;
    bool m_switchAsked = false;
    QByteArray m_sealed;
    std::int64_t m_check = 0;
    int m_held = 0;
    UpgradeError m_error = UpgradeError::None;
};

} // namespace tarnload
