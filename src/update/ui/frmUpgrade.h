// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <array>
#include <cstdint>
#include <functional>

class DeviceModule;
class FirmwareUpgrade;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QStackedWidget;

/// The firmware wizard: file, instrument, warning and progress, success. It cannot be closed while the loader is busy;
/// when it is closed, the instrument that it took away is given back.
class frmUpgrade : public QDialog
{
    Q_OBJECT

public:
    static constexpr int kPages = 4;
    /// Shows the file dialog; empty when the user cancelled.
    using OpenFile = std::function<QString(const QString& title, const QString& filter, const QString& folder)>;

    /// Module and upgrade outlive it.
    frmUpgrade(DeviceModule& module, FirmwareUpgrade& upgrade, OpenFile openFile, QWidget* parent = nullptr);
    ~frmUpgrade() override;

    std::int16_t giCurrentPage = 0; ///< 0 to 3

    void ShowPage(int iPage);
    void CheckUpgradeFile();
    /// Runs events.
    void FillDeviceList();
    /// True when the instrument runs the new firmware. Runs events; the window may be gone then.
    bool RunUpgrade(std::int16_t iDeviceIndex);

public Q_SLOTS:
    void cmdBrowse_Click();
    void cmdNext_Click(int Index);
    void cmdBack_Click(int Index);
    void cmdCancel_Click();
    void cmdFinish_Click();
    void done(int result) override;

private:
    QWidget* makePage(int page);
    void fillPage(int page, class QVBoxLayout& column);
    QLabel* label(const char* name, const QString& text = {});
    QLabel* value(const char* name);
    QPushButton* button(const char* name, const QString& text);
    void nextFromFile();
    void nextFromInstrument();
    void nextFromWarning();
    void showVersion();

    DeviceModule& m_module;
    FirmwareUpgrade& m_upgrade;
    OpenFile m_openFile;
    bool m_working = false; ///< a step waits: clicks do nothing

    QStackedWidget* m_pages = nullptr;
    QLineEdit* txtFirmware = nullptr;
    QPushButton* cmdBrowse = nullptr;
    QListWidget* lstDevice = nullptr;
    QProgressBar* ProgressBar = nullptr;
    QLabel* lblSerialNumber = nullptr;
    QPushButton* cmdFinish = nullptr;
    std::array<QLabel*, 3> lblVersion{};
    std::array<QLabel*, 3> lblInformation{};
    QLabel* lblCurrentVersion1 = nullptr;
    QLabel* lblLinkLost = nullptr;
    std::array<QPushButton*, 3> cmdNext{};
    std::array<QPushButton*, 3> cmdBack{}; ///< none on the first page
    std::array<QPushButton*, 3> cmdCancel{};
};
