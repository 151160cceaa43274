// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What can be done with firmware files: show, check, install, pack, sign, key.
class FirmwareCommand : public Command
{
public:
    FirmwareCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Words; }
    QString words() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

private:
    ExitCode show(const QString& file, Arguments& arguments, Console& console) const;
    ExitCode check(const QString& file, Arguments& arguments, Console& console) const;
    ExitCode install(const QString& file, Arguments& arguments, Console& console) const;
    ExitCode pack(const QString& file, Arguments& arguments, Console& console) const;
    ExitCode sign(const QString& file, Arguments& arguments, Console& console) const;
    ExitCode key(const QString& file, Arguments& arguments, Console& console) const;
    QString keyFolder(const Arguments& arguments) const;

    QCommandLineOption m_device, m_dryRun, m_allowOlder, m_trustedKeys;
    QCommandLineOption m_model, m_hardware, m_version, m_build, m_notes, m_key, m_output;
};

} // namespace cli
