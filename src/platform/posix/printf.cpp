// SPDX-License-Identifier: MIT
#include "platform/printf.h"

#include <cstdio>
#include <cwchar>
#include <string>

#include <clocale>
#include <locale.h>

namespace platform {
namespace {

/// Gives the calling thread UTF-8 while it formats: a host that never calls setlocale runs in the "C" locale, where the
/// first character outside ASCII that changes its width ends the message.
class Utf8Scope {
  public:
    Utf8Scope() {
        static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
        if (utf8)
            m_previous = uselocale(utf8);
    }
    ~Utf8Scope() {
        if (m_previous)
            uselocale(m_previous);
    }
    Utf8Scope(const Utf8Scope &) = delete;
    Utf8Scope &operator=(const Utf8Scope &) = delete;

  private:
    locale_t m_previous{};
};

/// Rewrites a wide format of Microsoft's into the standard's: %s to %ls, %S to %s, %c and %C alike.
std::wstring standardFormat(const wchar_t *format) {
    std::wstring result;
    bool inConversion = false;
    wchar_t length = 0;
    for (; *format; ++format) {
        wchar_t character = *format;
        if (!inConversion) {
            inConversion = character == L'%';
            length = 0;
        } else if (std::wcschr(L"hlLjzt", character)) {
            length = character;
        } else if (!std::wcschr(L" +-#0123456789.*", character)) {
            inConversion = false;
            if (!length && (character == L's' || character == L'c'))
                result += L'l';
            else if (character == L'S' || character == L'C')
                character = character == L'S' ? L's' : L'c';
        }
        result += character;
    }
    return result;
}

} // namespace

void formatNarrow(char *buffer, std::size_t size, const char *format, va_list arguments) {
    const Utf8Scope utf8;
    if (std::vsnprintf(buffer, size, format, arguments) < 0)
        buffer[size - 1] = '\0';
}

void formatWide(wchar_t *buffer, std::size_t size, const wchar_t *format, va_list arguments) {
    const Utf8Scope utf8;
    // What does not fit is reported as an error, but what fits is there.
    std::vswprintf(buffer, size, standardFormat(format).c_str(), arguments);
    buffer[size - 1] = L'\0';
}

} // namespace platform
