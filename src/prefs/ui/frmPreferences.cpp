// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmPreferences.h"

#include "prefs/DataFolders.h"
#include "prefs/GraticuleShade.h"
#include "prefs/Preferences.h"
#include "prefs/PreferencesHost.h"
#include "prefs/SettingsStore.h"
#include "prefs/ui/frmDirSelect.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Colours.h"
#include "values/Conversions.h"
#include "widgets/ui/ColourLabel.h"
#include "widgets/ui/QtColour.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabWidget>

#include <optional>
#include <utility>

using namespace options;

frmPreferences::frmPreferences(Preferences& preferences, PreferencesHost& host, ProgramState& state,
                               UserMessages& messages, QWidget* parent)
    : QDialog(parent)
    , m_preferences(preferences)
    , m_host(host)
    , m_state(state)
    , m_messages(messages)
{
    setObjectName(QStringLiteral("frmPreferences"));
    setWindowTitle(tr("Preferences"));
    buildPages();
    bindOptions();
    {
        // To open the window changes no document; only moving the slider does.
        const QSignalBlocker quiet(sldGraticuleShade);
        LoadPreferences();
        showShade();
    }
    connect(cmdDefault, &QPushButton::clicked, this, &frmPreferences::cmdDefault_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmPreferences::cmdOK_Click);
    connect(sldGraticuleShade, &QSlider::valueChanged, this, &frmPreferences::sldGraticuleShade_Change);
    for (int i = 0; i < kPenCount; ++i)
        connect(lblColour[static_cast<std::size_t>(i)], &ColourLabel::changeAsked, this,
                [this, i] { lblColour_DblClick(i); });
    for (std::size_t i = 0; i < btnSetPath.size(); ++i)
        connect(btnSetPath[i], &QPushButton::clicked, this, [this, i] { btnSetPath_Click(static_cast<int>(i)); });
}

void frmPreferences::selectPage(int page)
{
    SSTab1->setCurrentIndex(page - 1);
}

QString frmPreferences::documentsFolder()
{
    QString folder = m_host.documentsFolder();
    if (folder.isEmpty())
        m_messages.message(tr("Error getting the 'My Documents' path"), UserMessages::Stop, tr("File Path Error"));
    return folder;
}

void frmPreferences::bindPhase(const Option<Integer>& option, const PhaseOptions& phase)
{
    m_options.add(optionplace::exact(m_preferences, option),
                  optioncontrol::of({{phase.wholeCycle, QString::number(PhaseWholeCycle)},
                                     {phase.halfCycle, QString::number(PhaseHalfCycle)},
                                     {phase.off, QString::number(PhaseOff)}}));
}

