// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Options.h"
#include "prefs/ui/OptionBinding.h"

#include <QDialog>

#include <array>

class ColourLabel;
class Preferences;
class PreferencesHost;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabWidget;
class UserMessages;
class frmDirSelect;
struct ProgramState;

/// The program-wide preferences. Holds no copy: what it shows is read when it opens and written by "OK"; a pen's colour
/// and "Default" are written at once. Leaving it in any way keeps the tab, and while any folder is unset also all that
/// it shows, so that the first run leaves a full set behind.
class frmPreferences : public QDialog
{
    Q_OBJECT

public:
    /// All that is handed over outlives the window.
    frmPreferences(Preferences& preferences, PreferencesHost& host, ProgramState& state, UserMessages& messages,
                   QWidget* parent = nullptr);

    /// Shows a page, counted from 1 in the order of the tabs.
    void selectPage(int page);

    void LoadPreferences();
    void SavePreferences();
    bool MakeDefaultDirectories();
    void PopulateTheFontSelectWindow();
    void SetCurrentFont(const QString& strFontName);

    void done(int result) override;

private Q_SLOTS:
    void cmdDefault_Click();
    void cmdOK_Click();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct PhaseOptions
    {
        QRadioButton* wholeCycle;
        QRadioButton* halfCycle;
        QRadioButton* off;
    };

    void buildPages();
    void bindOptions();
    void bindPhase(const options::Option<options::Integer>& option, const PhaseOptions& phase);
    QWidget* buildPenPage();
    QWidget* buildAmplitudePage();
    QWidget* buildImpedancePage();
    QWidget* buildReactancePage();
    QWidget* buildGeneralPage();

    void lblColour_DblClick(int index);
    void btnSetPath_Click(int index);
    void sldGraticuleShade_Change();
    void showShade();

    QString documentsFolder();
    void folderFailed(const QString& candidate);
    void unload();
    void place();
    /// Keeps account of a save that failed, so that the user is told once and not per key.
    void check(bool stored);
    void tellUnlessStored();

    Preferences& m_preferences;
    PreferencesHost& m_host;
    ProgramState& m_state;
    UserMessages& m_messages;
    frmDirSelect* m_dirSelect = nullptr;
    bool m_unloaded = false;
    bool m_placed = false;
    bool m_storeFailed = false;
    bool m_storeFailureTold = false;

    OptionBindings m_options; ///< the pens first, by their index
    OptionBindings m_folders; ///< stored only when all of them exist
    OptionBindings m_looks;
    QString m_documentsFolder;

    QTabWidget* SSTab1 = nullptr;
    std::array<ColourLabel*, options::kPenCount> lblColour{};
    std::array<QLabel*, options::kPenCount> lblPen1{};
    QRadioButton *optAmplitudeLinear = nullptr, *optAmplitudeLog = nullptr;
    QRadioButton *optAmpScaleAuto = nullptr, *optAmpScaleManual = nullptr;
    PhaseOptions m_amplitudePhase{};
    QRadioButton *optImpedanceAdmittanceLinear = nullptr, *optImpedanceAdmittanceLog = nullptr;
    QRadioButton *optAutoZScale = nullptr, *optManualZScale = nullptr;
    PhaseOptions m_impedancePhase{};
    QRadioButton *optXFreqLog = nullptr, *optXFreqLinear = nullptr;
    QRadioButton *optImpedance = nullptr, *optAdmittance = nullptr;
    QRadioButton *optReactAuto = nullptr, *optReactManual = nullptr;
    QRadioButton *optResAuto = nullptr, *optResManual = nullptr;
    QCheckBox *chkNotifyDevice = nullptr, *chkPromptDevice = nullptr, *ckhPromptOverwrite = nullptr;
    QCheckBox *chkLockPenAfterPlot = nullptr, *chkDisplaySplash = nullptr, *chkOpenSettings = nullptr;
    QComboBox* combFontSelection = nullptr;
    QSlider* sldGraticuleShade = nullptr;
    ColourLabel* lblShade = nullptr;
    std::array<QLineEdit*, options::kFolders.size()> txtFilePaths{};
    std::array<QPushButton*, options::kFolders.size()> btnSetPath{};
    QPushButton* cmdDefault = nullptr;
    QPushButton* cmdOK = nullptr;
};
