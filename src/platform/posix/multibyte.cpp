// SPDX-License-Identifier: MIT
#include "platform/multibyte.h"

#include <cstdint>
#include <cstring>

#include "platform/posix/utf8.h"

// Written out instead of mbsrtowcs, which follows the process's locale: a host that never sets one would lose every
// character outside ASCII.

namespace platform {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isScalar(std::uint32_t value) {
    return value < 0xD800 || (value >= 0xE000 && value <= 0x10FFFF);
}

/// Decodes the character that `text` starts with and steps over it; over one byte when that starts none.
std::uint32_t decode(const char *&text) {
    const auto first = static_cast<unsigned char>(*text++);
    if (first < 0x80)
        return first;
    const int following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4)
        return kReplacement;
    std::uint32_t value = first & (0x3FU >> following);
    for (int i = 0; i < following; ++i) {
        // The terminator is no continuation, so this never reads past it.
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80)
            return kReplacement;
        value = value << 6 | (byte & 0x3FU);
    }
    const std::uint32_t smallest = following == 3 ? 0x10000 : following == 2 ? 0x800 : 0x80;
    if (value < smallest || !isScalar(value))
        return kReplacement;
    text += following;
    return value;
}

} // namespace

std::size_t wideFromMultibyte(const char *text, wchar_t *wide, std::size_t size) {
    std::size_t length = 0;
    while (length + 1 < size && *text)
        wide[length++] = static_cast<wchar_t>(decode(text));
    wide[length] = L'\0';
    return length;
}

std::string utf8FromWide(const wchar_t *wide) {
    std::string text;
    for (; *wide; ++wide) {
        const auto given = static_cast<std::uint32_t>(*wide);
        const std::uint32_t value = isScalar(given) ? given : kReplacement;
        const auto append = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
        if (value < 0x80) {
            append(value);
            continue;
        }
        const unsigned following = value >= 0x10000 ? 3 : value >= 0x800 ? 2 : 1;
        append((0xFF00U >> (following + 1) & 0xFFU) | value >> 6 * following);
        for (unsigned left = following; left-- > 0;)
            append(0x80U | (value >> 6 * left & 0x3FU));
    }
    return text;
}

} // namespace platform
