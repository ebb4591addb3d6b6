// SPDX-License-Identifier: MIT
#include "platform/multibyte.h"

namespace platform {

std::wstring wideFromMultibyte(const std::string &text) {
    std::wstring wide(text.size() + 1, L'\0');
    wide.resize(wideFromMultibyte(text.c_str(), wide.data(), wide.size()));
    return wide;
}

} // namespace platform
