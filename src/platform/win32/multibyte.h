// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Text of the system's multibyte code page as wide text. Bytes that mean nothing there become the default character.
std::wstring wideFromMultibyte(const std::string &text);

} // namespace platform
