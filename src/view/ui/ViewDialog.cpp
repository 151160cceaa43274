// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/ViewDialog.h"

#include "prefs/Preferences.h"
#include "view/ui/Controls.h"

#include <QTabBar>

#include <algorithm>

using namespace viewcontrols;

namespace {

constexpr int kLongestCaption = 50;

} // namespace

ViewDialog::ViewDialog(const Names& names, PenDocument& document, Preferences& preferences, UserMessages& messages,
                       QWidget* parent)
    : QDialog(parent)
    , m_options(document, messages)
    , m_preferences(preferences)
    , m_tabOption(names.tab)
    , m_firstTab(names.firstTab)
    , m_tabs(named(new QTabBar(this), names.tabs))
    , m_holder(named(new QWidget(this), "pages"))
{
    setObjectName(QLatin1String(names.form));
    const QString caption = document.caption();
    setWindowTitle(tr("Graph View Options: ") +
                   (caption.size() > kLongestCaption ? tr("...") + caption.right(kLongestCaption) : caption));
    m_tabs->setAccessibleName(tr("Groups of view options"));
    m_tabs->setExpanding(false);
    m_tabs->setUsesScrollButtons(false);
    m_tabs->setDrawBase(true);
    m_holder->setLayout(new QHBoxLayout);
    m_pens = new PenPage(m_options, m_holder);
    m_miscellaneous = new MiscellaneousPage(m_options, m_holder);
    m_frequency = new FrequencyPage(m_options, m_holder);
    m_style = new StylePage(m_options, m_holder);

    auto* const closes = named(new QPushButton(tr("&OK"), this), names.closes);
    closes->setDefault(true);
    connect(closes, &QPushButton::clicked, this, &QDialog::accept);
    auto* const foot = new QHBoxLayout;
    foot->addStretch();
    foot->addWidget(closes);
    auto* const whole = new QVBoxLayout(this);
    whole->setSpacing(0);
    whole->addWidget(m_tabs);
    whole->addWidget(m_holder, 1);
    whole->addLayout(foot);

    connect(&document, &QObject::destroyed, this, &QDialog::reject);
    for (const auto happens : {&PenDocument::pensChanged, &PenDocument::viewChanged, &PenDocument::zoomChanged})
        connect(&document, happens, this, [this] { RefreshFromDocument(false); });
}

void ViewDialog::addTab(const QString& caption, const QString& toolTip)
{
    m_tabs->setTabToolTip(m_tabs->addTab(caption), toolTip);
    m_pages.emplace_back();
}

void ViewDialog::addPage(QWidget* page, int number)
{
    named(page, "picOptions", number);
    // Side by side: one below the other they would not fit on a small screen.
    static_cast<QHBoxLayout*>(m_holder->layout())->addWidget(page, 1, Qt::AlignTop);
    m_pages.back().push_back(page);
}

void ViewDialog::finish()
{
    RefreshFromDocument(true);
    const int last = m_tabs->count() - 1;
    // The window has one size for all tabs.
    QSize largest;
    for (int tab = 0; tab <= last; ++tab) {
        showTab(tab);
        m_holder->layout()->activate();
        largest = largest.expandedTo(m_holder->layout()->minimumSize());
    }
    m_holder->setMinimumSize(largest);
    connect(m_tabs, &QTabBar::currentChanged, this, &ViewDialog::showTab);
    m_tabs->setCurrentIndex(std::clamp(m_preferences.value(m_tabOption) - m_firstTab, 0, last));
    showTab(m_tabs->currentIndex());
}

void ViewDialog::showTab(int index)
{
    for (const auto& pages : m_pages) {
        for (QWidget* page : pages)
            page->hide();
    }
    for (QWidget* page : m_pages[static_cast<std::size_t>(index)])
        page->show();
}

void ViewDialog::RefreshFromDocument(bool force)
{
    if (m_options.document() == nullptr)
        return;
    m_pens->refresh();
    m_miscellaneous->refresh();
    m_frequency->refresh(force);
    m_style->refresh();
    refreshOwn(force);
}

void ViewDialog::done(int result)
{
    // A box that is being edited is left before the document is.
    if (QWidget* const edited = focusWidget())
        edited->clearFocus();
    m_preferences.setValue(m_tabOption, m_tabs->currentIndex() + m_firstTab);
    saveOwn();
    QDialog::done(result);
}
