// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmDirSelect.h"

#include "program/UserMessages.h"

#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStorageInfo>
#include <QTreeView>

namespace {

QString existingFolderOf(const QString& path)
{
    QString folder = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    while (!QFileInfo(folder).isDir()) {
        const QString above = QFileInfo(folder).path();
        if (above == folder)
            return QDir::rootPath();
        folder = above;
    }
    return folder;
}

bool isBelow(const QString& folder, const QString& root)
{
    return folder == root || folder.startsWith(root.endsWith(u'/') ? root : root + u'/');
}

/// Volumes a user keeps files on; the kernel's own file systems and the system's parts are none.
bool isUsersVolume(const QStorageInfo& volume)
{
    const QString root = volume.rootPath();
    return volume.isValid() && volume.isReady() && volume.device().startsWith('/') &&
           (isBelow(root, QStringLiteral("/media")) || isBelow(root, QStringLiteral("/mnt")) ||
            isBelow(root, QStringLiteral("/run/media")));
}

} // namespace

frmDirSelect::frmDirSelect(UserMessages& messages, QWidget* parent)
    : QDialog(parent)
    , m_messages(messages)
    , m_folders(new QFileSystemModel(this))
    , m_files(new QFileSystemModel(this))
    , Drive1(new QComboBox(this))
    , Dir1(new QTreeView(this))
    , File1(new QListView(this))
    , lblPath(new QLabel(this))
    , btnMakeDir(new QPushButton(tr("New Folder"), this))
    , btnReset(new QPushButton(tr("Reset"), this))
    , btnOK(new QPushButton(tr("OK"), this))
{
    setObjectName(QStringLiteral("frmDirSelect"));
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Drive1->setAccessibleName(tr("Drive"));
    Dir1->setObjectName(QStringLiteral("Dir1"));
    Dir1->setAccessibleName(tr("Folders"));
    File1->setObjectName(QStringLiteral("File1"));
    File1->setAccessibleName(tr("Files in the chosen folder"));
    lblPath->setObjectName(QStringLiteral("lblPath"));
    lblPath->setTextFormat(Qt::PlainText);
    lblPath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblPath->setWordWrap(true);
    btnMakeDir->setObjectName(QStringLiteral("btnMakeDir"));
    btnReset->setObjectName(QStringLiteral("btnReset"));
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnMakeDir->setAutoDefault(false);
    btnReset->setAutoDefault(false);
    btnOK->setDefault(true);

    m_folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_folders->setRootPath(QDir::rootPath());
    Dir1->setModel(m_folders);
    Dir1->setHeaderHidden(true);
    for (int column = 1; column < m_folders->columnCount(); ++column)
        Dir1->hideColumn(column);
    Dir1->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    Dir1->header()->setStretchLastSection(false);
    Dir1->setUniformRowHeights(true);

    m_files->setFilter(QDir::Files);
    File1->setModel(m_files);
    File1->setSelectionMode(QAbstractItemView::NoSelection);
    File1->setUniformItemSizes(true);

    auto* const grid = new QGridLayout(this);
    grid->addWidget(lblPath, 0, 0, 1, 2);
    grid->addWidget(Drive1, 1, 0);
    grid->addWidget(Dir1, 2, 0, 4, 1);
    grid->addWidget(File1, 1, 1, 5, 1);
    grid->addWidget(btnMakeDir, 1, 2);
    grid->addWidget(btnReset, 2, 2, Qt::AlignTop);
    grid->addWidget(btnOK, 5, 2);
    grid->setRowStretch(4, 1);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);
    const int em = fontMetrics().averageCharWidth();
    resize(em * 100, fontMetrics().height() * 26);

    setTabOrder(Drive1, Dir1);
    setTabOrder(Dir1, File1);
    setTabOrder(File1, btnMakeDir);
    setTabOrder(btnMakeDir, btnReset);
    setTabOrder(btnReset, btnOK);

    fillDrives();
    // Folders are read and sorted in the background; what arrives above the chosen one would push it out of sight. Once
    // the user moves in the tree, it stays where it is.
    connect(m_folders, &QFileSystemModel::directoryLoaded, this, &frmDirSelect::keepInSight, Qt::QueuedConnection);
    connect(m_folders, &QFileSystemModel::layoutChanged, this, &frmDirSelect::keepInSight, Qt::QueuedConnection);
    Dir1->installEventFilter(this);
    Dir1->viewport()->installEventFilter(this);
    connect(Dir1->verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] { m_follow = false; });
    connect(Drive1, &QComboBox::currentIndexChanged, this, &frmDirSelect::Drive1_Change);
    connect(Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmDirSelect::Dir1_Change);
    connect(btnOK, &QPushButton::clicked, this, &frmDirSelect::btnOK_Click);
    connect(btnReset, &QPushButton::clicked, this, &frmDirSelect::Reset);
    connect(btnMakeDir, &QPushButton::clicked, this, &frmDirSelect::btnMakeDir_Click);
    goTo(QDir::homePath());
}

