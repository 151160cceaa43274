// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "support/FindControl.h"
#include "support/RecordingMessages.h"
#include "update/web/HostileServer.h"
#include "update/web/WebClient.h"
#include "update/web/ui/UpdateHost.h"

#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>

#include <gmock/gmock.h>

/// An instrument whose firmware is known.
struct FirmwareDouble : FirmwareSide
{
    QString listingTag() const override { return tag; }
    double firmwareMajor() const override { return major; }
    double firmwareMinor() const override { return minor; }
    bool deviceConnected() const override { return connected; }

    QString tag = "T46";
    double major = 1, minor = 20;
    bool connected = true;
};

/// Notes what was asked of the program, in order.
struct HostDouble : UpdateHost
{
    const FirmwareSide& firmware() const override { return firmwareSide; }
    bool hasFirmwareWizard() const override { return wizard; }
    void showFirmwareWizard(QWidget&) override { calls += "wizard"; }
    bool closeAllDocuments() override
    {
        calls += "close all";
        return closes;
    }
    QString openFileName(const QString& title, const QString& filters, const QString& folder,
                         const QString& name) override
    {
        calls += "pick";
        asked = {title, filters, folder, name};
        return picked;
    }
    Outcome mayStart(const QString& file) override
    {
        calls += "check " + file;
        return refusal.isEmpty() ? Outcome::success() : Outcome::failure(refusal);
    }
    Outcome start(const QString& file) override
    {
        calls += "start " + file;
        return Outcome::success();
    }
    void endProgram() override { calls += "end"; }

    FirmwareDouble firmwareSide;
    bool wizard = true;
    bool closes = true;
    QString picked;
    QString refusal;
    QStringList calls;
    QStringList asked;
};

/// Settings in a folder of their own, a server that answers as told, and messages that are recorded.
using namespace std::chrono_literals;

class UpdateFixture : public ::testing::Test
{
protected:
    UpdateFixture()
    {
        preferences.setValue(options::kWebUrl, server.url());
        preferences.setValue(options::kUpdateFiles.option, updates());
    }

    QString updates() const { return folder.filePath("updates"); }
    QStringList files() const
    {
        return QDir(updates()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    std::string content(const char* name) const
    {
        QFile file(updates() + '/' + name);
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "(none)";
    }
    /// The listing names these files.
    void list(const QList<QByteArray>& names)
    {
        QByteArray page;
        for (const QByteArray& name : names)
            page += HostileServer::listing(name);
        server.serve("/updates", page);
    }
    QString stored(const char* section, const char* key)
    {
        return store.find("MarrowickGraph", section, key).value_or("(none)");
    }

    const QTemporaryDir folder;
    SettingsStore store{folder.filePath("settings")};
    Preferences preferences{store, "MarrowickGraph"};
    RecordingMessages messages;
    HostileServer server;
    const WebLimits limits{500ms, 2000ms, 5000ms, 64 * 1024, 1024 * 1024};
};
