// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/ui/frmPreferences.h"

#include "prefs/DataFolders.h"
#include "prefs/GraticuleShade.h"
#include "prefs/Preferences.h"
#include "prefs/PreferencesHost.h"
#include "prefs/SettingsStore.h"
#include "prefs/ui/frmDirSelect.h"
#include "program/MainModule.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "values/Conversions.h"
#include "widgets/ui/ColourLabel.h"

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

namespace {

void selectIf(bool first, QRadioButton* one, QRadioButton* other)
{
    (first ? one : other)->setChecked(true);
}

/// The first option for exactly the text of true, the other for anything else.
void selectByText(const QString& text, QRadioButton* one, QRadioButton* other)
{
    selectIf(text == values::booleanText(true), one, other);
}

} // namespace

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

void frmPreferences::selectPhase(const PhaseOptions& phase, const QString& text)
{
    if (text == QString::number(PhaseWholeCycle))
        phase.wholeCycle->setChecked(true);
    else if (text == QString::number(PhaseHalfCycle))
        phase.halfCycle->setChecked(true);
    else if (text == QString::number(PhaseOff))
        phase.off->setChecked(true);
}

void frmPreferences::LoadPreferences()
{
    for (std::size_t pen = 0; pen < kPens.size(); ++pen)
        lblColour[pen]->setColour(m_preferences.value(kPens[pen]));

    selectByText(m_preferences.text(kAmplitudeAxisScaleLin), optAmplitudeLinear, optAmplitudeLog);
    const QString amplitudeAuto = m_preferences.text(kAmplitudeAxisScaleAuto);
    if (amplitudeAuto == values::booleanText(false))
        optAmpScaleManual->setChecked(true);
    else if (amplitudeAuto == values::booleanText(true))
        optAmpScaleAuto->setChecked(true);
    selectPhase(m_amplitudePhase, m_preferences.text(kAmplitudePhaseGraph));

    selectByText(m_preferences.text(kImpedanceAxisScaleLin), optImpedanceAdmittanceLinear, optImpedanceAdmittanceLog);
    const QString limits = m_preferences.text(kImpedanceDisplayLimits);
    if (limits == kAutoLimits)
        optAutoZScale->setChecked(true);
    else if (limits == kManualLimits)
        optManualZScale->setChecked(true);
    selectPhase(m_impedancePhase, m_preferences.text(kImpedancePhaseGraph));

    selectIf(m_preferences.value(kReactanceFreqLog), optXFreqLog, optXFreqLinear);
    selectIf(m_preferences.value(kReactanceImpedance), optImpedance, optAdmittance);
    selectIf(m_preferences.value(kReactanceReactAuto), optReactAuto, optReactManual);
    selectIf(m_preferences.value(kReactanceResAuto), optResAuto, optResManual);

    chkNotifyDevice->setChecked(m_preferences.value(kNotifyDevice));
    chkPromptDevice->setChecked(m_preferences.value(kPromptDevice));
    ckhPromptOverwrite->setChecked(m_preferences.value(kPromptOverwrite));
    chkLockPenAfterPlot->setChecked(m_preferences.value(kLockPenAfterPlot));
    chkDisplaySplash->setChecked(m_preferences.value(kSplashScreen));
    chkOpenSettings->setChecked(m_preferences.value(kOpenSettings));

    const QPointer<frmPreferences> alive(this);
    const QString documents = documentsFolder();
    if (alive.isNull())
        return;
    for (std::size_t i = 0; i < kFolders.size(); ++i) {
        const QString fallback = Preferences::defaultFolder(kFolders[i], documents);
        txtFilePaths[i]->setText(m_preferences.valueOr(kFolders[i].option, fallback));
    }

    PopulateTheFontSelectWindow();
    SetCurrentFont(m_preferences.value(kDefaultFont));
    sldGraticuleShade->setValue(GraticuleShade::stopOf(m_preferences.text(kGraticuleShade)));
    SSTab1->setCurrentIndex(m_preferences.value(kPreferencesTab));
}

void frmPreferences::savePhase(const Option<Integer>& option, const PhaseOptions& phase)
{
    if (phase.wholeCycle->isChecked())
        check(m_preferences.setValue(option, PhaseWholeCycle));
    else if (phase.halfCycle->isChecked())
        check(m_preferences.setValue(option, PhaseHalfCycle));
    else if (phase.off->isChecked())
        check(m_preferences.setValue(option, PhaseOff));
}

