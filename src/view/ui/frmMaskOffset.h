// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class NumberEdit;

/// Asks for an offset by which a mask line moves.
class frmMaskOffset : public QDialog
{
    Q_OBJECT

public:
    /// Over the owner, modally. The result is 0 for an empty text and when the user gave up.
    static void GetOffset(QWidget* objOwner, const QString& prompt, double& result);

    explicit frmMaskOffset(const QString& prompt, QWidget* objOwner = nullptr);
    double offset() const;

private:
    NumberEdit* txtMaskOffset;
};
