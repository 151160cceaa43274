// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/update/FirmwareCommand.h"

#include "cli/update/FirmwareInstall.h"
#include "controls/korvalink/DeviceList.h"
#include "controls/tarnload/UpGrade.h"
#include "controls/tarnload/file/ModelNames.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <memory>
#include <sys/stat.h>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 kLongestKeyFile = 4096;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

ValueOr<QByteArray> readWhole(const QString& name, qint64 most)
{
    QFile file(name);
    if (!QFileInfo(name).isFile())
        return Outcome::failure(tr("%1 is no file.").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("Cannot read %1: %2.").arg(name, file.errorString()));
    const QByteArray bytes = file.read(most + 1);
    if (bytes.size() > most)
        return Outcome::failure(tr("%1 is too large.").arg(name));
    return bytes;
}

ValueOr<firmware::FirmwareFile> readFirmware(const QString& name)
{
    QFile file(name);
    if (!QFileInfo(name).isFile())
        return Outcome::failure(tr("%1 is no file.").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("Cannot read %1: %2.").arg(name, file.errorString()));
    const firmware::ReadResult result = firmware::readUnjudged(file);
    if (result.problem != firmware::Problem::None)
        return Outcome::failure(name + u": "_s + tarnload::errorText(tarnload::errorOf(result.problem)));
    return result.file;
}

ValueOr<firmware::SigningKey> readKey(const QString& name)
{
    const ValueOr<QByteArray> text = readWhole(name, kLongestKeyFile);
    if (!text)
        return Outcome::failure(text.sentence());
    ValueOr<firmware::SigningKey> key = firmware::SigningKey::fromText(text.value());
    return key ? key : Outcome::failure(name + u": "_s + key.sentence());
}

QString revisions(const firmware::Header& header)
{
    QStringList list;
    for (const int revision : header.hardware)
        list.append(QString::number(revision));
    return list.join(u", "_s);
}

QString judgement(const firmware::FirmwareFile& file, const QString& keyFolder)
{
    if (file.seal.isEmpty())
        return tr("none");
    switch (firmware::judgeSeal(file.headerBytes, file.seal, firmware::TrustedKeys::ofFolder(keyFolder))) {
    case firmware::Problem::None:
        return tr("of a trusted key");
    case firmware::Problem::BadSignature:
        return tr("wrong");
    default:
        return tr("of a key that is not trusted here");
    }
}

QJsonObject asJson(const firmware::Header& header)
{
    QJsonArray hardware;
    for (const int revision : header.hardware)
        hardware.append(revision);
    return {{u"model"_s, header.model},
            {u"hardware"_s, hardware},
            {u"major"_s, header.major},
            {u"minor"_s, header.minor},
            {u"build"_s, header.build},
            {u"notes"_s, header.notes},
            {u"size"_s, qint64(header.imageSize)},
            {u"sha256"_s, QString::fromLatin1(header.imageHash.toHex())}};
}

} // namespace

FirmwareCommand::FirmwareCommand()
    : m_device(u"device"_s, tr("install: serial number, or path of a terminal device (the only instrument found)."),
               u"serial|path"_s)
    , m_dryRun(u"dry-run"_s, tr("install: checks everything and changes nothing."))
    , m_allowOlder(u"allow-older"_s, tr("install: writes an older version than the instrument's own, too."))
    , m_trustedKeys(u"trusted-keys"_s,
                    tr("Folder of the public keys that are trusted ($MARROWICK_TRUSTED_KEYS, or "
                       "/etc/marrowick/trusted-keys)."),
                    u"folder"_s)
    , m_model(u"model"_s, tr("pack: T46 or DT46 (T46)."), u"model"_s, u"T46"_s)
    , m_hardware(u"hardware"_s, tr("pack: board revisions that it fits, as 2,3."), u"revisions"_s)
    , m_version(u"firmware-version"_s, tr("pack: version, as 1.29."), u"M.m"_s)
    , m_build(u"build"_s, tr("pack: number of the build, from 0."), u"number"_s, u"0"_s)
    , m_notes(u"notes"_s, tr("pack: up to 128 characters that users are shown."), u"text"_s)
    , m_key(u"key"_s, tr("pack, sign: secret key to sign with."), u"file"_s)
    , m_output(u"output"_s, tr("pack, sign: file to write."), u"file"_s)
{}

QString FirmwareCommand::name() const
{
    return u"firmware"_s;
}

QString FirmwareCommand::summary() const
{
    return tr("shows, checks, installs and makes firmware files");
}

