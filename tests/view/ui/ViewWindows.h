// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentBench.h"
#include "support/FindControl.h"
#include "support/Press.h"
#include "view/ui/GraphViewXRGB.h"
#include "view/ui/frmOptions.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

/// One of the two dialogs over a document, on the screen.
class ViewWindowTest : public ::testing::Test
{
protected:
    ~ViewWindowTest() override { dialog.reset(); }

    void open(PenDocument::TestType type)
    {
        dialog.reset();
        document = bench.document(type);
        reopen();
    }
    void reopen()
    {
        dialog.reset();
        if (document->pgiTestType() == PenDocument::Reactance)
            dialog = std::make_unique<GraphViewXRGB>(*document, bench.preferences, bench.messages);
        else
            dialog = std::make_unique<frmOptions>(*document, bench.preferences, bench.messages);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        document->setModified(false);
    }
    GraphModel& graph() { return document->peGraph(); }
    const graph::YAxis& axis(int number) { return graph().properties().yAxes[static_cast<std::size_t>(number)]; }
    QTabBar& tabs() { return *dialog->findChild<QTabBar*>(); }
    /// The tab of that caption, without its access key.
    void showTab(const char* caption)
    {
        for (int i = 0; i < tabs().count(); ++i) {
            if (QString(tabs().tabText(i)).remove(u'&') == QLatin1String(caption))
                QTest::mouseClick(&tabs(), Qt::LeftButton, Qt::NoModifier, tabs().tabRect(i).center());
        }
        press::settle();
    }
    template <typename Control>
    Control& control(const char* name)
    {
        return *findControl<Control>(dialog.get(), name);
    }
    /// Clicked by mouse; what is hidden or disabled is not.
    void click(const char* name)
    {
        auto& button = control<QAbstractButton>(name);
        ASSERT_TRUE(button.isVisible() && button.isEnabled()) << name;
        // Options and check boxes react at their mark.
        const bool marked = qobject_cast<QPushButton*>(&button) == nullptr;
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier,
                          marked ? QPoint(8, button.height() / 2) : button.rect().center());
        press::settle();
    }
    bool isChecked(const char* name) { return control<QAbstractButton>(name).isChecked(); }
    bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }
    QString text(const char* name) { return control<QLineEdit>(name).text(); }
    QString title(const char* name) { return control<QGroupBox>(name).title(); }
    /// Typed key by key over what the box shows.
    void type(const char* name, const char* keys)
    {
        auto& box = control<QLineEdit>(name);
        ASSERT_TRUE(box.isVisible() && box.isEnabled()) << name;
        box.setFocus();
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, QLatin1String(keys));
        press::settle();
    }
    void enter(const char* name)
    {
        QTest::keyClick(&control<QLineEdit>(name), Qt::Key_Return);
        press::settle();
    }
    /// The graph shows what was set, and the document is modified; both are forgotten.
    bool changed()
    {
        const bool shown = graph().properties() == graph().shownProperties();
        const bool modified = document->gbfModified();
        document->setModified(false);
        return shown && modified;
    }
    void zoomIn()
    {
        graph::ZoomLimits zoomed;
        zoomed.ZoomMinX = zoomed.ZoomMinTX = 3;
        zoomed.ZoomMaxX = zoomed.ZoomMaxTX = 4;
        zoomed.ZoomMinY = 1;
        zoomed.ZoomMaxY = 2;
        graph().userZoom(zoomed);
        press::settle();
    }

    DocumentBench bench;
    std::unique_ptr<PenDocument> document;
    std::unique_ptr<ViewDialog> dialog;
};
