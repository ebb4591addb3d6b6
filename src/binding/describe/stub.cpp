// SPDX-License-Identifier: MIT
// The stub's types say what a checker can know: pointers cross as opaque objects or as proxies of any class, so each
// pointer type is an alias of Any that carries the name.

#include <set>

#include "binding/constants.h"
#include "binding/describe/describe.h"
#include "binding/describe/wording.h"
#include "binding/entry_table.h"
#include "binding/type_table.h"

namespace binding {

namespace {

/// A Python identifier for a registered pointer type: "_p_std__vectorTMPointF_t" without what mangling put around it.
std::string pointerAlias(std::size_t pointer) {
    return std::string(kPointerTypes[pointer].name).substr(1);
}

std::string argumentType(const ArgumentShape &argument) {
    switch (argument.kind) {
    case ArgumentKind::Object:
        return "Any";
    case ArgumentKind::Int:
    case ArgumentKind::LongLong:
        return "int";
    case ArgumentKind::Bool:
        return "bool";
    case ArgumentKind::Float:
        return "float";
    case ArgumentKind::Pointer:
    case ArgumentKind::Reference:
        break;
    }
    const std::string alias = pointerAlias(argument.pointer);
    return argument.refusesNull ? alias : "Optional[" + alias + "]";
}

std::string resultType(const ResultShape &result) {
    switch (result.kind) {
    case ResultKind::Nothing:
        return "None";
    case ResultKind::Int:
    case ResultKind::LongLong:
        return "int";
    case ResultKind::Bool:
        return "bool";
    case ResultKind::Object:
        return "Any";
    case ResultKind::Pointer:
    case ResultKind::OwnedPointer:
        break;
    }
    return "Optional[" + pointerAlias(result.pointer) + "]";
}

std::string function(const Entry &entry, std::size_t count) {
    const std::vector<std::string> names = argumentNames(entry);
    std::vector<std::string> arguments;
    for (std::size_t index = 0; index < count; ++index)
        arguments.push_back("__" + names[index] + ": " + argumentType(entry.arguments[index]));
    return "def " + std::string(entry.name) + "(" + join(arguments, ", ") + ") -> " + resultType(entry.result) +
           ": ...\n";
}

std::set<std::size_t> pointersInUse() {
    std::set<std::size_t> used;
    for (const Entry &entry : entryTable()) {
        for (const ArgumentShape &argument : entry.arguments)
            used.insert(argument.pointer);
        used.insert(entry.result.pointer);
    }
    used.erase(kNoPointer);
    return used;
}

} // namespace

std::string describeStub() {
    std::string stub = "# SPDX-License-Identifier: MIT\n"
                       "# Generated from the entry table. Arguments are positional.\n\n"
                       "from typing import Any, Optional, overload\n\n"
                       "class SwigPyObject(object):\n"
                       "    def disown(self) -> None: ...\n"
                       "    def acquire(self) -> None: ...\n"
                       "    def own(self, __flag: bool = ...) -> bool: ...\n"
                       "    def append(self, __other: SwigPyObject) -> None: ...\n"
                       "    def next(self) -> Optional[SwigPyObject]: ...\n"
                       "    def __int__(self) -> int: ...\n"
                       "    def __long__(self) -> int: ...\n\n"
                       "# An opaque object of the type, or a proxy whose \"this\" holds one.\n";
    for (const std::size_t pointer : pointersInUse())
        stub += pointerAlias(pointer) + " = Any  # " + pointerText(pointer) + "\n";
    stub += "\n";
    for (const Constant &constant : kConstants)
        stub += std::string(constant.name) + ": int  # " + std::to_string(constant.value) + "\n";
    stub += "\n";
    for (const Entry &entry : entryTable()) {
        for (std::size_t count = entry.required; count <= entry.arguments.size(); ++count)
            stub += (entry.isOverloaded() ? "@overload\n" : "") + function(entry, count);
    }
    return stub;
}

} // namespace binding
