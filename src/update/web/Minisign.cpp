// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/Minisign.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>

#include <algorithm>
#include <optional>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype kAlgorithmSize = 2;
constexpr qsizetype kIdSize = 8;
constexpr qsizetype kHashSize = 64;
constexpr qint64 kLargestUnhashed = qint64(1) << 30; ///< which has to be in memory as a whole
constexpr qint64 kLargestKeyFile = 4096;

QString tr(const char* text)
{
    return QCoreApplication::translate("Minisign", text);
}

/// The letters behind the heading; nothing when the line has another one.
std::optional<QByteArray> behind(const QByteArray& line, const char* heading)
{
    return line.startsWith(heading) ? std::optional(line.sliced(qstrlen(heading))) : std::nullopt;
}

/// The bytes of a line in base 64, of which each text has but one; empty when they are not that many.
QByteArray decoded(const QByteArray& line, qsizetype size)
{
    const auto result = QByteArray::fromBase64Encoding(line, QByteArray::AbortOnBase64DecodingErrors);
    return result && result.decoded.size() == size && result.decoded.toBase64() == line ? result.decoded : QByteArray();
}

QList<QByteArray> linesOf(const QByteArray& text)
{
    QList<QByteArray> lines = text.split('\n');
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    // What follows the last line end is no line.
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

const unsigned char* bytes(const QByteArray& data)
{
    return reinterpret_cast<const unsigned char*>(data.constData());
}

/// Or who can tell: an open file whose owner is neither this user nor the administrator, or that more may write.
bool writtenByOthers(const QFile& file)
{
    struct stat state = {};
    return ::fstat(file.handle(), &state) != 0 || (state.st_uid != 0 && state.st_uid != ::geteuid()) ||
           (state.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

bool fits(const QByteArray& signature, const QByteArray& message, const minisign::PublicKey& key)
{
    return crypto_sign_verify_detached(bytes(signature), bytes(message),
                                       static_cast<unsigned long long>(message.size()), bytes(key.key)) == 0;
}

/// Nothing when the device cannot be read.
std::optional<QByteArray> hashOf(QIODevice& device)
{
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, kHashSize);
    QByteArray block(64 * 1024, Qt::Uninitialized);
    qint64 read = 0;
    while ((read = device.read(block.data(), block.size())) > 0)
        crypto_generichash_update(&state, bytes(block), static_cast<unsigned long long>(read));
    if (read < 0 && !device.atEnd())
        return std::nullopt;
    QByteArray hash(kHashSize, '\0');
    crypto_generichash_final(&state, reinterpret_cast<unsigned char*>(hash.data()), kHashSize);
    return hash;
}

/// What the signature was made over.
std::optional<QByteArray> signedBytes(QIODevice& device, bool prehashed)
{
    if (!device.seek(0))
        return std::nullopt;
    if (prehashed)
        return hashOf(device);
    if (device.size() > kLargestUnhashed)
        return std::nullopt;
    const qint64 size = device.size();
    const QByteArray all = device.readAll();
    return all.size() == size ? std::optional(all) : std::nullopt;
}

} // namespace

ValueOr<minisign::PublicKey> minisign::readPublicKey(const QByteArray& text)
{
    const QList<QByteArray> lines = linesOf(text);
    if (lines.size() == 2 && behind(lines[0], "untrusted comment: ")) {
        const QByteArray key = decoded(lines[1], kAlgorithmSize + kIdSize + crypto_sign_PUBLICKEYBYTES);
        if (key.startsWith("Ed"))
            return PublicKey{key.sliced(kAlgorithmSize, kIdSize), key.sliced(kAlgorithmSize + kIdSize)};
    }
    return Outcome::failure(tr("This is no public key of the minisign program."));
}

ValueOr<minisign::Signature> minisign::readSignature(const QByteArray& text)
{
    const QList<QByteArray> lines = linesOf(text);
    if (text.size() <= kLongestSignatureFile && lines.size() == 4 && behind(lines[0], "untrusted comment: ")) {
        const QByteArray made = decoded(lines[1], kAlgorithmSize + kIdSize + crypto_sign_BYTES);
        const auto comment = behind(lines[2], "trusted comment: ");
        const QByteArray ofComment = decoded(lines[3], crypto_sign_BYTES);
        if (comment && !ofComment.isEmpty() && (made.startsWith("ED") || made.startsWith("Ed")))
            return Signature{made.startsWith("ED"), made.sliced(kAlgorithmSize, kIdSize),
                             made.sliced(kAlgorithmSize + kIdSize), *comment, ofComment};
    }
    return Outcome::failure(tr("This is no signature of the minisign program."));
}

std::vector<minisign::PublicKey> minisign::keysOfFolder(const QString& folder)
{
    std::vector<PublicKey> keys;
    const QDir dir(folder);
    if (folder.isEmpty())
        return keys;
    for (const QString& name : dir.entryList({QStringLiteral("*.pub")}, QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (!file.open(QFile::ReadOnly) || writtenByOthers(file))
            continue;
        if (const auto key = readPublicKey(file.read(kLargestKeyFile)))
            keys.push_back(key.value());
    }
    return keys;
}

QString minisign::idText(const QByteArray& id)
{
    QByteArray turned = id;
    std::reverse(turned.begin(), turned.end());
    return QString::fromLatin1(turned.toHex().toUpper());
}

Outcome minisign::verify(QIODevice& device, const Signature& signature, const std::vector<PublicKey>& keys)
{
    if (sodium_init() < 0)
        return Outcome::failure(tr("Signatures cannot be checked on this machine."));
    const auto key = std::find_if(keys.begin(), keys.end(),
                                  [&signature](const PublicKey& candidate) { return candidate.id == signature.id; });
    if (key == keys.end())
        return Outcome::failure(
            tr("It was signed with the key %1, which is not trusted here.").arg(idText(signature.id)));
    const auto message = signedBytes(device, signature.prehashed);
    if (!message)
        return Outcome::failure(tr("It cannot be read as a whole."));
    if (!fits(signature.signature, *message, *key) ||
        !fits(signature.commentSignature, signature.signature + signature.trustedComment, *key))
        return Outcome::failure(tr("It does not fit its signature: one of the two was changed or damaged. Fetch both "
                                   "again."));
    return Outcome::success();
}
