// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/update/UpdatesCommand.h"

#include "controls/tarnload/file/ModelNames.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/Version.h"
#include "update/web/ListingPage.h"
#include "update/web/UpdateOffers.h"
#include "update/web/UpdateVersion.h"
#include "update/web/WebClient.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

const QCommandLineOption& url()
{
    static const QCommandLineOption option(u"url"_s, tr("Address of the folder with the update files."), u"URL"_s);
    return option;
}

/// What the desktop program is set to, by its user or for the whole system.
QString storedAddress()
{
    SettingsStore store;
    return Preferences(store, version::programTitle()).value(options::kWebUrl);
}

QString comparison(double offered)
{
    const double installed = updateversion::programVersion();
    return (offered > installed ? tr("newer than %1") : tr("not newer than %1")).arg(values::decimalText(installed));
}

} // namespace

QString UpdatesCommand::name() const
{
    return u"updates"_s;
}

QString UpdatesCommand::summary() const
{
    return tr("tells which program and firmware can be fetched from the web");
}

QString UpdatesCommand::description() const
{
    return tr("Reads the listing of the web folder of updates and prints the program and the firmware that it offers, "
              "one a line: what it is, its version, its file. Nothing is fetched or installed.");
}

QList<QCommandLineOption> UpdatesCommand::options() const
{
    return {url()};
}

ExitCode UpdatesCommand::run(Arguments& arguments, Console& console)
{
    const bool json = arguments.common().json;
    const QString address = arguments.isSet(url()) ? arguments.text(url()) : storedAddress();
    if (address.trimmed().isEmpty())
        return console.failed(
            ExitCode::Usage,
            tr("No address of updates is set. Give one with --url, or set it in the desktop program."));
    const QByteArray page = WebClient().readPage(address);
    const QString program = listingpage::fileWithTag(page, QLatin1String(updateoffers::kProgramTag));
    if (program.isEmpty())
        return console.failed(ExitCode::FileError,
                              tr("Unable to connect to server, or there is no list of updates: %1").arg(address));

    const double version = updateversion::GetVersionFromFileName(program);
    QJsonArray offers;
    if (!json)
        console.result(
            u"%1\t%2\t%3\t%4"_s.arg(tr("program"), values::decimalText(version), program, comparison(version)));
    for (const firmware::ModelNames& model : firmware::kModels) {
        const QString tag = model.tag;
        const QString file = listingpage::fileWithTag(page, tag);
        if (file.isEmpty())
            continue;
        const double offered = updateversion::GetVersionFromFileName(file);
        offers.append(QJsonObject{{u"model"_s, tag}, {u"version"_s, offered}, {u"file"_s, file}});
        if (!json)
            console.result(u"%1\t%2\t%3"_s.arg(tr("firmware %1").arg(tag), values::decimalText(offered), file));
    }
    if (json)
        console.result(QJsonObject{{u"program"_s, QJsonObject{{u"version"_s, version},
                                                              {u"file"_s, program},
                                                              {u"installed"_s, updateversion::programVersion()},
                                                              {u"newer"_s, version > updateversion::programVersion()}}},
                                   {u"firmware"_s, offers}});
    return ExitCode::Done;
}

} // namespace cli
