// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/file/FirmwareFile.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <limits>
#include <sodium.h>
#include <tuple>

namespace firmware {

namespace {

const QLatin1String kFormat("marrowick firmware");
constexpr int kVersion = 1;
/// Signed in front of the header, so that no signature made for anything else fits it.
const QByteArray kContext("marrowick firmware header 1\n");
/// Tag of self-described CBOR, array of three.
const QByteArray kBegin("\xd9\xd9\xf7\x83", 4);
constexpr qsizetype kHashSize = crypto_hash_sha256_BYTES;
/// A head of a byte string of up to 4 MiB.
constexpr qsizetype kLongestHead = 5;

QByteArray byteString(const QByteArray& bytes)
{
    QByteArray all;
    QCborStreamWriter(&all).append(bytes);
    return all;
}

/// Takes the head of a byte string, in its shortest form, from the front of the bytes; nothing when there is none.
std::optional<quint64> takeHead(QByteArrayView& bytes)
{
    constexpr int kMajorType = 2 << 5;
    if (bytes.isEmpty() || (static_cast<unsigned char>(bytes[0]) & 0xe0) != kMajorType)
        return {};
    const unsigned info = static_cast<unsigned char>(bytes[0]) & 0x1f;
    const qsizetype extra = info < 24 ? 0 : info <= 26 ? qsizetype(1) << (info - 24) : -1;
    if (extra < 0 || bytes.size() < 1 + extra)
        return {};
    quint64 length = info;
    if (extra > 0) {
        length = 0;
        for (qsizetype i = 1; i <= extra; ++i)
            length = length << 8 | static_cast<unsigned char>(bytes[i]);
    }
    bytes = bytes.sliced(1 + extra);
    const quint64 least = extra == 0 ? 0 : extra == 1 ? 24 : extra == 2 ? 0x100 : 0x10000;
    return length >= least ? std::optional<quint64>(length) : std::nullopt;
}

std::optional<QByteArray> takeString(QByteArrayView& bytes, qsizetype longest)
{
    const std::optional<quint64> length = takeHead(bytes);
    if (!length || *length > quint64(longest) || *length > quint64(bytes.size()))
        return {};
    const QByteArray taken = bytes.first(qsizetype(*length)).toByteArray();
    bytes = bytes.sliced(qsizetype(*length));
    return taken;
}

bool isNumber(const QCborValue& value, qint64 low, qint64 high)
{
    return value.isInteger() && value.toInteger() >= low && value.toInteger() <= high;
}

bool withinLimits(const Header& header)
{
    const bool rising = std::is_sorted(header.hardware.begin(), header.hardware.end()) &&
                        std::adjacent_find(header.hardware.begin(), header.hardware.end()) == header.hardware.end();
    return !header.model.isEmpty() && header.model.size() <= 32 && !header.hardware.empty() &&
           header.hardware.size() <= std::size_t(kMostHardware) && rising && header.notes.size() <= kLongestNotes &&
           header.imageSize > 0 && header.imageSize <= kLargestImage && header.imageHash.size() == kHashSize;
}

/// Empty when the bytes are no map from their first to their last. A map that breaks off must not be asked: the library
/// looks for the value of a key that has none.
QCborMap mapOf(const QByteArray& bytes)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bytes, &error);
    return error.error == QCborError::NoError && error.offset == bytes.size() ? value.toMap() : QCborMap();
}

/// A header of another version of the format still names the format first.
bool isLaterVersion(const QByteArray& bytes)
{
    constexpr qint64 kHighest = std::numeric_limits<std::int32_t>::max();
    const QCborMap map = mapOf(bytes);
    return map.value(QLatin1String("format")).toString() == kFormat &&
           isNumber(map.value(QLatin1String("version")), kVersion + 1, kHighest);
}

/// The file up to its image: header and seal. The device stands at the first byte of the image then.
struct Head
{
    Problem problem = Problem::None;
    FirmwareFile file;
};

Head readHead(QIODevice& device)
{
    constexpr qsizetype kLongest = 4 + 3 + kLongestHeader + 2 + kSealSize + kLongestHead;
    const QByteArray begin = device.peek(kLongest);
    if (begin.isEmpty() && !device.atEnd())
        return {Problem::Unreadable, {}};
    if (!begin.startsWith(kBegin))
        return {Problem::NotFirmware, {}};
    QByteArrayView rest = QByteArrayView(begin).sliced(kBegin.size());
    const std::optional<QByteArray> header = takeString(rest, kLongestHeader);
    if (!header)
        return {begin.contains("marrowick firmware") ? Problem::Damaged : Problem::NotFirmware, {}};
    Head head;
    head.file.headerBytes = *header;
    const std::optional<Header> read = Header::fromBytes(*header);
    if (!read) {
        if (isLaterVersion(*header))
            return {Problem::LaterVersion, {}};
        return {header->contains("marrowick firmware") ? Problem::Damaged : Problem::NotFirmware, {}};
    }
    head.file.header = *read;
    const std::optional<QByteArray> seal = takeString(rest, kSealSize);
    if (!seal || (!seal->isEmpty() && seal->size() != kSealSize))
        return {Problem::Damaged, {}};
    head.file.seal = *seal;
    const std::optional<quint64> imageSize = takeHead(rest);
    if (!imageSize || *imageSize != head.file.header.imageSize)
        return {Problem::Damaged, {}};
    device.skip(begin.size() - rest.size());
    return head;
}

