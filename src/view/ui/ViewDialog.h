// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Options.h"
#include "view/ViewOptions.h"
#include "view/ui/ViewPages.h"

#include <QDialog>

#include <vector>

class Preferences;
class QGridLayout;
class QTabBar;

/// What both dialogs of view options are: tabs over pages that act on the document at once, and a button that closes.
/// It follows the document while it is open and closes by itself when that goes. The tab is kept in the preferences.
class ViewDialog : public QDialog
{
    Q_OBJECT

public:
    void chkInformation_Click() { m_miscellaneous->chkInformation_Click(); }
    void PopulateTheFontSelectWindow() { m_style->PopulateTheFontSelectWindow(); }
    void SetNewFont(const QString& strFontName) { m_options.SetNewFont(strFontName); }
    void GetFontFromGraph(QString& strFontName) const { m_options.GetFontFromGraph(strFontName); }

    void done(int result) override;

protected:
    using TabOption = options::Option<options::Integer>;
    struct Names
    {
        const char *form, *tabs, *closes;
        const TabOption& tab;
        int firstTab; ///< the number that stands for the first tab in the preferences
    };
    ViewDialog(const Names& names, PenDocument& document, Preferences& preferences, UserMessages& messages,
               QWidget* parent);

    ViewOptions& options() { return m_options; }
    /// Before the pages of it.
    void addTab(const QString& caption, const QString& toolTip);
    /// A page of the last tab; it is one of the array picOptions.
    void addPage(QWidget* page, int number);
    /// When all pages are there.
    void finish();
    virtual void refreshOwn(bool force) = 0;
    /// Before the window goes.
    virtual void saveOwn() {}

    PenPage* m_pens;
    MiscellaneousPage* m_miscellaneous;
    FrequencyPage* m_frequency;
    StylePage* m_style;

private:
    void RefreshFromDocument(bool force);
    void showTab(int index);

    ViewOptions m_options;
    Preferences& m_preferences;
    const TabOption& m_tabOption;
    int m_firstTab;
    QTabBar* m_tabs;
    QWidget* m_holder;
    std::vector<std::vector<QWidget*>> m_pages; ///< by tab
};
