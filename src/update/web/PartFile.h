// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>

/// A file that arrives piece by piece: it is NAME.part beside its target until finish() gives it the name. What was
/// broken off stays as NAME.part, and the target as it was. Nobody but the user can write either.
class PartFile
{
public:
    /// The full name that the file shall have; its folder exists.
    explicit PartFile(const QString& target);

    /// Begins anew: what lay under the name of the part is removed, a symbolic link too, and never written through.
    Outcome open();
    Outcome write(QByteArrayView bytes);
    /// The bytes are on the disk and the target is this file.
    Outcome finish();

    QString partName() const { return m_file.fileName(); }

private:
    Outcome failed(const char* what) const;

    QString m_target;
    QFile m_file;
};
