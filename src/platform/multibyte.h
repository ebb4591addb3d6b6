// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// Converts text of the system's multibyte encoding (Windows: the ANSI code page, elsewhere UTF-8) to wide characters,
/// as many as fit `size` with the terminator that is always written. Returns their number. Bytes that mean nothing
/// become a replacement character. Nothing is allocated.
std::size_t wideFromMultibyte(const char *text, wchar_t *wide, std::size_t size);

/// The same for text of any length.
std::wstring wideFromMultibyte(const std::string &text);

} // namespace platform
