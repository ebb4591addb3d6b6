// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// A text that can be a template argument and be put together at compile time. `Size` counts the terminator.
template <std::size_t Size>
struct FixedText {
    char characters[Size]{};

    constexpr FixedText() = default;
    // Implicit on purpose: template arguments are written as plain literals.
    constexpr FixedText(const char (&text)[Size]) { std::copy_n(text, Size, characters); }

    constexpr const char *c_str() const { return characters; }
    constexpr std::string_view view() const { return {characters, Size - 1}; }
};

template <std::size_t Left, std::size_t Right>
constexpr FixedText<Left + Right - 1> operator+(const FixedText<Left> &left, const FixedText<Right> &right) {
    FixedText<Left + Right - 1> joined;
    std::copy_n(left.characters, Left - 1, joined.characters);
    std::copy_n(right.characters, Right, joined.characters + Left - 1);
    return joined;
}

template <std::size_t Left, std::size_t Right>
constexpr auto operator+(const FixedText<Left> &left, const char (&right)[Right]) {
    return left + FixedText<Right>(right);
}
