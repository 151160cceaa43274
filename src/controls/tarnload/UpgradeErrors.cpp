// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/UpgradeErrors.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace tarnload {

namespace {

struct Text
{
    UpgradeError error;
    const char* text;
};

constexpr Text kTexts[] = {
    {UpgradeError::NoFile, QT_TRANSLATE_NOOP("tarnload", "No firmware file is open. Choose a firmware file first.")},
    {UpgradeError::Unreadable,
     QT_TRANSLATE_NOOP("tarnload",
                       "The firmware file cannot be read. Check its permissions, or copy it to this computer.")},
    {UpgradeError::NotFirmware,
     QT_TRANSLATE_NOOP("tarnload", "This is no firmware file. Choose a file that ends in .mfw.")},
    {UpgradeError::LaterFormat,
     QT_TRANSLATE_NOOP("tarnload", "The firmware file is of a later format. Update this program first.")},
    {UpgradeError::Damaged, QT_TRANSLATE_NOOP("tarnload", "The firmware file is cut short or damaged. Get it anew.")},
    {UpgradeError::Unsigned,
     QT_TRANSLATE_NOOP("tarnload", "The firmware file is not signed. Get it from the maker of the instrument.")},
    {UpgradeError::NoTrustedKeys,
     QT_TRANSLATE_NOOP("tarnload",
                       "No maker's key is installed here, so no firmware is trusted. Have the maker's key installed.")},
    {UpgradeError::UnknownKey,
     QT_TRANSLATE_NOOP("tarnload",
                       "The firmware file is signed by a key that is not trusted here. Get it from the maker.")},
    {UpgradeError::BadSignature,
     QT_TRANSLATE_NOOP("tarnload", "The firmware file was changed after it was signed. Get it anew from the maker.")},
    {UpgradeError::Busy, QT_TRANSLATE_NOOP("tarnload", "An upgrade is running already. Wait until it has ended.")},
    {UpgradeError::UnknownClass,
     QT_TRANSLATE_NOOP("tarnload", "Instruments of this kind cannot be upgraded by this program.")},
    {UpgradeError::NoDevice,
     QT_TRANSLATE_NOOP("tarnload",
                       "The instrument cannot be opened. Plug it in and close other programs that use it.")},
    {UpgradeError::NoAnswer,
     QT_TRANSLATE_NOOP("tarnload", "The instrument does not answer. Unplug it, plug it in again and start anew.")},
    {UpgradeError::OtherInstrument,
     QT_TRANSLATE_NOOP("tarnload",
                       "Another instrument than the chosen one answered. Nothing was changed; choose it again.")},
    {UpgradeError::WrongModel,
     QT_TRANSLATE_NOOP("tarnload", "The firmware is for another model. Choose the file for this instrument.")},
    {UpgradeError::WrongHardware,
     QT_TRANSLATE_NOOP(
         "tarnload",
         "The firmware does not fit this instrument's hardware revision. Ask the maker for the right file.")},
    {UpgradeError::OlderVersion,
     QT_TRANSLATE_NOOP(
         "tarnload", "The firmware is older than the instrument's own. Choose a newer file, or allow the older one.")},
    {UpgradeError::TooLarge,
     QT_TRANSLATE_NOOP("tarnload", "The firmware is too large for this instrument. Ask the maker for the right file.")},
    {UpgradeError::InstrumentBusy,
     QT_TRANSLATE_NOOP("tarnload", "The instrument is measuring. Stop its test or script and start again.")},
    {UpgradeError::NotTrustedThere,
     QT_TRANSLATE_NOOP("tarnload",
                       "The instrument does not trust the key of this firmware. Get the file from its maker.")},
    {UpgradeError::Interrupted,
     QT_TRANSLATE_NOOP(
         "tarnload",
         "The link was lost. The old firmware still runs: plug in and start again; it goes on where it stopped.")},
    {UpgradeError::NotTaken,
     QT_TRANSLATE_NOOP(
         "tarnload", "The link is too poor to send the firmware. The old one still runs: try another cable or port.")},
    {UpgradeError::OtherImage,
     QT_TRANSLATE_NOOP(
         "tarnload", "The firmware arrived spoilt and was not used. The old one still runs: start the upgrade again.")},
    {UpgradeError::MemoryFailed,
     QT_TRANSLATE_NOOP(
         "tarnload",
         "The instrument could not write its memory. The old firmware still runs: start again, or ask the maker.")},
    {UpgradeError::RolledBack,
     QT_TRANSLATE_NOOP("tarnload",
                       "The new firmware did not start, so the old one runs again. Report this to the maker.")},
    {UpgradeError::NotBack,
     QT_TRANSLATE_NOOP(
         "tarnload",
         "The instrument has not come back after its restart. Unplug it, plug it in and look at its version.")},
};

} // namespace

QString errorText(std::int16_t error)
{
    const auto* const found = std::find_if(std::begin(kTexts), std::end(kTexts), [error](const Text& text) {
        return static_cast<std::int16_t>(text.error) == error;
    });
    if (found == std::end(kTexts))
        return {};
    return QCoreApplication::translate("tarnload", found->text).left(kLongestErrorText);
}

QString errorText(UpgradeError error)
{
    return errorText(static_cast<std::int16_t>(error));
}

UpgradeError errorOf(firmware::Problem problem)
{
    switch (problem) {
    case firmware::Problem::None:
        return UpgradeError::None;
    case firmware::Problem::Unreadable:
        return UpgradeError::Unreadable;
    case firmware::Problem::NotFirmware:
        return UpgradeError::NotFirmware;
    case firmware::Problem::LaterVersion:
        return UpgradeError::LaterFormat;
    case firmware::Problem::Damaged:
        return UpgradeError::Damaged;
    case firmware::Problem::Unsigned:
        return UpgradeError::Unsigned;
    case firmware::Problem::NoTrustedKeys:
        return UpgradeError::NoTrustedKeys;
    case firmware::Problem::UnknownKey:
        return UpgradeError::UnknownKey;
    case firmware::Problem::BadSignature:
        return UpgradeError::BadSignature;
    }
    return UpgradeError::NotFirmware;
}

} // namespace tarnload
