// SPDX-License-Identifier: MIT
#include "binding/describe/wording.h"

#include <algorithm>

#include "binding/type_table.h"

namespace binding {

std::vector<std::string> argumentNames(const Entry &entry) {
    std::vector<std::string> names;
    std::string_view rest = entry.argumentNames;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(", "), rest.size());
        names.emplace_back(rest.substr(0, comma));
        rest.remove_prefix(std::min(comma + 2, rest.size()));
    }
    return names;
}

std::string pointerText(std::size_t pointer) {
    const std::string_view text = kPointerTypes[pointer].text;
    return std::string(text.substr(text.rfind('|') + 1));
}

std::vector<std::string> raisedClasses(const Entry &entry) {
    std::vector<std::string> classes;
    const auto any = [&entry](auto test) { return std::any_of(entry.arguments.begin(), entry.arguments.end(), test); };
    // Without overloads a wrong count is a TypeError, so every such entry can raise one.
    if (!entry.isOverloaded())
        classes.emplace_back("TypeError");
    if (any([](const ArgumentShape &argument) { return argument.kind == ArgumentKind::Float; }))
        classes.emplace_back("OverflowError");
    if (any([](const ArgumentShape &argument) { return argument.refusesNull; }))
        classes.emplace_back("ValueError");
    if (entry.isOverloaded())
        classes.emplace_back("NotImplementedError");
    return classes;
}

std::string join(const std::vector<std::string> &parts, std::string_view separator) {
    std::string joined;
    for (const std::string &part : parts) {
        if (!joined.empty())
            joined += separator;
        joined += part;
    }
    return joined;
}

} // namespace binding
