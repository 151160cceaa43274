// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/ui/frmRecoveryList.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

frmRecoveryList::frmRecoveryList(const QString& title, const QString& action, const QStringList& headings,
                                 const QList<QStringList>& rows, QWidget* parent)
    : QDialog(parent)
    , m_list(new QTreeWidget(this))
    , m_action(new QPushButton(action, this))
{
    setObjectName(QStringLiteral("frmRecoveryList"));
    setWindowTitle(title);
    m_list->setObjectName(QStringLiteral("lstRecovery"));
    m_list->setAccessibleName(title);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setHeaderLabels(headings);
    for (const QStringList& row : rows)
        m_list->addTopLevelItem(new QTreeWidgetItem(row));
    for (int column = 0; column < headings.size(); ++column)
        m_list->resizeColumnToContents(column);
    m_list->setCurrentItem(m_list->topLevelItem(0));

    m_action->setObjectName(QStringLiteral("cmdBringBack"));
    m_action->setDefault(true);
    m_action->setEnabled(!rows.isEmpty());
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->addButton(m_action, QDialogButtonBox::AcceptRole);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_list);
    column->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 20);

    connect(m_list, &QTreeWidget::itemActivated, this, &frmRecoveryList::agree);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmRecoveryList::agree);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmRecoveryList::agree()
{
    m_chosen = m_list->indexOfTopLevelItem(m_list->currentItem());
    if (m_chosen >= 0)
        accept();
}
