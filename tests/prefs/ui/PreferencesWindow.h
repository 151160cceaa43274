// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Preferences.h"
#include "prefs/PreferencesHost.h"
#include "prefs/SettingsStore.h"
#include "prefs/ui/frmPreferences.h"
#include "program/ProgramState.h"
#include "support/RecordingMessages.h"
#include "support/WriteCounter.h"

#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>

/// The main window as the preferences see it: keeps what it was told.
class FakeHost : public PreferencesHost
{
public:
    void penInitialise() override { calls.append(QStringLiteral("penInitialise")); }
    void setPenLabelColour(int iPen, std::uint32_t lColour, std::uint32_t lTextColour) override
    {
        calls.append(QStringLiteral("pen %1 %2 %3").arg(iPen).arg(lColour).arg(lTextColour));
    }
    void graphSetTickColour(std::uint32_t lColour) override { calls.append(QStringLiteral("tick %1").arg(lColour)); }
    QRect clientArea() const override { return area; }
    QString documentsFolder() const override { return documents; }

    QStringList calls;
    QRect area;
    QString documents;
};

/// The real window over an empty store, acted on through events.
class PreferencesWindowTest : public ::testing::Test
{
protected:
    PreferencesWindowTest() { host.documents = dir.filePath(QStringLiteral("Documents")); }

    frmPreferences& open()
    {
        window = std::make_unique<frmPreferences>(preferences, host, state, messages);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return *window;
    }
    void escape() { QTest::keyClick(window.get(), Qt::Key_Escape); }
    void click(const char* name) { QTest::mouseClick(find<QWidget>(name), Qt::LeftButton); }
    void pressOk() { click("cmdOK"); }

    template <typename T>
    T* find(const char* name)
    {
        T* const control = window->findChild<T*>(QLatin1String(name));
        if (control == nullptr) {
            QStringList names;
            for (const QWidget* other : window->findChildren<QWidget*>())
                names.append(other->objectName());
            ADD_FAILURE() << "no control " << name << " among " << names.join(QLatin1Char(' ')).toStdString();
        }
        return control;
    }
    QRadioButton* radio(const char* name) { return find<QRadioButton>(name); }
    /// Chooses an option as a user does: on its page, by the mouse.
    void choose(const char* name)
    {
        QWidget* const control = find<QWidget>(name);
        auto* const tabs = find<QTabWidget>("SSTab1");
        for (int i = 0; i < tabs->count(); ++i) {
            if (tabs->widget(i)->isAncestorOf(control))
                tabs->setCurrentIndex(i);
        }
        QTest::mouseClick(control, Qt::LeftButton, Qt::NoModifier, QPoint(8, control->height() / 2));
    }
    QString stored(const char* section, const char* key)
    {
        return store.GetSetting(kApp, QLatin1String(section), QLatin1String(key), QStringLiteral("absent"));
    }
    void store_(const char* section, const char* key, const char* text)
    {
        ASSERT_TRUE(store.SaveSetting(kApp, QLatin1String(section), QLatin1String(key), QString::fromUtf8(text)));
    }
    /// So that leaving the window stores nothing by itself.
    void setFolders()
    {
        for (std::size_t i = 0; i < options::kFolders.size(); ++i)
            preferences.setValue(options::kFolders[i].option, dir.filePath(QStringLiteral("folder%1").arg(i)));
    }

    const QString kApp = QStringLiteral("MarrowickGraph");
    QTemporaryDir dir;
    SettingsStore store{dir.filePath(QStringLiteral("config"))};
    Preferences preferences{store, kApp};
    FakeHost host;
    ProgramState state;
    RecordingMessages messages;
    std::unique_ptr<frmPreferences> window;
};
