// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/PaperName.h"

#include <QCoreApplication>

#include <array>

QString PaperName(int size)
{
    static constexpr std::array kNames{
        QT_TRANSLATE_NOOP("PaperName", "Letter, 8 1/2 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "Letter Small, 8 1/2 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "Tabloid, 11 x 17 in."),
        QT_TRANSLATE_NOOP("PaperName", "Ledger, 17 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "Legal, 8 1/2 x 14 in."),
        QT_TRANSLATE_NOOP("PaperName", "Statement, 5 1/2 x 8 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "Executive, 7 1/2 x 10 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "A3, 297 x 420 mm"),
        QT_TRANSLATE_NOOP("PaperName", "A4, 210 x 297 mm"),
        QT_TRANSLATE_NOOP("PaperName", "A4 Small, 210 x 297 mm"),
        QT_TRANSLATE_NOOP("PaperName", "A5, 148 x 210 mm"),
        QT_TRANSLATE_NOOP("PaperName", "B4, 250 x 354 mm"),
        QT_TRANSLATE_NOOP("PaperName", "B5, 182 x 257 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Folio, 8 1/2 x 13 in."),
        QT_TRANSLATE_NOOP("PaperName", "Quarto, 215 x 275 mm"),
        QT_TRANSLATE_NOOP("PaperName", "10 x 14 in."),
        QT_TRANSLATE_NOOP("PaperName", "11 x 17 in."),
        QT_TRANSLATE_NOOP("PaperName", "Note, 8 1/2 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope #9, 3 7/8 x 8 7/8 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope #10, 4 1/8 x 9 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope #11, 4 1/2 x 10 3/8 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope #12, 4 1/2 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope #14, 5 x 11 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "C size sheet"),
        QT_TRANSLATE_NOOP("PaperName", "D size sheet"),
        QT_TRANSLATE_NOOP("PaperName", "E size sheet"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope DL, 110 x 220 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope C3, 324 x 458 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope C4, 229 x 324 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope C5, 162 x 229 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope C6, 114 x 162 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope C65, 114 x 229 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope B4, 250 x 353 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope B5, 176 x 250 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope B6, 176 x 125 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope, 110 x 230 mm"),
        QT_TRANSLATE_NOOP("PaperName", "Envelope Monarch, 3 7/8 x 7 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "Envelope, 3 5/8 x 6 1/2 in."),
        QT_TRANSLATE_NOOP("PaperName", "U.S. Standard Fanfold, 14 7/8 x 11 in."),
        QT_TRANSLATE_NOOP("PaperName", "German Standard Fanfold, 8 1/2 x 12 in."),
        QT_TRANSLATE_NOOP("PaperName", "German Legal Fanfold, 8 1/2 x 13 in."),
    };
    if (size < 1 || size > static_cast<int>(kNames.size()))
        return QCoreApplication::translate("PaperName", "User-defined");
    return QCoreApplication::translate("PaperName", kNames.at(static_cast<std::size_t>(size) - 1));
}
