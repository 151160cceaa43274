// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/UpGrade.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

class DeviceList;
class DeviceModule;

/// What the firmware wizard does, without its pages: looks at files, finds instruments, takes one away from the link,
/// upgrades it, gives it back.
///
/// Waits run events: whoever calls holds what it needs by QPointer.
class FirmwareUpgrade : public QObject
{
    Q_OBJECT

public:
    /// What is shown of a file.
    struct Verdict
    {
        bool valid = false;
        QString version;     ///< "V1.28 Build 7"; empty unless valid
        QString information; ///< the notes of a valid file, or why it is none
    };

    /// Both outlive it.
    FirmwareUpgrade(DeviceModule& module, DeviceList& devices,
                    const QString& keyFolder = firmware::TrustedKeys::installedFolder());

    UpGrade& loader() { return m_loader; }

    /// The file stored last, or the program's folder.
    QString storedFile() const;
    void storeFile(const QString& fileName);
    /// Where the file dialog begins.
    QString browseFolder() const;
    /// Nothing while the loader is busy. An empty name becomes "Upgrade.mfw".
    std::optional<Verdict> CheckUpgradeFile(QString& fileName);

    /// The link lets go of its instrument, which is given back at the end.
    void takeAway();
    /// So many times: block for that time, then let events run.
    void wait(int rounds, int milliseconds);
    /// Serial numbers of the instruments found; runs events behind each.
    QStringList findInstruments();
    /// Opens the instrument through the link; true when it is open.
    bool open(const QString& serial);
    /// Of the open instrument; -1 without one.
    std::int16_t openIndex() const;
    /// Writes the file into the instrument of that index, which must be the one opened last. A failure has been told.
    bool RunUpgrade(const QString& fileName, std::int16_t iDeviceIndex);
    /// The instrument that the link had first, or else the one opened here, is opened again and asked for its state.
    /// One that is not there any more is told to the program as lost.
    void giveBack();

    static constexpr const char* kErrorTitle =
        QT_TRANSLATE_NOOP("FirmwareUpgrade", "**Error During Upgrade: Please take note of this string and report to "
                                             "technical support");

Q_SIGNALS:
    /// The file as it is handed to the loader.
    void fileJudged(const QString& version, const QString& information);

private:
    int indexOf(const QString& serial) const;
    Verdict verdict();
    bool olderWanted(const QString& running, const QString& file);

    DeviceModule& m_module;
    UpGrade m_loader;
    QString m_taken;  ///< the instrument that the link had
    QString m_opened; ///< the one opened here last
};