void frmDirSelect::fillDrives()
{
    const QSignalBlocker quiet(Drive1);
    Drive1->clear();
    Drive1->addItem(tr("Home (%1)").arg(QDir::homePath()), QDir::homePath());
    Drive1->addItem(tr("Computer (/)"), QDir::rootPath());
    const QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo& volume : volumes) {
        if (isUsersVolume(volume))
            Drive1->addItem(QStringLiteral("%1 (%2)").arg(volume.displayName(), volume.rootPath()), volume.rootPath());
    }
}

void frmDirSelect::selectDriveOf(const QString& folder)
{
    int best = -1;
    qsizetype length = -1;
    for (int i = 0; i < Drive1->count(); ++i) {
        const QString root = Drive1->itemData(i).toString();
        if (isBelow(folder, root) && root.size() > length) {
            best = i;
            length = root.size();
        }
    }
    const QSignalBlocker quiet(Drive1);
    Drive1->setCurrentIndex(best);
}

void frmDirSelect::goTo(const QString& folder)
{
    const QModelIndex index = m_folders->index(folder);
    Dir1->setCurrentIndex(index);
    Dir1->expand(index);
    m_follow = true;
    keepInSight();
}

void frmDirSelect::keepInSight()
{
    if (m_follow)
        Dir1->scrollTo(Dir1->currentIndex(), QAbstractItemView::PositionAtCenter);
}

bool frmDirSelect::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::Wheel || type == QEvent::KeyPress)
        m_follow = false;
    return QDialog::eventFilter(watched, event);
}

QString frmDirSelect::path() const
{
    return m_folders->filePath(Dir1->currentIndex());
}

void frmDirSelect::SetPath(const QString& strPath)
{
    if (strPath.isEmpty())
        return;
    StartPath = strPath;
    Reset();
}

void frmDirSelect::Reset()
{
    if (StartPath.isEmpty())
        return;
    const QString folder = existingFolderOf(StartPath);
    fillDrives();
    selectDriveOf(folder);
    goTo(folder);
}

void frmDirSelect::Drive1_Change()
{
    goTo(Drive1->currentData().toString());
}

void frmDirSelect::Dir1_Change()
{
    const QString folder = path();
    File1->setRootIndex(m_files->setRootPath(folder));
    lblPath->setText(folder);
}

void frmDirSelect::btnOK_Click()
{
    Status = StatusOk;
    accept();
}

void frmDirSelect::reject()
{
    Status = StatusClosed;
    QDialog::reject();
}

void frmDirSelect::showEvent(QShowEvent* event)
{
    Status = StatusNone;
    QDialog::showEvent(event);
    Dir1->setFocus();
    keepInSight();
}

void frmDirSelect::btnMakeDir_Click()
{
    const QPointer<frmDirSelect> alive(this);
    const QString name =
        QInputDialog::getText(this, tr("Create Directory"), tr("Enter directory to create.")).trimmed();
    if (alive.isNull() || name.isEmpty())
        return;
    const QString parentFolder = path();
    const QString folder = QDir(parentFolder).filePath(name);
    if (!QDir().mkdir(folder)) {
        m_messages.message(tr("Could not make directory: ") + folder, UserMessages::Stop, tr("Directory Create Error"));
        return;
    }
    // The model learns of new folders by itself, a little later; asking for the index makes it look now.
    m_folders->index(folder);
    goTo(parentFolder);
}
