// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/BootAnswer.h"

#include "values/Conversions.h"

#include <QtEndian>

#include <array>
#include <limits>
#include <zlib.h>

namespace tarnload {

namespace {

constexpr qsizetype kFrameLength = 67;
constexpr qsizetype kReturnAt = 65;
constexpr std::array<qsizetype, 4> kNumbersAt{4, 18, 32, 46};
constexpr qsizetype kNumberWidth = 13;
constexpr char kModelSlot = '6';

std::optional<std::int64_t> wholeNumber(QByteArrayView bytes)
{
    const std::optional<double> number =
        values::strictNumber(std::string_view(bytes.data(), std::size_t(bytes.size())));
    if (!number || *number < 0 || *number > double(std::numeric_limits<std::uint32_t>::max()) ||
        *number != double(std::int64_t(*number)))
        return {};
    return std::int64_t(*number);
}

std::optional<BootAnswer::Kind> kindOf(char code, char field)
{
    using Kind = BootAnswer::Kind;
    static constexpr std::array<Kind, 5> kBootKinds{Kind::State, Kind::Begun, Kind::BlockTaken, Kind::Refused,
                                                    Kind::Switches};
    if (code == 'O')
        return Kind::Version;
    if (code == 'V')
        return Kind::Serial;
    if (code == 'l' && field == kModelSlot)
        return Kind::Model;
    if (code == 'w' && field >= '0' && field < '0' + char(kBootKinds.size()))
        return kBootKinds[std::size_t(field - '0')];
    return {};
}

} // namespace

std::optional<BootAnswer> BootAnswer::fromFrame(QByteArrayView bytes)
{
    if (bytes.size() != kFrameLength || bytes[1] != ':' || bytes[kReturnAt] != '\r')
        return {};
    const std::optional<Kind> kind = kindOf(bytes[0], bytes[2]);
    if (!kind)
        return {};
    BootAnswer answer;
    answer.kind = *kind;
    if (*kind == Kind::Serial || *kind == Kind::Model) {
        answer.text = QString::fromLatin1(bytes.sliced(4, kReturnAt - 4)).trimmed();
        return answer;
    }
    const std::array<std::int64_t*, 4> numbers{&answer.n1, &answer.n2, &answer.n3, &answer.n4};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::optional<std::int64_t> number = wholeNumber(bytes.sliced(kNumbersAt[i], kNumberWidth));
        if (!number)
            return {};
        *numbers[i] = *number;
    }
    return answer;
}

std::uint32_t checkOf(const QByteArray& bytes)
{
    return std::uint32_t(::crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), uInt(bytes.size())));
}

QByteArray askCommand()
{
    return "boot\r";
}

QByteArray beginCommand(const QByteArray& sealedHeader, bool olderWanted)
{
    return "bootbegin " + QByteArray::number(sealedHeader.size()) + ' ' + QByteArray::number(checkOf(sealedHeader)) +
           (olderWanted ? " 1\r" : " 0\r") + sealedHeader;
}

QByteArray blockCommand(int number, const QByteArray& bytes)
{
    QByteArray numbered(4, '\0');
    qToLittleEndian(std::uint32_t(number), numbered.data());
    return "bootblock " + QByteArray::number(number) + ' ' + QByteArray::number(bytes.size()) + ' ' +
           QByteArray::number(checkOf(numbered + bytes)) + '\r' + bytes;
}

QByteArray switchCommand(bool olderWanted)
{
    return olderWanted ? "bootswitch 1\r" : "bootswitch 0\r";
}

} // namespace tarnload
