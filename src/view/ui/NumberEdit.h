// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/KeyFilter.h"

#include <QLineEdit>

/// A box for a number: what is typed or pasted passes a filter. Enter goes no further than to whoever listens.
class NumberEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit NumberEdit(keyfilter::Filter filter, QWidget* parent = nullptr);

    void setFilter(keyfilter::Filter filter) { m_filter = filter; }
    /// Says at the box that its text was not taken.
    void refuse(const QString& sentence);

Q_SIGNALS:
    void entered();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void filterText();

    keyfilter::Filter m_filter;
};
