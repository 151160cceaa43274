// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/UpgradeErrors.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/tarnload/UpGrade.h"
#include "controls/tarnload/file/ModelNames.h"

#include <gtest/gtest.h>

using tarnload::errorText;
using tarnload::UpgradeError;

TEST(UpgradeErrors, EachCodeHasItsText)
{
    const std::pair<UpgradeError, const char*> texts[] = {
        {UpgradeError::NoFile, "No firmware file is open. Choose a firmware file first."},
        {UpgradeError::Unreadable,
         "The firmware file cannot be read. Check its permissions, or copy it to this computer."},
        {UpgradeError::NotFirmware, "This is no firmware file. Choose a file that ends in .mfw."},
        {UpgradeError::LaterFormat, "The firmware file is of a later format. Update this program first."},
        {UpgradeError::Damaged, "The firmware file is cut short or damaged. Get it anew."},
        {UpgradeError::Unsigned, "The firmware file is not signed. Get it from the maker of the instrument."},
        {UpgradeError::NoTrustedKeys,
         "No maker's key is installed here, so no firmware is trusted. Have the maker's key installed."},
        {UpgradeError::UnknownKey,
         "The firmware file is signed by a key that is not trusted here. Get it from the maker."},
        {UpgradeError::BadSignature, "The firmware file was changed after it was signed. Get it anew from the maker."},
        {UpgradeError::Busy, "An upgrade is running already. Wait until it has ended."},
        {UpgradeError::UnknownClass, "Instruments of this kind cannot be upgraded by this program."},
        {UpgradeError::NoDevice, "The instrument cannot be opened. Plug it in and close other programs that use it."},
        {UpgradeError::NoAnswer, "The instrument does not answer. Unplug it, plug it in again and start anew."},
        {UpgradeError::OtherInstrument,
         "Another instrument than the chosen one answered. Nothing was changed; choose it again."},
        {UpgradeError::WrongModel, "The firmware is for another model. Choose the file for this instrument."},
        {UpgradeError::WrongHardware,
         "The firmware does not fit this instrument's hardware revision. Ask the maker for "
         "the right file."},
        {UpgradeError::OlderVersion,
         "The firmware is older than the instrument's own. Choose a newer file, or allow the older one."},
        {UpgradeError::Declined, ""},
        {UpgradeError::TooLarge, "The firmware is too large for this instrument. Ask the maker for the right file."},
        {UpgradeError::InstrumentBusy, "The instrument is measuring. Stop its test or script and start again."},
        {UpgradeError::NotTrustedThere,
         "The instrument does not trust the key of this firmware. Get the file from its maker."},
        {UpgradeError::Interrupted,
         "The link was lost. The old firmware still runs: plug in and start again; it goes on where it stopped."},
        {UpgradeError::NotTaken,
         "The link is too poor to send the firmware. The old one still runs: try another cable or port."},
        {UpgradeError::OtherImage,
         "The firmware arrived spoilt and was not used. The old one still runs: start the upgrade again."},
        {UpgradeError::MemoryFailed,
         "The instrument could not write its memory. The old firmware still runs: start again, or ask the maker."},
        {UpgradeError::RolledBack,
         "The new firmware did not start, so the old one runs again. Report this to the maker."},
        {UpgradeError::NotBack,
         "The instrument has not come back after its restart. Unplug it, plug it in and look at its version."},
    };
    for (const auto& [error, text] : texts) {
        EXPECT_EQ(errorText(error), QLatin1String(text));
        EXPECT_LE(errorText(error).size(), 128);
    }
    EXPECT_EQ(errorText(UpgradeError::None), QString());
    EXPECT_EQ(errorText(std::int16_t(99)), QString());
}

TEST(UpgradeErrors, TheLoaderTellsWhetherThereIsAText)
{
    DeviceList devices{std::vector<std::unique_ptr<DeviceSource>>()};
    const UpGrade loader(devices, QString());
    QString text = QStringLiteral("before");
    EXPECT_FALSE(loader.GetUpgradeError(0, text));
    EXPECT_EQ(text, QString());
    EXPECT_FALSE(loader.GetUpgradeError(static_cast<std::int16_t>(UpgradeError::Declined), text));
    EXPECT_TRUE(loader.GetUpgradeError(static_cast<std::int16_t>(UpgradeError::WrongModel), text));
    EXPECT_EQ(text, errorText(UpgradeError::WrongModel));
}

TEST(ModelNames, EveryModelIsFoundByWhatItReports)
{
    for (const firmware::ModelNames& model : firmware::kModels)
        EXPECT_EQ(firmware::modelReportedAs(model.reported), &model);
    EXPECT_EQ(firmware::modelReportedAs(QStringLiteral("PELLFERN"))->file, QLatin1String("DT46"));
    EXPECT_EQ(firmware::modelReportedAs(QStringLiteral("R52")), nullptr);
    EXPECT_EQ(firmware::modelReportedAs(QString()), nullptr);
}
