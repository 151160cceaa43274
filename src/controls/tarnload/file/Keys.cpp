// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/file/Keys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <sodium.h>

namespace firmware {

namespace {

const QByteArray kAlgorithm("Ed");
const QByteArray kCheckAlgorithm("B2");
constexpr qint64 kLongestKeyFile = 4096;

QString tr(const char* text)
{
    return QCoreApplication::translate("firmware::Keys", text);
}

/// The library picks its fastest code once; what it does is the same before.
void prepare()
{
    static const int prepared = sodium_init();
    Q_ASSERT(prepared >= 0);
    static_cast<void>(prepared);
}

unsigned char* raw(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}

const unsigned char* raw(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

/// The base64 of the line behind the comment; empty when there is none.
QByteArray payload(const QByteArray& text)
{
    if (!text.startsWith("untrusted comment:"))
        return {};
    const qsizetype end = text.indexOf('\n');
    if (end < 0)
        return {};
    const QByteArray line = text.mid(end + 1).split('\n').constFirst().trimmed();
    const auto decoded = QByteArray::fromBase64Encoding(line, QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? *decoded : QByteArray();
}

/// As people read it: the highest byte first.
QByteArray readable(const QByteArray& id)
{
    QByteArray turned = id;
    std::reverse(turned.begin(), turned.end());
    return turned.toHex().toUpper();
}

} // namespace

bool PublicKey::verifies(const QByteArray& message, const QByteArray& signature) const
{
    prepare();
    return bytes.size() == crypto_sign_PUBLICKEYBYTES && signature.size() == kSignatureSize &&
           crypto_sign_verify_detached(raw(signature), raw(message), static_cast<unsigned long long>(message.size()),
                                       raw(bytes)) == 0;
}

QByteArray PublicKey::toText() const
{
    return "untrusted comment: minisign public key " + readable(id) + '\n' + (kAlgorithm + id + bytes).toBase64() +
           '\n';
}

std::optional<PublicKey> PublicKey::fromText(const QByteArray& text)
{
    const QByteArray bytes = payload(text);
    if (bytes.size() != kAlgorithm.size() + kKeyIdSize + crypto_sign_PUBLICKEYBYTES || !bytes.startsWith(kAlgorithm))
        return {};
    return PublicKey{bytes.mid(kAlgorithm.size(), kKeyIdSize), bytes.mid(kAlgorithm.size() + kKeyIdSize)};
}

TrustedKeys TrustedKeys::ofFolder(const QString& folder)
{
    TrustedKeys keys;
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.exists())
        return keys;
    for (const QFileInfo& entry : dir.entryInfoList({QStringLiteral("*.pub")}, QDir::Files, QDir::Name)) {
        if (entry.permission(QFileDevice::WriteOther))
            continue;
        QFile file(entry.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        if (const std::optional<PublicKey> key = PublicKey::fromText(file.read(kLongestKeyFile)))
            keys.add(*key);
    }
    return keys;
}

QString TrustedKeys::installedFolder()
{
    const QByteArray chosen = qgetenv("MARROWICK_TRUSTED_KEYS");
    return chosen.isEmpty() ? QStringLiteral("/etc/marrowick/trusted-keys") : QFile::decodeName(chosen);
}

std::optional<PublicKey> TrustedKeys::find(const QByteArray& id) const
{
    const auto found = m_keys.constFind(id);
    return found == m_keys.constEnd() ? std::nullopt : std::optional<PublicKey>(*found);
}

// The secret key of minisign without a password: algorithm, no key derivation, algorithm of the check value, what the
// derivation would need, number, key, check value.
namespace {
constexpr qsizetype kDerivation = 2 + 2 + 2 + 32 + 8 + 8;
constexpr qsizetype kCheckSize = 32;

QByteArray checkValue(const QByteArray& id, const QByteArray& secret)
{
    const QByteArray all = kAlgorithm + id + secret;
    QByteArray check(kCheckSize, '\0');
    crypto_generichash(raw(check), kCheckSize, raw(all), static_cast<unsigned long long>(all.size()), nullptr, 0);
    return check;
}
} // namespace

SigningKey SigningKey::generate()
{
    prepare();
    SigningKey key;
    QByteArray publicBytes(crypto_sign_PUBLICKEYBYTES, '\0');
    key.m_secret = QByteArray(crypto_sign_SECRETKEYBYTES, '\0');
    crypto_sign_keypair(raw(publicBytes), raw(key.m_secret));
    key.m_id = QByteArray(kKeyIdSize, '\0');
    randombytes_buf(key.m_id.data(), kKeyIdSize);
    return key;
}

ValueOr<SigningKey> SigningKey::fromText(const QByteArray& text)
{
    prepare();
    const QByteArray bytes = payload(text);
    if (bytes.size() != kDerivation + kKeyIdSize + crypto_sign_SECRETKEYBYTES + kCheckSize ||
        !bytes.startsWith(kAlgorithm))
        return Outcome::failure(tr("This is no secret key in the form of minisign."));
    if (bytes.mid(2, 2) != QByteArray(2, '\0'))
        return Outcome::failure(
            tr("This key is protected by a password, which is not supported here; make one without."));
    SigningKey key;
    key.m_id = bytes.mid(kDerivation, kKeyIdSize);
    key.m_secret = bytes.mid(kDerivation + kKeyIdSize, crypto_sign_SECRETKEYBYTES);
    if (bytes.right(kCheckSize) != checkValue(key.m_id, key.m_secret))
        return Outcome::failure(tr("The secret key is damaged."));
    return key;
}

QByteArray SigningKey::toText() const
{
    return "untrusted comment: minisign secret key without a password " + readable(m_id) + '\n' +
           (kAlgorithm + QByteArray(2, '\0') + kCheckAlgorithm + QByteArray(48, '\0') + m_id + m_secret +
            checkValue(m_id, m_secret))
               .toBase64() +
           '\n';
}

PublicKey SigningKey::publicKey() const
{
    QByteArray bytes(crypto_sign_PUBLICKEYBYTES, '\0');
    crypto_sign_ed25519_sk_to_pk(raw(bytes), raw(m_secret));
    return {m_id, bytes};
}

QByteArray SigningKey::seal(const QByteArray& message) const
{
    QByteArray signature(kSignatureSize, '\0');
    crypto_sign_detached(raw(signature), nullptr, raw(message), static_cast<unsigned long long>(message.size()),
                         raw(m_secret));
    return m_id + signature;
}

} // namespace firmware