void frmPreferences::bindOptions()
{
    Preferences& store = m_preferences;
    const QString yes = values::booleanText(true);
    const QString no = values::booleanText(false);
    for (std::size_t pen = 0; pen < kPens.size(); ++pen)
        m_options.add(optionplace::of(store, kPens[pen]), optioncontrol::of(lblColour[pen]));

    m_options.add(optionplace::exact(store, kAmplitudeAxisScaleLin),
                  optioncontrol::flag(optAmplitudeLinear, optAmplitudeLog));
    m_options.add(optionplace::exact(store, kAmplitudeAxisScaleAuto),
                  optioncontrol::of({{optAmpScaleAuto, yes}, {optAmpScaleManual, no}}));
    bindPhase(kAmplitudePhaseGraph, m_amplitudePhase);
    m_options.add(optionplace::exact(store, kImpedanceAxisScaleLin),
                  optioncontrol::flag(optImpedanceAdmittanceLinear, optImpedanceAdmittanceLog));
    m_options.add(optionplace::exact(store, kImpedanceDisplayLimits),
                  optioncontrol::of({{optAutoZScale, kAutoLimits}, {optManualZScale, kManualLimits}}));
    bindPhase(kImpedancePhaseGraph, m_impedancePhase);

    using Flags = std::pair<Option<Flag>, OptionControl>;
    for (const auto& [option, control] : {Flags(kReactanceFreqLog, optioncontrol::flag(optXFreqLog, optXFreqLinear)),
                                          Flags(kReactanceImpedance, optioncontrol::flag(optImpedance, optAdmittance)),
                                          Flags(kReactanceReactAuto, optioncontrol::flag(optReactAuto, optReactManual)),
                                          Flags(kReactanceResAuto, optioncontrol::flag(optResAuto, optResManual))})
        m_options.add(optionplace::of(store, option), control, OnDefault::Stays);

    m_options.add(optionplace::of(store, kNotifyDevice), optioncontrol::of(chkNotifyDevice));
    m_options.add(optionplace::of(store, kPromptDevice), optioncontrol::of(chkPromptDevice));
    m_options.add(optionplace::of(store, kPromptOverwrite), optioncontrol::of(ckhPromptOverwrite));
    m_options.add(optionplace::of(store, kLockPenAfterPlot), optioncontrol::of(chkLockPenAfterPlot));
    m_options.add(optionplace::of(store, kSplashScreen), optioncontrol::of(chkDisplaySplash));
    m_options.add(optionplace::of(store, kOpenSettings), optioncontrol::of(chkOpenSettings));

    for (std::size_t i = 0; i < kFolders.size(); ++i)
        m_folders.add(optionplace::of(store, kFolders[i], [this] { return m_documentsFolder; }),
                      optioncontrol::of(txtFilePaths[i]));

    m_looks.add(optionplace::exact(store, kGraticuleShade),
                {[this](const QString& text) { sldGraticuleShade->setValue(GraticuleShade::stopOf(text)); },
                 [this] {
                     return Preferences::textFor<Colour>(
                         GraticuleShade::colourOf(sldGraticuleShade->value()).value_or(kGraticuleShade.defaultValue));
                 }},
                OnDefault::Stays);
    // Without a selection the stored font is one that this machine lacks: it stays for the day it is installed.
    OptionControl font = optioncontrol::of(combFontSelection);
    font.show = [this](const QString& text) { SetCurrentFont(text); };
    m_looks.add(optionplace::of(store, kDefaultFont), font, OnDefault::Stays);
}

void frmPreferences::LoadPreferences()
{
    m_options.load();
    const QPointer<frmPreferences> alive(this);
    const QString documents = documentsFolder();
    if (alive.isNull())
        return;
    m_documentsFolder = documents;
    m_folders.load();
    PopulateTheFontSelectWindow();
    m_looks.load();
    SSTab1->setCurrentIndex(m_preferences.value(kPreferencesTab));
}

void frmPreferences::SavePreferences()
{
    check(m_options.save(m_preferences));
    // Messages may follow, and with them whatever else stores settings.
    const QPointer<frmPreferences> alive(this);
    const bool made = MakeDefaultDirectories();
    if (alive.isNull())
        return;
    {
        SettingsStore::Batch batch(m_preferences.store());
        if (made)
            m_folders.save(m_preferences);
        m_looks.save(m_preferences);
        check(batch.commit());
    }
    tellUnlessStored();
}

void frmPreferences::check(bool stored)
{
    m_storeFailed = m_storeFailed || !stored;
}

void frmPreferences::tellUnlessStored()
{
    if (!m_storeFailed || m_storeFailureTold)
        return;
    m_storeFailureTold = true;
    m_messages.message(
        tr("The preferences could not be stored. Check that your configuration folder can be written and "
           "that the disk is not full."),
        UserMessages::Stop, tr("Preferences"));
}

void frmPreferences::cmdDefault_Click()
{
    check(m_options.reset(m_preferences));
    m_host.penInitialise();

    const QPointer<frmPreferences> alive(this);
    const QString documents = documentsFolder();
    if (alive.isNull())
        return;
    m_documentsFolder = documents;
    check(m_folders.reset(m_preferences));
    LoadPreferences();
    if (!alive.isNull())
        tellUnlessStored();
}

void frmPreferences::cmdOK_Click()
{
    const QPointer<frmPreferences> alive(this);
    SavePreferences();
    if (!alive.isNull())
        accept();
}

void frmPreferences::lblColour_DblClick(int index)
{
    ColourLabel* const label = lblColour[static_cast<std::size_t>(index)];
    const QPointer<frmPreferences> alive(this);
    const QColor chosen =
        QColorDialog::getColor(toQColor(label->colour()), this, tr("Colour of pen %1").arg(index + 1));
    if (alive.isNull() || !chosen.isValid())
        return;
    const std::uint32_t lColour = fromQColor(chosen);
    label->setColour(lColour);
    m_host.setPenLabelColour(index, lColour, colours::labelTextColour(lColour));
    m_state.glPenColour[static_cast<std::size_t>(index)] = lColour;
    check(m_options[static_cast<std::size_t>(index)].save());
    tellUnlessStored();
}

