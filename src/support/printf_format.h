// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <type_traits>

// printf formats that are checked against their arguments when they are compiled, by every compiler and for wide
// formats too. Attributes do that for narrow formats with some compilers only; none knows Microsoft's rule for wide
// ones.
//
// A format accepts what means the same on every platform: int-sized values without a length (or h, hh), 64-bit values
// with ll, floating point, pointers, and texts by Microsoft's rule (%s has the format's own width, %S the other one;
// %hs is narrow, %ls wide). The length l is refused for numbers, because a long is 32 bits here and 64 bits there, and
// so is %n, which writes. Integers are handed on as int or long long, so any type of the right size fits its
// conversion.

namespace diaglog {

/// What an argument becomes on its way through "...".
enum class ArgumentKind { None, Integer32, Integer64, Real, NarrowText, WideText, Pointer };

template <typename Argument>
constexpr ArgumentKind argumentKind() {
    if constexpr (std::is_integral_v<Argument> || std::is_enum_v<Argument>)
        return sizeof(Argument) > 4 ? ArgumentKind::Integer64 : ArgumentKind::Integer32;
    else if constexpr (std::is_same_v<Argument, float> || std::is_same_v<Argument, double>)
        return ArgumentKind::Real;
    else if constexpr (std::is_convertible_v<Argument, const char *>)
        return ArgumentKind::NarrowText;
    else if constexpr (std::is_convertible_v<Argument, const wchar_t *>)
        return ArgumentKind::WideText;
    else if constexpr (std::is_pointer_v<Argument>)
        return ArgumentKind::Pointer;
    else
        return ArgumentKind::None;
}

/// The argument as its conversion reads it.
template <typename Argument>
constexpr auto passed(Argument argument) {
    constexpr ArgumentKind kind = argumentKind<Argument>();
    static_assert(kind != ArgumentKind::None, "printf cannot print this type");
    if constexpr (kind == ArgumentKind::Integer32)
        return static_cast<int>(argument);
    else if constexpr (kind == ArgumentKind::Integer64)
        return static_cast<long long>(argument);
    else if constexpr (kind == ArgumentKind::Real)
        return static_cast<double>(argument);
    else if constexpr (kind == ArgumentKind::NarrowText)
        return static_cast<const char *>(argument);
    else if constexpr (kind == ArgumentKind::WideText)
        return static_cast<const wchar_t *>(argument);
    else
        return static_cast<const void *>(argument);
}

enum class FormatFault { None, TooFewArguments, TooManyArguments, WrongArgument, UnknownConversion, UnportableLength };

/// Reads a format and matches its conversions with the kinds of its arguments, in order.
template <typename Character, std::size_t count>
class FormatCheck {
  public:
    constexpr FormatCheck(const Character *format, const std::array<ArgumentKind, count> &arguments)
        : m_next(format), m_arguments(arguments) {}

    constexpr FormatFault fault() {
        while (*m_next) {
            if (*m_next++ != '%')
                continue;
            if (const FormatFault found = conversion(); found != FormatFault::None)
                return found;
        }
        return m_used == count ? FormatFault::None : FormatFault::TooManyArguments;
    }

  private:
    enum class Length { None, Short, Long, LongLong };

    constexpr bool isOneOf(const char *characters) const {
        for (; *characters; ++characters)
            if (*m_next == static_cast<Character>(*characters))
                return true;
        return false;
    }

    constexpr FormatFault use(ArgumentKind wanted) {
        if (m_used == count)
            return FormatFault::TooFewArguments;
        return m_arguments[m_used++] == wanted ? FormatFault::None : FormatFault::WrongArgument;
    }

    /// A field width or a precision, which may be an argument.
    constexpr FormatFault number() {
        if (*m_next == '*') {
            ++m_next;
            return use(ArgumentKind::Integer32);
        }
        while (isOneOf("0123456789"))
            ++m_next;
        return FormatFault::None;
    }

    constexpr Length length() {
        if (*m_next == 'h') {
            m_next += m_next[1] == 'h' ? 2 : 1;
            return Length::Short;
        }
        if (*m_next == 'l') {
            const bool isDouble = m_next[1] == 'l';
            m_next += isDouble ? 2 : 1;
            return isDouble ? Length::LongLong : Length::Long;
        }
        return Length::None;
    }

    /// What stands behind a '%'.
    constexpr FormatFault conversion() {
        if (*m_next == '%') {
            ++m_next;
            return FormatFault::None;
        }
        while (isOneOf("-+ #0"))
            ++m_next;
        if (const FormatFault found = number(); found != FormatFault::None)
            return found;
        if (*m_next == '.') {
            ++m_next;
            if (const FormatFault found = number(); found != FormatFault::None)
                return found;
        }
        const Length size = length();
        if (!*m_next)
            return FormatFault::UnknownConversion;
        const FormatFault found = argument(size);
        ++m_next;
        return found;
    }

    constexpr FormatFault argument(Length size) {
        if (isOneOf("diouxX")) {
            if (size == Length::Long)
                return FormatFault::UnportableLength;
            return use(size == Length::LongLong ? ArgumentKind::Integer64 : ArgumentKind::Integer32);
        }
        if (isOneOf("s"))
            return size == Length::LongLong ? FormatFault::UnportableLength : use(text(size, kIsWide));
        if (size != Length::None)
            return FormatFault::UnportableLength;
        if (isOneOf("S"))
            return use(text(size, !kIsWide));
        if (isOneOf("cC"))
            return use(ArgumentKind::Integer32);
        if (isOneOf("aAeEfFgG"))
            return use(ArgumentKind::Real);
        if (isOneOf("p"))
            return use(ArgumentKind::Pointer);
        return FormatFault::UnknownConversion;
    }

    static constexpr ArgumentKind text(Length size, bool wide) {
        if (size == Length::Short)
            return ArgumentKind::NarrowText;
        return wide || size == Length::Long ? ArgumentKind::WideText : ArgumentKind::NarrowText;
    }

    static constexpr bool kIsWide = !std::is_same_v<Character, char>;

    const Character *m_next;
    const std::array<ArgumentKind, count> &m_arguments;
    std::size_t m_used = 0;
};

/// What is wrong with a format for arguments of these types.
template <typename... Arguments, typename Character>
constexpr FormatFault formatFault(const Character *format) {
    const std::array<ArgumentKind, sizeof...(Arguments)> kinds{argumentKind<Arguments>()...};
    return FormatCheck<Character, sizeof...(Arguments)>(format, kinds).fault();
}

/// A format known to fit arguments of these types; made of a literal, or the program does not compile.
template <typename Character, typename... Arguments>
class Format {
  public:
    consteval Format(const Character *text) : m_text(text) {
        switch (formatFault<Arguments...>(text)) {
        case FormatFault::None:
            break;
        case FormatFault::TooFewArguments:
            throw "the format has more conversions than there are arguments";
        case FormatFault::TooManyArguments:
            throw "the format has fewer conversions than there are arguments";
        case FormatFault::WrongArgument:
            throw "an argument's type does not fit its conversion";
        case FormatFault::UnknownConversion:
            throw "the format has a conversion that is unknown or refused";
        case FormatFault::UnportableLength:
            throw "the format has a length that means another size elsewhere: use none, or ll for 64 bits";
        }
    }
    constexpr const Character *text() const { return m_text; }

  private:
    const Character *m_text;
};

} // namespace diaglog
