// SPDX-License-Identifier: MIT
#pragma once

#include "binding/type_record.h"
#include "binding/type_table.h"

namespace binding {

/// The name that this module's opaque objects carry as a Python type; foreign modules recognise them by it.
enum class RuntimeVersion { Three = 3, Four = 4 };

/// Enters this module's types into the registry that the interpreter's other modules share, or publishes a registry
/// when there is none. False with a Python error pending. May run again, also after the interpreter was started anew.
bool joinTypeRegistry();

/// The runtime version of the registry that was joined.
RuntimeVersion joinedRuntimeVersion();

/// The record that stands for kPointerTypes[index] in this interpreter: this module's own or one found in the ring.
extern TypeRecord *registeredTypes[kPointerTypes.size() + 1];

/// The record of "pointer to T".
template <typename T>
TypeRecord *typeRecordOf() {
    return registeredTypes[Pointee<T>::pointer];
}

/// The last of the type's human names.
const char *shownName(const TypeRecord *type);

/// The cast by which a pointer of type `from` is accepted as `to`, or null.
CastRecord *findCast(const TypeRecord *from, TypeRecord *to);

/// This module's record, as other modules of the ring see it.
ModuleRecord &ownModuleRecord();

} // namespace binding