void frmPreferences::sldGraticuleShade_Change()
{
    showShade();
    if (const auto shade = GraticuleShade::colourOf(sldGraticuleShade->value()))
        m_host.graphSetTickColour(*shade);
}

void frmPreferences::showShade()
{
    lblShade->setColour(GraticuleShade::colourOf(sldGraticuleShade->value()).value_or(kGraticuleShade.defaultValue));
}

void frmPreferences::folderFailed(const QString& candidate)
{
    m_messages.message(tr("Could not make directory: ") + candidate, UserMessages::Stop, tr("Directory Create Error"));
}

bool frmPreferences::MakeDefaultDirectories()
{
    QStringList paths;
    for (const QLineEdit* const box : txtFilePaths)
        paths.append(box->text());
    const QPointer<frmPreferences> alive(this);
    return DataFolders::MakeDefaultDirectories(paths, [alive](const QString& candidate) {
        if (!alive.isNull())
            alive->folderFailed(candidate);
    });
}

void frmPreferences::PopulateTheFontSelectWindow()
{
    combFontSelection->clear();
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        if (!QFontDatabase::isPrivateFamily(family))
            combFontSelection->addItem(family);
    }
    combFontSelection->setCurrentIndex(-1);
}

void frmPreferences::SetCurrentFont(const QString& strFontName)
{
    const int found = combFontSelection->findText(strFontName, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found >= 0)
        combFontSelection->setCurrentIndex(found);
    else
        combFontSelection->setPlaceholderText(tr("%1 (not installed)").arg(strFontName));
}

void frmPreferences::btnSetPath_Click(int index)
{
    if (m_dirSelect == nullptr)
        m_dirSelect = new frmDirSelect(m_messages, this);
    const QString captions[] = {tr("Select location for PLOT files"), tr("Select location for EXPORT files"),
                                tr("Select location for SCRIPT files"), tr("Select location for UPDATE files")};
    QLineEdit* const box = txtFilePaths[static_cast<std::size_t>(index)];
    m_dirSelect->SetPath(box->text());
    m_dirSelect->setWindowTitle(captions[index]);
    const QPointer<frmPreferences> alive(this);
    m_dirSelect->exec();
    if (!alive.isNull() && m_dirSelect->Status == frmDirSelect::StatusOk)
        box->setText(m_dirSelect->path());
}

void frmPreferences::keyPressEvent(QKeyEvent* event)
{
    // The tab widget knows these keys only while the focus is inside it.
    const bool next = event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier;
    const bool previous =
        event->key() == Qt::Key_Backtab && event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
    if (next || previous) {
        const int count = SSTab1->count();
        SSTab1->setCurrentIndex((SSTab1->currentIndex() + (next ? 1 : count - 1)) % count);
        return;
    }
    QDialog::keyPressEvent(event);
}

bool frmPreferences::eventFilter(QObject* watched, QEvent* event)
{
    // The font list is for choosing: what is typed is dropped, the keys that move in it are not.
    if (watched == combFontSelection && event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        const bool types = !key->text().isEmpty() && key->text().front().isPrint() && key->key() != Qt::Key_Space;
        if (types && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmPreferences::place()
{
    const QRect client = m_host.clientArea();
    const QRect over = client.isEmpty() ? screen()->availableGeometry() : client;
    QRect frame = frameGeometry();
    frame.moveCenter(over.center());
    move(frame.topLeft());
}

void frmPreferences::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!m_placed)
        place();
    m_placed = true;
}

void frmPreferences::unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    check(m_preferences.setValue(kPreferencesTab, SSTab1->currentIndex()));
    const QPointer<frmPreferences> alive(this);
    const bool set = DataFolders::boolArePathsSet(m_preferences, [alive](const QString& candidate) {
        if (!alive.isNull())
            alive->folderFailed(candidate);
    });
    if (!alive.isNull() && !set)
        SavePreferences();
}

void frmPreferences::done(int result)
{
    const QPointer<frmPreferences> alive(this);
    unload();
    if (!alive.isNull())
        QDialog::done(result);
}