QString FirmwareCommand::description() const
{
    return tr("show and check tell what a firmware file holds and whether it is trusted; install writes it into an\n"
              "instrument. pack makes a firmware file of an image, sign signs it, key makes a pair of keys.");
}

QList<QCommandLineOption> FirmwareCommand::options() const
{
    return {m_device,  m_dryRun, m_allowOlder, m_trustedKeys, m_model, m_hardware,
            m_version, m_build,  m_notes,      m_key,         m_output};
}

QString FirmwareCommand::words() const
{
    return u"show|check|install|pack|sign|key FILE"_s;
}

QString FirmwareCommand::keyFolder(const Arguments& arguments) const
{
    return arguments.isSet(m_trustedKeys) ? arguments.text(m_trustedKeys) : firmware::TrustedKeys::installedFolder();
}

ExitCode FirmwareCommand::run(Arguments& arguments, Console& console)
{
    using Work = ExitCode (FirmwareCommand::*)(const QString&, Arguments&, Console&) const;
    static const QList<std::pair<QString, Work>> works{
        {u"show"_s, &FirmwareCommand::show},       {u"check"_s, &FirmwareCommand::check},
        {u"install"_s, &FirmwareCommand::install}, {u"pack"_s, &FirmwareCommand::pack},
        {u"sign"_s, &FirmwareCommand::sign},       {u"key"_s, &FirmwareCommand::key},
    };
    const QStringList given = arguments.files();
    const QString word = given.value(0);
    const auto found =
        std::find_if(works.begin(), works.end(), [&word](const auto& work) { return work.first == word; });
    if (found == works.end()) {
        QStringList names;
        for (const auto& work : works)
            names.append(work.first);
        return console.failed(ExitCode::Usage, word.isEmpty()
                                                   ? tr("What to do is missing: %1.").arg(names.join(u", "_s))
                                                   : tr("\"%1\" is none of %2.").arg(word, names.join(u", "_s)));
    }
    if (given.size() != 2)
        return console.failed(ExitCode::Usage, given.size() < 2 ? tr("A file is missing.")
                                                                : tr("\"%1\" has no place here.").arg(given[2]));
    return (this->*found->second)(given[1], arguments, console);
}

ExitCode FirmwareCommand::show(const QString& name, Arguments& arguments, Console& console) const
{
    const ValueOr<firmware::FirmwareFile> file = readFirmware(name);
    if (!file)
        return console.failed(ExitCode::FileError, file.sentence());
    const firmware::Header& header = file.value().header;
    const QString signature = judgement(file.value(), keyFolder(arguments));
    if (arguments.common().json) {
        QJsonObject object = asJson(header);
        object.insert(u"file"_s, name);
        object.insert(u"signature"_s, signature);
        console.result(object);
        return ExitCode::Done;
    }
    console.result(name);
    console.result(tr("  version    %1").arg(header.versionText()));
    console.result(tr("  model      %1, board revision %2").arg(header.model, revisions(header)));
    console.result(tr("  notes      %1").arg(header.notes));
    console.result(tr("  image      %1 bytes, SHA-256 %2")
                       .arg(header.imageSize)
                       .arg(QString::fromLatin1(header.imageHash.toHex())));
    console.result(tr("  signature  %1").arg(signature));
    return ExitCode::Done;
}

ExitCode FirmwareCommand::check(const QString& name, Arguments& arguments, Console& console) const
{
    DeviceList devices;
    UpGrade loader(devices, keyFolder(arguments));
    if (!loader.OpenUpgradeFile(name))
        return console.failed(ExitCode::FileError, tr("%1 cannot be opened.").arg(name));
    std::int32_t major = 0, minor = 0, build = 0;
    QString notes;
    if (!loader.GetUpgradeFileInfo(major, minor, build, notes))
        return console.failed(exitCodeOf(loader.fileError()), name + u": "_s + tarnload::errorText(loader.fileError()));
    if (arguments.common().json)
        console.result(asJson(loader.header()));
    else
        console.result(tr("%1: %2 for %3, whole and signed by a trusted key.")
                           .arg(name, loader.header().versionText(), loader.header().model));
    return ExitCode::Done;
}

ExitCode FirmwareCommand::install(const QString& name, Arguments& arguments, Console& console) const
{
    const QString device = arguments.text(m_device);
    const std::unique_ptr<DeviceList> devices = devicesFor(device);
    return installFirmware(*devices,
                           {name, device, keyFolder(arguments), arguments.isSet(m_dryRun),
                            arguments.isSet(m_allowOlder), arguments.common().json, arguments.common().quiet},
                           console);
}