Problem readImage(QIODevice& device, FirmwareFile& file)
{
    const qint64 size = file.header.imageSize;
    // Before anything is made room for on the word of the file.
    if (!device.isSequential() && device.size() - device.pos() != size)
        return Problem::Damaged;
    file.image = device.read(size);
    if (file.image.size() != size || !device.read(1).isEmpty() || hashOf(file.image) != file.header.imageHash) {
        file.image.clear();
        return Problem::Damaged;
    }
    return Problem::None;
}

} // namespace

bool Header::fitsHardware(int revision) const
{
    return std::find(hardware.begin(), hardware.end(), revision) != hardware.end();
}

bool Header::isOlderThan(std::int32_t otherMajor, std::int32_t otherMinor, std::int32_t otherBuild) const
{
    return std::tie(major, minor, build) < std::tie(otherMajor, otherMinor, otherBuild);
}

QString Header::versionText() const
{
    return QStringLiteral("V%1.%2 Build %3").arg(major).arg(minor).arg(build);
}

QByteArray Header::toBytes() const
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    const auto number = [&writer](const char* name, qint64 value) {
        writer.append(QLatin1String(name));
        writer.append(value);
    };
    const auto text = [&writer](const char* name, QStringView value) {
        writer.append(QLatin1String(name));
        writer.append(value);
    };
    writer.startMap(10);
    text("format", QString(kFormat));
    number("version", kVersion);
    text("model", model);
    writer.append(QLatin1String("hardware"));
    writer.startArray(hardware.size());
    for (const int revision : hardware)
        writer.append(revision);
    writer.endArray();
    number("major", major);
    number("minor", minor);
    number("build", build);
    text("notes", notes);
    number("size", imageSize);
    writer.append(QLatin1String("sha256"));
    writer.append(imageHash);
    writer.endMap();
    return bytes;
}

std::optional<Header> Header::fromBytes(const QByteArray& bytes)
{
    if (bytes.size() > kLongestHeader)
        return {};
    const QCborMap map = mapOf(bytes);
    const auto value = [&map](const char* name) { return map.value(QLatin1String(name)); };
    constexpr qint64 kHighest = std::numeric_limits<std::int32_t>::max();
    for (const char* name : {"major", "minor", "build", "size"}) {
        if (!isNumber(value(name), 0, kHighest))
            return {};
    }
    Header header;
    const QCborArray revisions = value("hardware").toArray();
    header.model = value("model").toString();
    for (qsizetype i = 0; i < revisions.size(); ++i) {
        const QCborValue revision = revisions.at(i);
        if (!isNumber(revision, 0, kHighest))
            return {};
        header.hardware.push_back(static_cast<int>(revision.toInteger()));
    }
    header.major = static_cast<std::int32_t>(value("major").toInteger());
    header.minor = static_cast<std::int32_t>(value("minor").toInteger());
    header.build = static_cast<std::int32_t>(value("build").toInteger());
    header.notes = value("notes").toString();
    header.imageSize = static_cast<std::uint32_t>(value("size").toInteger());
    header.imageHash = value("sha256").toByteArray();
    // Format, version and the order of entries are held by this: there is one way to write a header.
    if (!withinLimits(header) || header.toBytes() != bytes)
        return {};
    return header;
}

QByteArray FirmwareFile::toBytes() const
{
    return kBegin + byteString(headerBytes) + byteString(seal) + byteString(image);
}

QByteArray hashOf(const QByteArray& image)
{
    QByteArray hash(kHashSize, '\0');
    crypto_hash_sha256(reinterpret_cast<unsigned char*>(hash.data()),
                       reinterpret_cast<const unsigned char*>(image.constData()),
                       static_cast<unsigned long long>(image.size()));
    return hash;
}

Problem judgeSeal(const QByteArray& headerBytes, const QByteArray& seal, const TrustedKeys& keys)
{
    if (keys.isEmpty())
        return Problem::NoTrustedKeys;
    const std::optional<PublicKey> key = keys.find(seal.left(kKeyIdSize));
    if (!key)
        return Problem::UnknownKey;
    return key->verifies(kContext + headerBytes, seal.mid(kKeyIdSize)) ? Problem::None : Problem::BadSignature;
}

ReadResult read(QIODevice& device, const TrustedKeys& keys)
{
    const Head head = readHead(device);
    ReadResult result{head.problem, head.file};
    if (result.problem != Problem::None)
        return result;
    result.problem =
        result.file.seal.isEmpty() ? Problem::Unsigned : judgeSeal(result.file.headerBytes, result.file.seal, keys);
    if (result.problem == Problem::None)
        result.problem = readImage(device, result.file);
    return result;
}

ReadResult readUnjudged(QIODevice& device)
{
    const Head head = readHead(device);
    ReadResult result{head.problem, head.file};
    if (result.problem == Problem::None)
        result.problem = readImage(device, result.file);
    return result;
}

FirmwareFile pack(Header header, const QByteArray& image)
{
    FirmwareFile file;
    header.imageSize = static_cast<std::uint32_t>(image.size());
    header.imageHash = hashOf(image);
    file.headerBytes = header.toBytes();
    file.header = std::move(header);
    file.image = image;
    return file;
}

void sign(FirmwareFile& file, const SigningKey& key)
{
    file.seal = key.seal(kContext + file.headerBytes);
}

} // namespace firmware
