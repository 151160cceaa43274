// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QStringList>

class QPushButton;
class QTreeWidget;

/// A list of things that can be brought back, the first of them chosen. Everything shown is plain text.
class frmRecoveryList : public QDialog
{
    Q_OBJECT

public:
    /// action: the text of the button that agrees.
    frmRecoveryList(const QString& title, const QString& action, const QStringList& headings,
                    const QList<QStringList>& rows, QWidget* parent = nullptr);

    /// The row that was agreed to, from 0; -1 when the dialog was cancelled.
    int chosen() const { return m_chosen; }

private:
    void agree();

    QTreeWidget* m_list;
    QPushButton* m_action;
    int m_chosen = -1;
};
