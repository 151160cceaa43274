// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QComboBox;
class QFileSystemModel;
class QLabel;
class QListView;
class QPushButton;
class QTreeView;
class UserMessages;

/// Chooses a folder. Stays loaded between uses: hiding it, by OK or by closing, ends exec() and leaves Status.
///
/// Drive1 lists the places a path can start from (the root, the home folder, mounted volumes), Dir1 the folders, File1
/// what the chosen folder holds, for orientation only.
class frmDirSelect : public QDialog
{
    Q_OBJECT

public:
    enum
    {
        StatusNone = 0,
        StatusOk = 1,
        StatusClosed = 2
    };

    explicit frmDirSelect(UserMessages& messages, QWidget* parent = nullptr);

    QString StartPath;
    int Status = StatusNone;

    /// Goes back to StartPath. Where that does not exist (any more), to the nearest folder above it that does.
    void Reset();
    /// Sets StartPath and goes there; an empty text changes nothing.
    void SetPath(const QString& strPath);
    /// The chosen folder.
    QString path() const;

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void Drive1_Change();
    void Dir1_Change();
    void btnOK_Click();
    void btnMakeDir_Click();

private:
    void fillDrives();
    void selectDriveOf(const QString& folder);
    void goTo(const QString& folder);
    void keepInSight();

    UserMessages& m_messages;
    bool m_follow = true; ///< the tree scrolls to the chosen folder as others are read
    QFileSystemModel* m_folders;
    QFileSystemModel* m_files;
    QComboBox* Drive1;
    QTreeView* Dir1;
    QListView* File1;
    QLabel* lblPath;
    QPushButton* btnMakeDir;
    QPushButton* btnReset;
    QPushButton* btnOK;
};
