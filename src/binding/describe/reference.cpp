// SPDX-License-Identifier: MIT

#include "binding/constants.h"
#include "binding/describe/describe.h"
#include "binding/describe/wording.h"
#include "binding/entry_table.h"

namespace binding {

namespace {

constexpr const char *kIntroduction =
    R"(<!-- Generated from the entry table; `cmake --build --preset release --target update_api` writes it anew. -->

# The module `_Orvanel`

Flat functions over one class. The first argument of a method's function is the object: an opaque object that carries its
pointer, or an instance of a proxy class whose attribute `this` holds one. Arguments are positional, and their count is exact.

## Arguments

| Declared type | Accepted | Otherwise |
|---|---|---|
| `INT`, `BOOL`, `ECallBack_State` | int or long that fits 32 bits | TypeError |
| `LONGLONG` | int or long that fits 64 bits | TypeError |
| `bool` | True, False, and any int or long, which is true when it is not 0 | TypeError |
| `float` | float, int or long within the range of a 32-bit float; NaN passes | TypeError, OverflowError out of range |
| `T *` | an opaque object or proxy of the type or a registered subclass; None is a null pointer, which only the object of a method must not be | TypeError, ValueError |
| `T &`, `T const &` | the same without None | TypeError, ValueError for None |
| `PyObject *` | anything; the method reads it | |

A refusal reads "in method 'ENTRY', argument N of type 'TYPE'", counted from 1 and including the object; a ValueError has "invalid
null reference " before it. An overloaded entry that no prototype fits raises NotImplementedError with the list of prototypes.
A wrong count is the interpreter's own TypeError. After a refusal no method has run.

## Results

Result codes are signed 32-bit ints: 0 is success (`S_OK`), -2147467259 is `E_FAIL` (0x80004005). A `LONGLONG` is an int when it
fits 32 bits, else a long. A pointer comes as an opaque object that does not own what it points to, inside an instance of the
proxy class registered for its type if there is one; a null pointer is None. Durations are positions in the host's time unit,
pixels are pixels of the display surface.

## Constants

| Name | Value | Meaning |
|---|---|---|
)";

std::string resultText(const ResultShape &result) {
    switch (result.kind) {
    case ResultKind::Nothing:
        return "None";
    case ResultKind::Int:
        return "int";
    case ResultKind::LongLong:
        return "int or long";
    case ResultKind::Bool:
        return "bool";
    case ResultKind::Object:
        return "object";
    case ResultKind::Pointer:
        return pointerText(result.pointer) + " or None";
    case ResultKind::OwnedPointer:
        break;
    }
    return pointerText(result.pointer) + ", owned";
}

/// "(self, x[, y])": what may be left out in brackets.
std::string prototype(const Entry &entry) {
    const std::vector<std::string> names = argumentNames(entry);
    std::string text = std::string(entry.name) + "(";
    for (std::size_t index = 0; index < names.size(); ++index)
        text += (index >= entry.required ? "[" : "") + std::string(index > 0 ? ", " : "") + names[index];
    return text + std::string(names.size() - entry.required, ']') + ")";
}

std::string section(const Entry &entry) {
    std::vector<std::string> types;
    for (const ArgumentShape &argument : entry.arguments)
        types.push_back("`" + std::string(argument.text) + "`");
    std::string text = "### " + std::string(entry.name) + "\n\n`" + prototype(entry) + "` → " +
                       resultText(entry.result) + "\n\n" + entry.meaning + "\n\n";
    if (!types.empty())
        text += "Takes " + join(types, ", ") + ". ";
    text += "Raises " + join(raisedClasses(entry), ", ") + ".\n";
    return text;
}

} // namespace

std::string describeReference() {
    std::string reference = kIntroduction;
    for (const Constant &constant : kConstants) {
        reference += "| `" + std::string(constant.name) + "` | " + std::to_string(constant.value) + " | " +
                     constant.meaning + " |\n";
    }
    reference += "\n## Entries\n";
    for (const Entry &entry : entryTable())
        reference += "\n" + section(entry);
    return reference;
}

} // namespace binding
