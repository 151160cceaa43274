// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

class PenDocument;

/// The document that commands go to: the one whose window is active, or the only one of a program without windows. One
/// object a program; the windows set it, everybody else listens or asks.
class ActiveDocument : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Null when none is active.
    PenDocument* get() const;
    /// Raises changed() when it is another one. A document that dies is active no longer; changed(null) is raised.
    void set(PenDocument* document);
    /// How often get() was called: what happens for every point of a sweep must not ask.
    std::uint64_t lookUps() const { return m_lookUps; }

Q_SIGNALS:
    void changed(PenDocument* document);

private:
    QPointer<PenDocument> m_document;
    QMetaObject::Connection m_destroyed;
    mutable std::uint64_t m_lookUps = 0;
};