void frmPreferences::SavePreferences()
{
    std::optional<SettingsStore::Batch> batch(std::in_place, m_preferences.store());
    for (std::size_t pen = 0; pen < kPens.size(); ++pen)
        check(m_preferences.setValue(kPens[pen], lblColour[pen]->colour()));

    check(m_preferences.setValue(kAmplitudeAxisScaleLin, optAmplitudeLinear->isChecked()));
    check(m_preferences.setValue(kAmplitudeAxisScaleAuto, optAmpScaleAuto->isChecked()));
    savePhase(kAmplitudePhaseGraph, m_amplitudePhase);
    check(m_preferences.setValue(kImpedanceAxisScaleLin, optImpedanceAdmittanceLinear->isChecked()));
    check(m_preferences.setValue(kImpedanceDisplayLimits,
                                 QString(optAutoZScale->isChecked() ? kAutoLimits : kManualLimits)));
    savePhase(kImpedancePhaseGraph, m_impedancePhase);

    check(m_preferences.setValue(kReactanceFreqLog, optXFreqLog->isChecked()));
    check(m_preferences.setValue(kReactanceImpedance, optImpedance->isChecked()));
    check(m_preferences.setValue(kReactanceReactAuto, optReactAuto->isChecked()));
    check(m_preferences.setValue(kReactanceResAuto, optResAuto->isChecked()));

    check(m_preferences.setValue(kNotifyDevice, chkNotifyDevice->isChecked()));
    check(m_preferences.setValue(kPromptDevice, chkPromptDevice->isChecked()));
    check(m_preferences.setValue(kPromptOverwrite, ckhPromptOverwrite->isChecked()));
    check(m_preferences.setValue(kLockPenAfterPlot, chkLockPenAfterPlot->isChecked()));
    check(m_preferences.setValue(kSplashScreen, chkDisplaySplash->isChecked()));
    check(m_preferences.setValue(kOpenSettings, chkOpenSettings->isChecked()));

    // Messages may follow, and with them whatever else stores settings.
    check(batch->commit());
    const QPointer<frmPreferences> alive(this);
    const bool made = MakeDefaultDirectories();
    if (alive.isNull())
        return;
    batch.emplace(m_preferences.store());
    if (made) {
        for (std::size_t i = 0; i < kFolders.size(); ++i)
            check(m_preferences.setValue(kFolders[i].option, txtFilePaths[i]->text()));
    }
    if (const auto shade = GraticuleShade::colourOf(sldGraticuleShade->value()))
        check(m_preferences.setValue(kGraticuleShade, *shade));
    // Without a selection the stored font is one that this machine lacks: it stays for the day it is installed.
    if (combFontSelection->currentIndex() >= 0)
        check(m_preferences.setValue(kDefaultFont, combFontSelection->currentText()));
    check(batch->commit());
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
    std::optional<SettingsStore::Batch> batch(std::in_place, m_preferences.store());
    for (const auto& pen : kPens)
        check(m_preferences.setDefault(pen));
    check(m_preferences.setDefault(kAmplitudeAxisScaleLin));
    check(m_preferences.setDefault(kAmplitudeAxisScaleAuto));
    check(m_preferences.setDefault(kAmplitudePhaseGraph));
    check(m_preferences.setDefault(kImpedanceAxisScaleLin));
    check(m_preferences.setDefault(kImpedanceDisplayLimits));
    check(m_preferences.setDefault(kImpedancePhaseGraph));
    check(m_preferences.setDefault(kNotifyDevice));
    check(m_preferences.setDefault(kPromptDevice));
    check(m_preferences.setDefault(kPromptOverwrite));
    check(m_preferences.setDefault(kLockPenAfterPlot));
    check(m_preferences.setDefault(kSplashScreen));
    check(m_preferences.setDefault(kOpenSettings));
    check(batch->commit());
    m_host.penInitialise();

    const QPointer<frmPreferences> alive(this);
    const QString documents = documentsFolder();
    if (alive.isNull())
        return;
    batch.emplace(m_preferences.store());
    for (const FolderOption& folder : {kPlotFiles, kExportFiles, kUpdateFiles, kScriptFiles})
        check(m_preferences.setValue(folder.option, Preferences::defaultFolder(folder, documents)));
    check(batch->commit());
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
        QColorDialog::getColor(ColourLabel::toQColor(label->colour()), this, tr("Colour of pen %1").arg(index + 1));
    if (alive.isNull() || !chosen.isValid())
        return;
    const std::uint32_t lColour = ColourLabel::fromQColor(chosen);
    label->setColour(lColour);
    m_host.setPenLabelColour(index, lColour, MainModule::penLabelTextColour(lColour));
    m_state.glPenColour[static_cast<std::size_t>(index)] = lColour;
    check(m_preferences.setValue(kPens[static_cast<std::size_t>(index)], lColour));
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
