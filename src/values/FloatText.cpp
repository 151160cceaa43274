// SPDX-License-Identifier: GPL-3.0-or-later
// A float of 24 bits between 1e-7 and 2^24 is c * 2^q with q from -47 to 0. Every text that reads back to it lies
// within half a step, 2^q / 2, of it; the shortest is a multiple of the power of ten just below that step, or of the
// next higher one. All of this fits into 128 bits, so nothing is rounded on the way.
#include "values/FloatText.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace values {
namespace {

constexpr int kMantissaBits = 23;
constexpr std::uint32_t kHidden = std::uint32_t{1} << kMantissaBits;
constexpr int kLowestPower = -47; ///< q of 1e-7
constexpr int kBias = 150;        ///< of the exponent field over q
constexpr float kLowest = 1e-7F, kHighest = 1e15F;

__extension__ using Wide = unsigned __int128;

/// 10^-digits is the highest power of ten up to 2^q.
struct Scale
{
    std::uint64_t power = 1; ///< 10^digits
    int digits = 0;
};

constexpr std::array<Scale, 1 - kLowestPower> makeScales()
{
    std::array<Scale, 1 - kLowestPower> scales{};
    Scale scale;
    for (int q = 0; q >= kLowestPower; --q) {
        while (scale.power < std::uint64_t{1} << -q) {
            scale.power *= 10;
            ++scale.digits;
        }
        scales[static_cast<std::size_t>(-q)] = scale;
    }
    return scales;
}

constexpr std::array<Scale, 1 - kLowestPower> kScales = makeScales();

constexpr std::array<char, 200> makePairs()
{
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

constexpr std::array<char, 200> kPairs = makePairs();

/// The quotient by 2^bits, with bits from 1 to 63; its lowest bit is set too where something was cut off, which keeps
/// comparisons with even numbers exact.
std::uint64_t cut(Wide number, int bits) noexcept
{
    const auto high = static_cast<std::uint64_t>(number >> 64), low = static_cast<std::uint64_t>(number);
    const bool rest = (low & ((std::uint64_t{1} << bits) - 1)) != 0;
    return high << (64 - bits) | low >> bits | static_cast<std::uint64_t>(rest);
}

struct Decimal
{
    std::uint32_t number = 0; ///< in units of 10^-digits
    int digits = 0;
};

/// The shortest text of c * 2^q, and the nearest of several. c is no power of two.
Decimal shortest(std::uint32_t c, int q) noexcept
{
    const Scale& scale = kScales[static_cast<std::size_t>(-q)];
    // In quarters of the unit, so that the limits half a step away are whole in binary.
    const Wide value = Wide{4} * c * scale.power, half = Wide{2} * scale.power;
    const std::uint64_t here = cut(value, -q), low = cut(value - half, -q), high = cut(value + half, -q);
    // A limit itself reads back to the even one of its neighbours.
    const std::uint64_t open = c & 1U;
    const auto isAbove = [&](std::uint64_t number) { return low + open <= 4 * number; };
    const auto isBelow = [&](std::uint64_t number) { return 4 * number + open <= high; };

    const std::uint64_t floor = here / 4;
    Decimal decimal{0, scale.digits};
    const std::uint64_t tens = floor / 10 * 10;
    if (const bool lower = isAbove(tens); scale.digits > 0 && lower != isBelow(tens + 10)) {
        decimal.number = static_cast<std::uint32_t>(lower ? tens : tens + 10);
        while (decimal.digits > 0 && decimal.number % 10 == 0) {
            decimal.number /= 10;
            --decimal.digits;
        }
        return decimal;
    }
    const bool lower = isAbove(floor), upper = isBelow(floor + 1);
    const std::uint64_t middle = 4 * floor + 2;
    const bool down = lower != upper ? lower : here < middle || (here == middle && floor % 2 == 0);
    decimal.number = static_cast<std::uint32_t>(down ? floor : floor + 1);
    return decimal;
}

/// The text of the number ends before that place; returns where it begins.
char* writeBackwards(std::uint32_t number, char* end) noexcept
{
    while (number >= 100) {
        end -= 2;
        std::memcpy(end, &kPairs[std::size_t{2} * (number % 100)], 2);
        number /= 100;
    }
    if (number < 10) {
        *--end = static_cast<char>('0' + number);
        return end;
    }
    end -= 2;
    std::memcpy(end, &kPairs[std::size_t{2} * number], 2);
    return end;
}

std::size_t writePlain(const Decimal& decimal, char* buffer) noexcept
{
    // Copies of fixed length cost less than what they copy too much.
    constexpr std::size_t kPiece = 16;
    char text[2 * kPiece];
    std::memset(text, '0', sizeof text);
    char* const end = text + kPiece;
    const char* const digits = writeBackwards(decimal.number, end);
    const auto fraction = static_cast<std::size_t>(decimal.digits);
    auto length = static_cast<std::size_t>(end - digits);
    if (fraction == 0) {
        std::memcpy(buffer, digits, kPiece);
        return length;
    }
    length = length > fraction ? length : fraction + 1; // the zeros in front are there already
    const std::size_t whole = length - fraction;
    std::memcpy(buffer, end - length, kPiece);
    buffer[whole] = '.';
    std::memcpy(buffer + whole + 1, end - fraction, kPiece);
    return length + 1;
}

} // namespace

std::size_t writeShortestPlain(float value, char* buffer) noexcept
{
    if (!(value >= kLowest && value <= kHighest))
        return 0;
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t field = bits & (kHidden - 1);
    if (field == 0)
        return 0; // the step below a power of two is half of that above it
    const int q = static_cast<int>(bits >> kMantissaBits) - kBias;
    const std::uint32_t c = field | kHidden;
    if (q >= 0) {
        const std::uint64_t whole = std::uint64_t{c} << q;
        return static_cast<std::size_t>(std::to_chars(buffer, buffer + 17, whole).ptr - buffer);
    }
    return writePlain(shortest(c, q), buffer);
}

} // namespace values
