// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binding/entry.h"

namespace binding {

/// The names of an entry's arguments, one by one.
std::vector<std::string> argumentNames(const Entry &entry);

/// The registered type behind a pointer or a reference: its human name, the last of several.
std::string pointerText(std::size_t pointer);

/// Exception classes that converting an entry's arguments can raise, "TypeError" for instance.
std::vector<std::string> raisedClasses(const Entry &entry);

std::string join(const std::vector<std::string> &parts, std::string_view separator);

} // namespace binding
