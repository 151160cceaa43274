// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <vector>

class QIODevice;

/// Signatures and public keys in the format of the minisign program: Ed25519, over the file's BLAKE2b-512 hash or, in
/// the older kind, over the file itself.
namespace minisign {

inline constexpr qint64 kLongestSignatureFile = 16 * 1024;

struct PublicKey
{
    QByteArray id;  ///< 8 bytes
    QByteArray key; ///< 32 bytes
};

struct Signature
{
    bool prehashed = true;
    QByteArray id;               ///< 8 bytes: of the key that made it
    QByteArray signature;        ///< 64 bytes
    QByteArray trustedComment;   ///< without its heading
    QByteArray commentSignature; ///< 64 bytes, over signature and trusted comment
};

/// A text of any origin. Failure: it is none.
ValueOr<PublicKey> readPublicKey(const QByteArray& text);
ValueOr<Signature> readSignature(const QByteArray& text);

/// The keys in the files "*.pub" of a folder. What is no key is left out, and what other users than the administrator
/// could have written, since it says nothing of who trusts it.
std::vector<PublicKey> keysOfFolder(const QString& folder);

/// A key's number as people write it.
QString idText(const QByteArray& id);

/// Success: one of the keys has signed all that the device holds from its beginning to its end. The device is open and
/// can seek.
Outcome verify(QIODevice& device, const Signature& signature, const std::vector<PublicKey>& keys);

} // namespace minisign
