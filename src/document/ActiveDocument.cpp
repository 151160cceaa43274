// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ActiveDocument.h"

#include "document/PenDocument.h"

PenDocument* ActiveDocument::get() const
{
    ++m_lookUps;
    return m_document;
}

void ActiveDocument::set(PenDocument* document)
{
    if (document == m_document)
        return;
    disconnect(m_destroyed);
    m_document = document;
    if (document != nullptr)
        m_destroyed = connect(document, &QObject::destroyed, this, [this] {
            m_document = nullptr;
            Q_EMIT changed(nullptr);
        });
    Q_EMIT changed(document);
}
