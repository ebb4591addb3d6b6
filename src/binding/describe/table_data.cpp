// SPDX-License-Identifier: MIT
// The table for programs: as JSON, and as the list of its error texts.

#include "binding/constants.h"
#include "binding/describe/describe.h"
#include "binding/describe/wording.h"
#include "binding/entry_table.h"
#include "binding/type_table.h"

namespace binding {

namespace {

const char *kindName(ArgumentKind kind) {
    switch (kind) {
    case ArgumentKind::Object:
        return "object";
    case ArgumentKind::Int:
        return "int";
    case ArgumentKind::LongLong:
        return "longlong";
    case ArgumentKind::Bool:
        return "bool";
    case ArgumentKind::Float:
        return "float";
    case ArgumentKind::Pointer:
        return "pointer";
    case ArgumentKind::Reference:
        break;
    }
    return "reference";
}

const char *kindName(ResultKind kind) {
    switch (kind) {
    case ResultKind::Nothing:
        return "none";
    case ResultKind::Int:
        return "int";
    case ResultKind::LongLong:
        return "longlong";
    case ResultKind::Bool:
        return "bool";
    case ResultKind::Object:
        return "object";
    case ResultKind::Pointer:
        return "pointer";
    case ResultKind::OwnedPointer:
        break;
    }
    return "owned";
}

std::string quoted(const std::string &text) {
    return "\"" + text + "\"";
}

std::string pointerName(std::size_t pointer) {
    return pointer == kNoPointer ? "null" : quoted(kPointerTypes[pointer].name);
}

std::string argumentData(const std::string &name, const ArgumentShape &argument) {
    return "{\"name\": " + quoted(name) + ", \"text\": " + quoted(argument.text) +
           ", \"kind\": " + quoted(kindName(argument.kind)) + ", \"type\": " + pointerName(argument.pointer) +
           ", \"refusesNull\": " + (argument.refusesNull ? "true" : "false") + "}";
}

std::string entryData(const Entry &entry) {
    const std::vector<std::string> names = argumentNames(entry);
    std::vector<std::string> arguments;
    for (std::size_t index = 0; index < entry.arguments.size(); ++index)
        arguments.push_back(argumentData(names[index], entry.arguments[index]));
    return "  {\"name\": " + quoted(entry.name) + ", \"required\": " + std::to_string(entry.required) +
           ", \"result\": " + quoted(kindName(entry.result.kind)) +
           ", \"resultType\": " + pointerName(entry.result.pointer) + ",\n   \"arguments\": [" +
           join(arguments, ",\n                 ") + "]}";
}

std::string withoutLineBreaks(std::string text) {
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
        text.replace(at, 1, "\\n");
    return text;
}

} // namespace

std::string describeTable() {
    std::vector<std::string> entries, constants, types;
    for (const Entry &entry : entryTable())
        entries.push_back(entryData(entry));
    for (const Constant &constant : kConstants)
        constants.push_back("  [" + quoted(constant.name) + ", " + std::to_string(constant.value) + "]");
    for (const PointerType &type : kPointerTypes)
        types.push_back("  [" + quoted(type.name) + ", " + quoted(type.text) + "]");
    return "{\"entries\": [\n" + join(entries, ",\n") + "],\n \"constants\": [\n" + join(constants, ",\n") +
           "],\n \"types\": [\n" + join(types, ",\n") + "]}\n";
}

std::string describeErrorTexts() {
    std::string texts;
    for (const Entry &entry : entryTable()) {
        for (std::size_t index = 0; index < entry.arguments.size(); ++index) {
            const ArgumentShape &argument = entry.arguments[index];
            if (argument.kind == ArgumentKind::Object)
                continue;
            texts += "TypeError: " + argumentText(entry.name, index + 1, argument.text, Refusal::Type) + "\n";
            if (argument.kind == ArgumentKind::Float)
                texts += "OverflowError: " + argumentText(entry.name, index + 1, argument.text, Refusal::Range) + "\n";
            if (argument.refusesNull)
                texts += "ValueError: " + argumentText(entry.name, index + 1, argument.text, Refusal::Null) + "\n";
        }
        if (entry.isOverloaded())
            texts +=
                "NotImplementedError: " + withoutLineBreaks(overloadText(entry.name, entry.arguments, entry.required)) +
                "\n";
    }
    return texts;
}

} // namespace binding
