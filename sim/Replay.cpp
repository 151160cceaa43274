// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Replay.h"

#include "sim/LogPlayer.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace sim {

ValueOr<Replay> Replay::load(const QString& fileName)
{
    const auto failure = [&fileName](const QString& why) {
        return Outcome::failure(
            QCoreApplication::translate("sim::Replay", "\"%1\" cannot be replayed: %2").arg(fileName, why));
    };
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString() + QLatin1Char('.'));
    Replay replay;
    if (file.peek(static_cast<qint64>(sizeof linklog::kHeader)).startsWith(linklog::kHeader)) {
        ValueOr<std::vector<linklog::Entry>> entries = LogPlayer::readLog(file);
        if (!entries)
            return failure(entries.sentence());
        replay.log = std::move(entries.value());
        return replay;
    }
    const QByteArray text = file.read(MeasuredTable::kLongestFile + 1);
    if (text.size() > MeasuredTable::kLongestFile)
        return failure(QCoreApplication::translate("sim::Replay", "A table has at most %1 bytes.")
                           .arg(MeasuredTable::kLongestFile));
    ValueOr<MeasuredTable> table = MeasuredTable::fromCsv(text, QFileInfo(fileName).fileName());
    if (!table)
        return failure(table.sentence());
    replay.table = std::make_shared<MeasuredTable>(std::move(table.value()));
    return replay;
}

} // namespace sim
