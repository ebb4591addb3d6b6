// SPDX-License-Identifier: MIT
#pragma once

// The records through which extension modules of one interpreter share their pointer types.
//
// The layout is the one that SWIG's Python runtime publishes (runtime versions 3 and 4) and reads from every module it
// meets, so fields, their order and their widths are fixed. Records live as long as the process: modules are never
// unloaded, and every other module of the ring keeps pointers to them. All of it is guarded by the interpreter lock.

#include <cstddef>

#include "callback/python_fwd.h"

struct _typeobject;

namespace binding {

struct CastRecord;

/// One pointer type.
struct TypeRecord {
    const char *name; ///< mangled: what modules find each other's types by
    const char *text; ///< human names separated by '|', the last one is shown
    TypeRecord *(*dynamicCast)(void **);
    CastRecord *casts;   ///< the types that are accepted in place of this one, itself included
    void *classRecord;   ///< ClassRecord of the registered proxy class, or null
    int ownsClassRecord; ///< whether the runtime that publishes the ring may free() classRecord
};

/// "A pointer to `type` can be converted to the type that lists this record".
struct CastRecord {
    TypeRecord *type;
    void *(*convert)(void *pointer, int *newMemory); ///< null: the address stays as it is
    CastRecord *next;
    CastRecord *previous;
};

/// The types of one module; the modules of an interpreter form a ring.
struct ModuleRecord {
    TypeRecord **types; ///< sorted by strcmp of the mangled names, null-terminated
    std::size_t size;
    ModuleRecord *next;
    TypeRecord **ownTypes;
    CastRecord **ownCasts; ///< for each of ownTypes an array that ends with a null type
    void *clientData;
};

/// The proxy class in which pointers of a type are wrapped. The Python objects are owned references or null.
struct ClassRecord {
    PyObject *proxyClass;
    PyObject *makeInstance;      ///< proxyClass.__new__, or null for a class of the old style
    PyObject *instanceArguments; ///< what makeInstance is called with; the class itself for one of the old style
    PyObject *destroy;           ///< proxyClass.__swig_destroy__
    int destroyTakesTuple;       ///< 1: foreign runtimes call `destroy` as any other callable
    int implicitConversion;
    _typeobject *builtinType;
};

} // namespace binding
