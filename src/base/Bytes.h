#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/Expect.h"

/// Questions that are asked of every byte of every file, and so eight bytes at a time.
namespace kd {

namespace bytes {

inline constexpr std::uint64_t Each = 0x0101010101010101ULL;
inline constexpr std::uint64_t EightBlanks = Each * 0x20U;
inline constexpr std::uint64_t HighBits = 0x8080808080808080ULL;

/// The eight bytes from `at` on, all of which the text must have.
inline std::uint64_t EightAt(std::string_view text, std::size_t at) noexcept {
    KD_EXPECT(text.size() >= 8 && at <= text.size() - 8);
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + at, sizeof eight);
    return eight;
}

inline bool IsControl(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x20U;
}

}  // namespace bytes

/// Offset of the first byte below the blank from `from` (at most the text's size) on; the text's size where
/// there is none.
inline std::size_t FindControl(std::string_view text, std::size_t from) noexcept {
    using namespace bytes;
    if constexpr (std::endian::native == std::endian::little) {
        for (; from + 8 <= text.size(); from += 8) {
            const std::uint64_t eight = EightAt(text, from);
            // A high bit for each control; a borrow can only set further ones behind the first.
            const std::uint64_t controls = (eight - EightBlanks) & ~eight & HighBits;
            if (controls != 0) {
                return from + static_cast<std::size_t>(std::countr_zero(controls)) / 8;
            }
        }
    }
    const auto found = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), IsControl);
    return static_cast<std::size_t>(found - text.begin());
}

/// Offset of the first byte that is no blank; the text's size where there is none.
inline std::size_t FindNotBlank(std::string_view text) noexcept {
    using namespace bytes;
    std::size_t at = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; at + 8 <= text.size(); at += 8) {
            const std::uint64_t others = EightAt(text, at) ^ EightBlanks;
            if (others != 0) {
                return at + static_cast<std::size_t>(std::countr_zero(others)) / 8;
            }
        }
    }
    while (at < text.size() && text[at] == ' ') {
        ++at;
    }
    return at;
}

/// Offset behind the last byte that is no blank; 0 where there is none.
inline std::size_t EndBeforeBlanks(std::string_view text) noexcept {
    using namespace bytes;
    std::size_t end = text.size();
    if constexpr (std::endian::native == std::endian::little) {
        for (; end >= 8; end -= 8) {
            const std::uint64_t others = EightAt(text, end - 8) ^ EightBlanks;
            if (others != 0) {
                return end - static_cast<std::size_t>(std::countl_zero(others)) / 8;
            }
        }
    }
    while (end > 0 && text[end - 1] == ' ') {
        --end;
    }
    return end;
}

/// Whether capitals may change the text: false is certain, and is what upper-case ASCII letters, digits and
/// most signs give.
inline bool MayHaveCapitals(std::string_view text) noexcept {
    using namespace bytes;
    const auto isHigh = [](char c) { return static_cast<unsigned char>(c) >= 'a'; };
    if (text.size() < 8) {
        return std::any_of(text.begin(), text.end(), isHigh);
    }
    std::uint64_t high = 0;
    for (std::size_t at = 0; at + 8 < text.size(); at += 8) {
        const std::uint64_t eight = EightAt(text, at);
        high |= eight | (eight + EightBlanks);  // 0x60 and above get the high bit
    }
    const std::uint64_t last = EightAt(text, text.size() - 8);
    return ((high | last | (last + EightBlanks)) & HighBits) != 0;
}

/// Length of the run of ASCII characters at the front.
inline std::size_t AsciiRun(std::string_view text) noexcept {
    using namespace bytes;
    constexpr std::size_t Step = 32;
    std::size_t at = 0;
    for (; at + Step <= text.size(); at += Step) {
        const std::uint64_t high =
            EightAt(text, at) | EightAt(text, at + 8) | EightAt(text, at + 16) | EightAt(text, at + 24);
        if ((high & HighBits) != 0) {
            break;
        }
    }
    while (at + 8 <= text.size() && (EightAt(text, at) & HighBits) == 0) {
        at += 8;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80U) {
        ++at;
    }
    return at;
}

}  // namespace kd
