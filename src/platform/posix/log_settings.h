// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/log_backend.h"

namespace platform {

/// The machine-wide settings file.
inline constexpr char kLogSettingsFile[] = "/etc/orvanel/log.conf";
/// Environment variable that names another file instead.
inline constexpr char kLogSettingsVariable[] = "ORVANEL_LOG_SETTINGS";

/// The path of the settings file in force.
std::string logSettingsPath();

/// Reads the switches of one section from the text of a settings file.
///
/// A section "[KEY PATH]" stands for a key of the registry, and lines before the first section belong to the default
/// key, which therefore always exists. Names and key paths are compared without regard to case, as in a registry. A
/// value is a 32-bit number, decimal or 0x and hexadecimal; anything else counts as 0. Of a name given twice the last
/// one counts. Nothing when the section is missing.
std::optional<LogSwitches> parseLogSettings(std::string_view text, const wchar_t *keyPath, const wchar_t *dumpName);

} // namespace platform