ExitCode FirmwareCommand::pack(const QString& name, Arguments& arguments, Console& console) const
{
    firmware::Header header;
    header.model = arguments.text(m_model);
    const auto known = [&header](const firmware::ModelNames& model) { return header.model == model.file; };
    if (std::none_of(firmware::kModels.begin(), firmware::kModels.end(), known))
        arguments.refuse(m_model, tr("T46 or DT46"));
    for (const QString& revision : arguments.text(m_hardware).split(u',', Qt::SkipEmptyParts)) {
        bool ok = false;
        header.hardware.push_back(revision.toInt(&ok));
        if (!ok || header.hardware.back() < 0)
            arguments.refuse(m_hardware, tr("numbers from 0, divided by commas"));
    }
    std::sort(header.hardware.begin(), header.hardware.end());
    if (header.hardware.empty())
        arguments.refuse(tr("--hardware is missing: the board revisions that the image fits."));
    const QStringList version = arguments.text(m_version).split(u'.');
    bool majorOk = false, minorOk = false;
    header.major = version.value(0).toInt(&majorOk);
    header.minor = version.value(1).toInt(&minorOk);
    if (version.size() != 2 || !majorOk || !minorOk || header.major < 0 || header.minor < 0)
        arguments.refuse(m_version, tr("a version such as 1.29"));
    header.build = arguments.whole(m_build, 0, 999999);
    header.notes = arguments.text(m_notes);
    if (header.notes.size() > firmware::kLongestNotes)
        arguments.refuse(m_notes, tr("at most %1 characters").arg(firmware::kLongestNotes));
    const OutputFile output = arguments.output(m_output);
    if (!output.isNamed())
        arguments.refuse(tr("--output is missing."));
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    const ValueOr<QByteArray> image = readWhole(name, firmware::kLargestImage);
    if (!image)
        return console.failed(ExitCode::FileError, image.sentence());
    firmware::FirmwareFile file = firmware::pack(header, image.value());
    if (!firmware::Header::fromBytes(file.headerBytes))
        return console.failed(ExitCode::Usage, tr("The image is empty, or a board revision stands there twice."));
    if (arguments.isSet(m_key)) {
        const ValueOr<firmware::SigningKey> signingKey = readKey(arguments.text(m_key));
        if (!signingKey)
            return console.failed(ExitCode::FileError, signingKey.sentence());
        firmware::sign(file, signingKey.value());
    }
    const Outcome written = output.write(file.toBytes());
    return written ? ExitCode::Done : console.failed(ExitCode::FileError, written.sentence());
}

ExitCode FirmwareCommand::sign(const QString& name, Arguments& arguments, Console& console) const
{
    if (!arguments.isSet(m_key))
        return console.failed(ExitCode::Usage, tr("--key is missing."));
    const OutputFile output = arguments.isSet(m_output) ? arguments.output(m_output) : OutputFile(name);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    ValueOr<firmware::FirmwareFile> file = readFirmware(name);
    if (!file)
        return console.failed(ExitCode::FileError, file.sentence());
    const ValueOr<firmware::SigningKey> signingKey = readKey(arguments.text(m_key));
    if (!signingKey)
        return console.failed(ExitCode::FileError, signingKey.sentence());
    firmware::sign(file.value(), signingKey.value());
    const Outcome written = output.write(file.value().toBytes());
    return written ? ExitCode::Done : console.failed(ExitCode::FileError, written.sentence());
}

ExitCode FirmwareCommand::key(const QString& name, Arguments&, Console& console) const
{
    const QString secretName = name + u".key"_s, publicName = name + u".pub"_s;
    for (const QString& file : {secretName, publicName}) {
        if (QFileInfo::exists(file))
            return console.failed(ExitCode::FileError, tr("%1 is there already.").arg(file));
    }
    const firmware::SigningKey made = firmware::SigningKey::generate();
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
    Outcome written = OutputFile(secretName).write(made.toText());
    ::umask(mask);
    if (written)
        written = OutputFile(publicName).write(made.publicKey().toText());
    if (!written)
        return console.failed(ExitCode::FileError, written.sentence());
    console.result(
        tr("%1 signs, and is to be kept secret; %2 goes into the folder of trusted keys.").arg(secretName, publicName));
    return ExitCode::Done;
}

} // namespace cli
