// SPDX-License-Identifier: MIT
#include "platform/posix/log_settings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>

#include "platform/posix/utf8.h"

namespace platform {
namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlank = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

bool sameName(std::string_view left, std::string_view right) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [lower](char a, char b) { return lower(a) == lower(b); });
}

bool isOn(std::string_view value) {
    int base = 10;
    if (value.starts_with("0x") || value.starts_with("0X")) {
        value.remove_prefix(2);
        base = 16;
    }
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number, base);
    return error == std::errc() && end == value.data() + value.size() && number != 0;
}

} // namespace

std::string logSettingsPath() {
    const char *const chosen = std::getenv(kLogSettingsVariable);
    return chosen && *chosen ? chosen : kLogSettingsFile;
}

std::optional<LogSwitches> parseLogSettings(std::string_view text, const wchar_t *keyPath, const wchar_t *dumpName) {
    const std::string key = utf8FromWide(keyPath);
    const std::string dump = utf8FromWide(dumpName);
    const std::string eventTrace = utf8FromWide(kEventTraceSwitch);
    bool inSection = sameName(key, utf8FromWide(kDefaultLogKey));
    bool found = inSection;
    LogSwitches switches;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#' || line.front() == ';')
            continue;
        if (line.front() == '[') {
            inSection = line.back() == ']' && sameName(trimmed(line.substr(1, line.size() - 2)), key);
            found = found || inSection;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inSection || equals == std::string_view::npos)
            continue;
        const std::string_view name = trimmed(line.substr(0, equals));
        const bool on = isOn(trimmed(line.substr(equals + 1)));
        // One value may be both switches: the caller chooses the name of the first.
        if (sameName(name, dump))
            switches.dump = on;
        if (sameName(name, eventTrace))
            switches.eventTrace = on;
    }
    return found ? std::optional(switches) : std::nullopt;
}

} // namespace platform
