// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/FileLock.h"

#include <QString>

#include <memory>
#include <vector>

/// Which window titles are in use by running copies of the program.
class TitleRegistry
{
public:
    virtual ~TitleRegistry() = default;
    /// False when another copy has the title. Otherwise it is this copy's from now on: look-up and taking are one step,
    /// so that two copies that start together cannot both find it free.
    virtual bool take(const QString& title) = 0;
};

inline constexpr int kLastNumberTried = 100;

/// The title of this copy: the program's own when it is free, else followed by the first free number from 1 to 100, no
/// blank between; 101, unchecked, when all are in use.
QString settleInstanceTitle(const QString& strAppTitle, TitleRegistry& registry);

/// One lock file a title in the user's runtime folder, held as long as this object lives. A copy that has ended,
/// however it ended, holds none. Where no lock can be made every title counts as free.
class LockedTitles : public TitleRegistry
{
public:
    /// The folder is created when missing. Default: the folder "marrowick/titles" in the runtime folder.
    explicit LockedTitles(QString folder = {});
    bool take(const QString& title) override;

private:
    QString m_folder;
    std::vector<std::unique_ptr<FileLock>> m_held;
};
