// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class Preferences;

/// What updates ask of the instrument's firmware. Implemented where the instrument and its firmware files are known.
class FirmwareSide
{
public:
    virtual ~FirmwareSide() = default;

    /// What names of firmware files for the instrument's model begin with; empty when no model is known.
    virtual QString listingTag() const = 0;
    /// As the instrument reports them.
    virtual double firmwareMajor() const = 0;
    virtual double firmwareMinor() const = 0;
    virtual bool deviceConnected() const = 0;
};

/// The rules of updates over the settings: where they come from, where they go and which are newer.
namespace updateoffers {

inline constexpr auto kProgramTag = "MG";
inline constexpr auto kFirmwareFile = "Upgrade.mfw";
inline constexpr auto kProgramFile = "Setup.exe";

/// Where update files lie, without a separator at its end: the stored folder, else the program's own.
QString updateFolder(const Preferences& preferences);
/// The file in that folder.
QString inUpdateFolder(const Preferences& preferences, const QString& name);
/// The file that is to be fetched and installed; in the update folder unless the user has chosen another.
QString firmwareFile(const Preferences& preferences);
QString programFile(const Preferences& preferences);

/// The address of a file of the web folder.
QString addressOf(const QString& webFolder, const QString& name);

/// True when the file's version is above the installed one; its place is stored then, so that it can be fetched.
bool takeFirmware(Preferences& preferences, const QString& strFile, double installed);
bool takeProgram(Preferences& preferences, const QString& strFile);

} // namespace updateoffers
