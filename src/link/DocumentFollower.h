// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

#include <QObject>

class InstrumentEvents;
class PenDocument;

/// Tells the instrument what it has to know of the active document: the extent that the sweep follows and the output
/// pin of the current pen. Listens; nobody calls it but for a start.
class DocumentFollower : public QObject
{
    Q_OBJECT

public:
    /// The events outlive the follower.
    DocumentFollower(const LinkContext& context, InstrumentEvents& events, QObject* parent = nullptr);

    /// Says the pin of the active document's current pen, when the instrument is connected and no script runs: pin 2
    /// for amplitude documents, pin 1 otherwise.
    void selectPin();

private:
    void follow(PenDocument* document);
    void sendExtent(double lowest, double highest, bool linear);

    LinkContext m_context;
    QMetaObject::Connection m_pen, m_extent;
};
