// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/file/Keys.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

class QIODevice;

/// The firmware file (.mfw), as docs/firmware-file.md describes it.
namespace firmware {

inline constexpr int kLongestNotes = 128;                       ///< characters
inline constexpr qsizetype kLongestHeader = 2048;               ///< bytes
inline constexpr std::uint32_t kLargestImage = 4 * 1024 * 1024; ///< bytes
inline constexpr int kMostHardware = 32;                        ///< hardware revisions that one file fits

/// What an image is and what it is for. Equal headers have equal bytes.
struct Header
{
    QString model;             ///< ModelNames::file
    std::vector<int> hardware; ///< board revisions it fits, rising; at least one
    std::int32_t major = 0, minor = 0, build = 0;
    QString notes;
    std::uint32_t imageSize = 0; ///< bytes
    QByteArray imageHash;        ///< SHA-256

    bool operator==(const Header&) const = default;

    bool fitsHardware(int revision) const;
    /// Rising with the version.
    bool isOlderThan(std::int32_t otherMajor, std::int32_t otherMinor, std::int32_t otherBuild) const;
    /// "V1.28 Build 7".
    QString versionText() const;

    QByteArray toBytes() const;
    /// Nothing unless these are the very bytes that toBytes() makes of a header within its limits.
    static std::optional<Header> fromBytes(const QByteArray& bytes);
};

enum class Problem
{
    None,
    Unreadable,    ///< the file system gives no bytes
    NotFirmware,   ///< something else
    LaterVersion,  ///< a format that this program does not know yet
    Damaged,       ///< cut, too long, or changed where no signature stands for it
    Unsigned,      ///< packed, but not signed yet
    NoTrustedKeys, ///< no key is installed that could vouch for any file
    UnknownKey,    ///< signed by a key that is not trusted here
    BadSignature,  ///< the signature of a trusted key does not fit
};

struct FirmwareFile
{
    Header header;
    QByteArray headerBytes;
    QByteArray seal; ///< of headerBytes; empty when the file is unsigned
    QByteArray image;

    QByteArray toBytes() const;
};

struct ReadResult
{
    Problem problem = Problem::None;
    FirmwareFile file; ///< header and seal also with the problems from Unsigned on; the image with None alone
};

/// Reads the file and believes none of it before its signature fits a trusted key: the image is not read before that.
/// Takes no more memory than the file has bytes, and never more than the limits above.
ReadResult read(QIODevice& device, const TrustedKeys& keys);
/// The same for somebody who makes firmware: an unsigned or foreign file is read to its end, its image checked against
/// the hash. The problem is None or one of those before Unsigned.
ReadResult readUnjudged(QIODevice& device);

/// A header and its image that belong together. Size and hash are filled in.
FirmwareFile pack(Header header, const QByteArray& image);
/// Seals the header.
void sign(FirmwareFile& file, const SigningKey& key);

/// What the instrument's end does with the same bytes: None, NoTrustedKeys, UnknownKey or BadSignature.
Problem judgeSeal(const QByteArray& headerBytes, const QByteArray& seal, const TrustedKeys& keys);
QByteArray hashOf(const QByteArray& image);

} // namespace firmware
