// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QSvgWidget;
class QVBoxLayout;

/// A dialog with a picture over its whole height at the left, which takes 2280 of 6120 parts of the width; its controls
/// stand beside it. It never gets smaller than they need.
class PicturedDialog : public QDialog
{
public:
    /// pictureName: the object name of the picture.
    PicturedDialog(const QString& pictureName, QWidget* parent);

protected:
    /// Controls are children of this and stand in its layout.
    QWidget* content() const { return m_content; }
    QVBoxLayout* column() const { return m_column; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeRoom();

    QSvgWidget* m_picture;
    QWidget* m_content;
    QVBoxLayout* m_column;
};
