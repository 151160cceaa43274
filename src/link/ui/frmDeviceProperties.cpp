// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmDeviceProperties.h"

#include "ui_frmDeviceProperties.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/MainWindowPort.h"
#include "link/SweepRecorder.h"
#include "link/rules/FirmwareVersion.h"
#include "link/ui/LinkImages.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QSvgWidget>

frmDeviceProperties::frmDeviceProperties(DeviceModule& module, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmDeviceProperties>())
    , m_module(module)
    , m_context(module.context())
    , m_programFolder(QCoreApplication::applicationDirPath())
{
    m_ui->setupUi(this);
    linkimages::load(*m_ui->imgT46, QStringLiteral("t46"));
    linkimages::load(*m_ui->imgR52, QStringLiteral("r52"));
    linkimages::load(*m_ui->imgUnknown, QStringLiteral("unknown"));
    connect(m_ui->cmdConsole, &QPushButton::clicked, this, &frmDeviceProperties::cmdConsole_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmDeviceProperties::cmdOK_Click);
    Update();
}

frmDeviceProperties::~frmDeviceProperties() = default;

void frmDeviceProperties::Update()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const bool connected = m_context.device.Connected();
    const QString model = connected ? mirror.strDeviceInfo[0] : QString();
    QSvgWidget* const image = model == QLatin1String("T46")   ? m_ui->imgT46
                              : model == QLatin1String("R52") ? m_ui->imgR52
                                                              : m_ui->imgUnknown;
    // First the old picture goes: with two of them shown, be it for a moment, the window would grow.
    for (QSvgWidget* other : {m_ui->imgT46, m_ui->imgR52, m_ui->imgUnknown})
        other->setVisible(other == image && !other->isHidden());
    image->setVisible(true);

    const auto show = [connected](QLabel* field, const QString& text) {
        field->setTextFormat(Qt::PlainText);
        field->setText(connected && !text.isEmpty() ? text : tr("Unknown"));
    };
    // Before the instrument has told its version and serial number the mirror holds the values of a program without
    // one.
    const bool versionKnown =
        mirror.dblFirmwareMajor != 0 || mirror.dblFirmwareMinor != 0 || mirror.dblFirmwareBuild != 0;
    const bool serialKnown = mirror.strDeviceSerial != InstrumentMirror().strDeviceSerial;
    show(m_ui->lblFirmwareField, versionKnown ? firmwareVersionText(mirror) : QString());
    show(m_ui->lblHardwareField, mirror.strDeviceInfo[0]);
    show(m_ui->lblIOCapablilityFleld, mirror.strDeviceInfo[1]);
    show(m_ui->lblImpedanceRangeField, mirror.strDeviceInfo[2]);
    show(m_ui->lblPhaseRangeField, mirror.strDeviceInfo[3]);
    show(m_ui->lblAmplitudeRangeField, mirror.strDeviceInfo[4]);
    show(m_ui->lblFrequencyRangeField, mirror.strDeviceInfo[5]);
    show(m_ui->lblSerialNumberField, serialKnown ? mirror.strDeviceSerial : QString());
    show(m_ui->lblModelNumberField, mirror.strDeviceModel);
}

QString frmDeviceProperties::consoleProgram() const
{
    for (const char* name : {"MarrowickTerm", "MarrowickTerm.exe"}) {
        const QFileInfo program(QDir(m_programFolder).filePath(QLatin1String(name)));
        if (program.isFile() && program.isExecutable())
            return program.absoluteFilePath();
    }
    return {};
}

void frmDeviceProperties::releaseLink()
{
    m_context.device.Close();
    m_context.state.gbfDeviceReady = false;
    m_context.state.gbfScriptRunning = false;
    // Close() raises nothing, so the main window learns of it here.
    m_module.recorder().GUISetViewing();
    m_module.recorder().endRun();
}

void frmDeviceProperties::cmdConsole_Click()
{
    const QPointer<frmDeviceProperties> self(this);
    const QString program = consoleProgram();
    if (program.isEmpty()) {
        m_context.messages.message(tr("The terminal program MarrowickTerm is not installed."),
                                   UserMessages::OkOnly | UserMessages::Information, tr("Console"));
        return;
    }
    const int n = m_context.device.Connected() ? m_context.device.DeviceType() : 0;
    releaseLink();
    m_context.device.Wait(2);
    m_context.port.processEvents();
    if (!self)
        return;
    const QStringList arguments = {QStringLiteral("-d=%1").arg(n), QStringLiteral("-i=3"), QStringLiteral("-o=2")};
    const bool started = QProcess::startDetached(program, arguments, m_programFolder);
    m_ui->cmdConsole->setEnabled(false);
    Update();
    if (!started)
        m_context.messages.message(tr("The terminal program %1 cannot be started.").arg(program),
                                   UserMessages::OkOnly | UserMessages::Exclamation, tr("Console"));
}

void frmDeviceProperties::cmdOK_Click()
{
    accept();
}

void frmDeviceProperties::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Update();
}
