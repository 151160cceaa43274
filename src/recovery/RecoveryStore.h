// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recovery/JournalFolder.h"
#include "recovery/Record.h"
#include "values/Outcome.h"

#include <QDateTime>
#include <QString>

#include <vector>

/// What can be brought back out of the journals of all programs, running and ended. It reads and never changes them.
class RecoveryStore
{
public:
    explicit RecoveryStore(QString folder, const recovery::Limits& limits = {});

    /// Where a thing lies; of no meaning to others.
    struct Place
    {
        QString session;
        QString file;
        qint64 offset = 0;
        std::uint32_t document = 0;
    };
    /// A pen's data that its document holds no longer.
    struct Pen
    {
        QDateTime when;
        QString caption; ///< of its document
        QString fileName;
        std::int16_t testType = 0; ///< plot::TestType
        int pen = 0;               ///< from 0
        QString name;
        int points = 0;
        Place place;
    };
    /// A plot with points that no window shows and no file holds.
    struct Plot
    {
        QDateTime when; ///< last known
        QString caption;
        QString fileName;
        std::int16_t testType = 0;
        bool crashed = false; ///< its program ended without having closed it
        Place place;
    };

    /// The newest first.
    std::vector<Pen> pens() const;
    std::vector<Plot> plots() const;
    /// What programs that have ended left unsaved and nobody was told of yet; counts as told from now on.
    std::vector<Plot> takeUntold() const;

    ValueOr<recovery::PenRecord> read(const Pen& pen) const;
    /// As GraphFile stores it.
    ValueOr<QByteArray> read(const Plot& plot) const;

private:
    std::vector<Plot> unsavedPlots(const QString& session) const;
    ValueOr<QByteArray> replay(const Place& place) const;

    QString m_folder;
    recovery::Limits m_limits;
};
