// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

/// Ed25519 keys in the text form of minisign: a comment line and one of base64.
namespace firmware {

inline constexpr qsizetype kKeyIdSize = 8;
inline constexpr qsizetype kSignatureSize = 64;
inline constexpr qsizetype kSealSize = kKeyIdSize + kSignatureSize; ///< number of the key, then the signature

struct PublicKey
{
    QByteArray id;    ///< tells keys apart; vouches for nothing
    QByteArray bytes; ///< 32

    bool verifies(const QByteArray& message, const QByteArray& signature) const;
    QByteArray toText() const;
    static std::optional<PublicKey> fromText(const QByteArray& text);
};

/// The public keys of a folder: its files "*.pub". A file that other users could have written is passed over, since it
/// says nothing of who vouches for the key; so is one that holds no key.
class TrustedKeys
{
public:
    TrustedKeys() = default;
    /// What cannot be read is as good as empty.
    static TrustedKeys ofFolder(const QString& folder);
    /// $MARROWICK_TRUSTED_KEYS, or /etc/marrowick/trusted-keys.
    static QString installedFolder();

    void add(const PublicKey& key) { m_keys.insert(key.id, key); }
    bool isEmpty() const { return m_keys.isEmpty(); }
    std::optional<PublicKey> find(const QByteArray& id) const;

private:
    QHash<QByteArray, PublicKey> m_keys;
};

/// A key that signs. Its text is readable by whoever reads the file: no password protects it.
class SigningKey
{
public:
    static SigningKey generate();
    /// A failure says why the text is no key that can be used here.
    static ValueOr<SigningKey> fromText(const QByteArray& text);
    QByteArray toText() const;

    PublicKey publicKey() const;
    /// Number of the key and signature: kSealSize bytes.
    QByteArray seal(const QByteArray& message) const;

private:
    QByteArray m_id;
    QByteArray m_secret;
};

} // namespace firmware
