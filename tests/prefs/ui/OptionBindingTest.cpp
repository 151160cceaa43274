// SPDX-License-Identifier: GPL-3.0-or-later
// Every control of the preferences, found in the window itself and not in a list: what is changed reaches the store and
// comes back, what "Default" resets and what it leaves.
#include "PreferencesWindow.h"

#include "widgets/ui/ColourLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QLineEdit>
#include <QSlider>

#include <map>

namespace {

using namespace options;

class OptionBindingTest : public PreferencesWindowTest
{
protected:
    using Shown = std::map<QString, QString>;

    /// What the window's controls show, by their names; of the buttons of a group the chosen one.
    Shown shown()
    {
        Shown texts;
        for (const QWidget* control : window->findChildren<QWidget*>()) {
            if (const std::optional<QString> text = textOf(control))
                texts[control->objectName()] = *text;
        }
        // It follows the slider.
        texts.erase(QStringLiteral("lblShade"));
        return texts;
    }
    static std::optional<QString> textOf(const QWidget* control)
    {
        if (const auto* const button = qobject_cast<const QAbstractButton*>(control); button && button->isCheckable())
            return button->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
        if (const auto* const colour = qobject_cast<const ColourLabel*>(control))
            return QString::number(colour->colour());
        if (const auto* const list = qobject_cast<const QComboBox*>(control))
            return list->currentText();
        if (const auto* const box = qobject_cast<const QLineEdit*>(control))
            return box->text();
        if (const auto* const slider = qobject_cast<const QSlider*>(control))
            return QString::number(slider->value());
        return {};
    }
    /// Every control shows something else than before: of each group of options the last that is not chosen is.
    void changeAll()
    {
        for (QGroupBox* group : window->findChildren<QGroupBox*>()) {
            const auto buttons = group->findChildren<QRadioButton*>();
            QRadioButton* other = nullptr;
            for (QRadioButton* button : buttons)
                other = button->isChecked() ? other : button;
            if (other != nullptr)
                other->click();
        }
        for (QCheckBox* box : window->findChildren<QCheckBox*>())
            box->click();
        std::uint32_t colour = 0x123456;
        for (ColourLabel* label : window->findChildren<ColourLabel*>())
            label->setColour(colour += 0x010203);
        for (QLineEdit* box : window->findChildren<QLineEdit*>()) {
            if (box->objectName().startsWith(QLatin1String("txtFilePaths")))
                box->setText(dir.filePath(QStringLiteral("changed ") + box->objectName()));
        }
        auto* const fonts = find<QComboBox>("combFontSelection");
        fonts->setCurrentIndex(fonts->currentIndex() == 0 ? 1 : 0);
        auto* const shade = find<QSlider>("sldGraticuleShade");
        shade->setValue(shade->value() == 7 ? 3 : 7);
    }
    static QStringList differing(const Shown& one, const Shown& other)
    {
        QStringList names;
        for (const auto& [name, text] : one) {
            if (other.at(name) != text)
                names.append(name);
        }
        return names;
    }
    template <typename Form>
    void expectDefault(const Option<Form>& option)
    {
        EXPECT_EQ(preferences.storedText(option), Preferences::defaultText(option))
            << option.section.data() << ' ' << option.key.data();
    }
};

TEST_F(OptionBindingTest, AChangeOfEveryControlReachesTheStoreAndComesBackAfterARestart)
{
    open();
    const Shown before = shown();
    changeAll();
    const Shown changed = shown();
    // Of three options one has stayed unchosen.
    const QStringList differs = differing(before, changed);
    for (const auto& [name, text] : before) {
        if (!name.contains(QLatin1String("HalfCycle"))) {
            EXPECT_TRUE(differs.contains(name)) << name.toStdString();
        }
    }
    pressOk();
    window.reset();
    SettingsStore restartedStore(store.folder());
    Preferences restarted(restartedStore, kApp);
    window = std::make_unique<frmPreferences>(restarted, host, state, messages);
    EXPECT_EQ(differing(changed, shown()), QStringList());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(OptionBindingTest, DefaultResetsEveryOptionButThoseThatItIsToldToLeave)
{
    open();
    const Shown defaults = shown();
    changeAll();
    const Shown changed = shown();
    pressOk();
    open();
    click("cmdDefault");

    for (const auto& pen : kPens)
        expectDefault(pen);
    expectDefault(kAmplitudeAxisScaleLin);
    expectDefault(kAmplitudeAxisScaleAuto);
    expectDefault(kAmplitudePhaseGraph);
    expectDefault(kImpedanceAxisScaleLin);
    expectDefault(kImpedanceDisplayLimits);
    expectDefault(kImpedancePhaseGraph);
    expectDefault(kNotifyDevice);
    expectDefault(kPromptDevice);
    expectDefault(kPromptOverwrite);
    expectDefault(kLockPenAfterPlot);
    expectDefault(kSplashScreen);
    expectDefault(kOpenSettings);
    for (const FolderOption& folder : kFolders)
        EXPECT_EQ(preferences.storedText(folder.option), Preferences::defaultFolder(folder, host.documents));

    const QStringList left{QStringLiteral("optXFreqLog"),       QStringLiteral("optXFreqLinear"),
                           QStringLiteral("optImpedance"),      QStringLiteral("optAdmittance"),
                           QStringLiteral("optReactAuto"),      QStringLiteral("optReactManual"),
                           QStringLiteral("optResAuto"),        QStringLiteral("optResManual"),
                           QStringLiteral("combFontSelection"), QStringLiteral("sldGraticuleShade")};
    const auto check = [&](const Shown& now) {
        for (const auto& [name, text] : now)
            EXPECT_EQ(text, (left.contains(name) ? changed : defaults).at(name)) << name.toStdString();
    };
    check(shown());
    window.reset();
    open();
    check(shown());
}

TEST_F(OptionBindingTest, WhatAnotherCopyStoredMeanwhileStays)
{
    open();
    pressOk();
    open();
    // Another copy changes three of them; here the user changes one of those and one more.
    SettingsStore otherStore(store.folder());
    Preferences other(otherStore, kApp);
    ASSERT_TRUE(other.setValue(kNotifyDevice, true));
    ASSERT_TRUE(other.setValue(kPens[4], 0x334455u));
    ASSERT_TRUE(other.setValue(kImpedanceDisplayLimits, QString(kAutoLimits)));
    ASSERT_TRUE(other.setValue(kPlotFiles.option, dir.filePath(QStringLiteral("theirs"))));
    choose("optAutoZScale");
    choose("optManualZScale");
    choose("optAmplitudeLinear");
    find<ColourLabel>("lblColour_4")->setColour(0x112233);
    pressOk();
    EXPECT_EQ(preferences.value(kNotifyDevice), true);
    EXPECT_EQ(preferences.value(kPlotFiles.option), dir.filePath(QStringLiteral("theirs")));
    EXPECT_EQ(preferences.value(kImpedanceDisplayLimits), QString(kAutoLimits)) << "changed and changed back here";
    EXPECT_EQ(preferences.value(kPens[4]), 0x112233u) << "the user's own change holds";
    EXPECT_EQ(preferences.value(kAmplitudeAxisScaleLin), true);
}

TEST_F(OptionBindingTest, AnyNumberButZeroAsksBeforeOverwritingAndOpensTheSettings)
{
    for (const auto& [text, on] : {std::pair("2", true), std::pair("-1", true), std::pair("0", false),
                                   std::pair("1", true), std::pair("perhaps", true)}) {
        store_("Prompts", "PromptOverwrite", text);
        store_("Prompts", "OpenSettings", text);
        store_("Prompts", "NotifyDevice", text);
        EXPECT_EQ(preferences.value(kPromptOverwrite), on) << text;
        EXPECT_EQ(preferences.value(kOpenSettings), on) << text;
        EXPECT_EQ(preferences.value(kNotifyDevice), QLatin1String(text) == QLatin1String("1")) << text;
    }
    store_("Prompts", "PromptOverwrite", "2");
    open();
    EXPECT_TRUE(find<QCheckBox>("ckhPromptOverwrite")->isChecked());
}

TEST_F(OptionBindingTest, TheScaleOfEveryPageIsThatOfTheFrequencyAxis)
{
    open();
    for (const char* name : {"optAmplitudeLinear", "optImpedanceAdmittanceLinear", "optXFreqLinear"}) {
        const auto* const frame = qobject_cast<QGroupBox*>(find<QRadioButton>(name)->parentWidget());
        ASSERT_NE(frame, nullptr);
        EXPECT_EQ(frame->title(), QStringLiteral("Frequency axis scale")) << name;
    }
}

TEST_F(OptionBindingTest, OkAndDefaultWriteTheirOptionsTogether)
{
    setFolders();
    open();
    changeAll();
    WriteCounter writes(store.folder());
    pressOk();
    EXPECT_LE(writes.take(), 3) << "options, folders with looks, tab";
    open();
    writes.take();
    click("cmdDefault");
    EXPECT_LE(writes.take(), 2) << "options, folders";
}

} // namespace
