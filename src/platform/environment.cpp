// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace platform {
namespace {

constexpr std::size_t kReadLength = 128;

/// Written out because the C libraries differ: on overflow some saturate and some wrap.
std::int32_t decimalNumber(std::wstring_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with(L'-');
    if (negative || text.starts_with(L'+'))
        text.remove_prefix(1);
    const std::int64_t limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + (negative ? 1 : 0);
    std::int64_t magnitude = 0;
    for (const wchar_t character : text) {
        if (character < L'0' || character > L'9')
            break;
        magnitude = std::min(magnitude * 10 + (character - L'0'), limit);
    }
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

} // namespace

std::int32_t environmentNumber(const char *name) {
    const std::optional<std::wstring> text = environmentText(name);
    return text ? decimalNumber(std::wstring_view(*text).substr(0, kReadLength)) : 0;
}

} // namespace platform
