// SPDX-License-Identifier: MIT
// The ring of modules. Whoever comes first publishes the ring's head in a small module of sys.modules; whoever comes
// later links itself in behind the head and uses the records that are there already, so that for each mangled name one
// record serves every module. A record is looked up by name in each module's sorted array.

#include "binding/type_registry.h"

#include <algorithm>
#include <cstring>

#include "callback/python.h"

namespace binding {

TypeRecord *registeredTypes[kPointerTypes.size() + 1];

namespace {

constexpr std::size_t kTypeCount = kPointerTypes.size();
// A type's own cast, the equivalent ones, and the null type at the end.
constexpr std::size_t kCastsPerType = 4;

constexpr const char *kModuleName4 = "swig_runtime_data4";
constexpr const char *kModuleName3 = "swig_runtime_data3";
constexpr const char *kCapsuleAttribute = "type_pointer_capsule";
constexpr const char *kCapsuleName = "swig_runtime_data4.type_pointer_capsule";
constexpr const char *kCObjectAttribute = "type_pointer";

static_assert(std::is_sorted(kPointerTypes.begin(), kPointerTypes.end(),
                             [](const PointerType &left, const PointerType &right) {
                                 return std::string_view(left.name) < std::string_view(right.name);
                             }));

TypeRecord ownTypes[kTypeCount];
TypeRecord *ownTypePointers[kTypeCount + 1];
CastRecord ownCasts[kTypeCount][kCastsPerType];
CastRecord *ownCastPointers[kTypeCount + 1];
ModuleRecord ownModule;
RuntimeVersion runtimeVersion = RuntimeVersion::Four;

void fillOwnRecords() {
    for (std::size_t index = 0; index < kTypeCount; ++index) {
        ownTypes[index] = {kPointerTypes[index].name, kPointerTypes[index].text, nullptr, nullptr, nullptr, 0};
        ownTypePointers[index] = &ownTypes[index];
        ownCastPointers[index] = ownCasts[index];
        ownCasts[index][0].type = &ownTypes[index];
    }
    for (const EquivalentTypes &pair : kEquivalentTypes) {
        CastRecord *const free = std::find_if(ownCasts[pair.to], ownCasts[pair.to] + kCastsPerType,
                                              [](const CastRecord &cast) { return cast.type == nullptr; });
        free->type = &ownTypes[pair.from];
    }
    ownModule = {registeredTypes, kTypeCount, &ownModule, ownTypePointers, ownCastPointers, nullptr};
}

TypeRecord *findIn(const ModuleRecord &module, const char *name) {
    TypeRecord **const end = module.types + module.size;
    TypeRecord **const found =
        std::lower_bound(module.types, end, name, [](const TypeRecord *type, const char *wanted) {
            return std::strcmp(type->name, wanted) < 0;
        });
    return found != end && std::strcmp((*found)->name, name) == 0 ? *found : nullptr;
}

/// The record that one of the ring's other modules has under that name, or null.
TypeRecord *findInOthers(const char *name) {
    for (const ModuleRecord *module = ownModule.next; module != &ownModule; module = module->next) {
        if (TypeRecord *const type = findIn(*module, name))
            return type;
    }
    return nullptr;
}

void pushCast(TypeRecord &type, CastRecord &cast) {
    cast.next = type.casts;
    if (type.casts)
        type.casts->previous = &cast;
    type.casts = &cast;
}

/// Decides which record stands for one of our types and gives it our casts.
TypeRecord *settleType(std::size_t index) {
    TypeRecord *const own = &ownTypes[index];
    TypeRecord *const found = findInOthers(own->name);
    TypeRecord *const type = found ? found : own;
    for (CastRecord *cast = ownCasts[index]; cast->type; ++cast) {
        TypeRecord *const source = findInOthers(cast->type->name);
        if (source && !found)
            cast->type = source;
        else if (source && findCast(source, type))
            continue;
        pushCast(*type, *cast);
    }
    return type;
}

void settleTypes() {
    for (std::size_t index = 0; index < kTypeCount; ++index)
        registeredTypes[index] = settleType(index);
    registeredTypes[kTypeCount] = nullptr;
}

/// An attribute of a module in sys.modules (borrowed), or null. Nothing is imported.
PyObject *loadedAttribute(const char *module, const char *attribute) {
    PyObject *const found = PyDict_GetItemString(PyImport_GetModuleDict(), module);
    return found && PyModule_Check(found) ? PyDict_GetItemString(PyModule_GetDict(found), attribute) : nullptr;
}

ModuleRecord *headInCObject(const char *module) {
    PyObject *const object = loadedAttribute(module, kCObjectAttribute);
    return object && PyCObject_Check(object) ? static_cast<ModuleRecord *>(PyCObject_AsVoidPtr(object)) : nullptr;
}

/// The head of the ring that the interpreter's modules have published, or null.
ModuleRecord *publishedHead() {
    runtimeVersion = RuntimeVersion::Four;
    PyObject *const capsule = loadedAttribute(kModuleName4, kCapsuleAttribute);
    if (capsule && PyCapsule_IsValid(capsule, kCapsuleName))
        return static_cast<ModuleRecord *>(PyCapsule_GetPointer(capsule, kCapsuleName));
    if (ModuleRecord *const head = headInCObject(kModuleName4))
        return head;
    ModuleRecord *const head = headInCObject(kModuleName3);
    if (head)
        runtimeVersion = RuntimeVersion::Three;
    return head;
}

bool publish() {
    PyObject *const module = PyImport_AddModule(kModuleName4);
    if (!module)
        return false;
    PyObject *const capsule = PyCapsule_New(&ownModule, kCapsuleName, nullptr);
    return capsule && PyModule_AddObject(module, kCapsuleAttribute, capsule) == 0;
}

bool isInRing(const ModuleRecord *head) {
    const ModuleRecord *module = head;
    do {
        if (module == &ownModule)
            return true;
        module = module->next;
    } while (module != head);
    return false;
}

} // namespace

bool joinTypeRegistry() {
    const bool firstTime = ownModule.next == nullptr;
    if (firstTime)
        fillOwnRecords();
    ModuleRecord *const head = publishedHead();
    if (!head && !publish())
        return false;
    if (head && !isInRing(head)) {
        ownModule.next = head->next;
        head->next = &ownModule;
    }
    // In an interpreter that was started anew the types are settled already, and other modules point to them.
    if (firstTime)
        settleTypes();
    return true;
}

RuntimeVersion joinedRuntimeVersion() {
    return runtimeVersion;
}

ModuleRecord &ownModuleRecord() {
    return ownModule;
}

const char *shownName(const TypeRecord *type) {
    if (!type->text)
        return type->name;
    const char *const separator = std::strrchr(type->text, '|');
    return separator ? separator + 1 : type->text;
}

CastRecord *findCast(const TypeRecord *from, TypeRecord *to) {
    for (CastRecord *cast = to->casts; cast; cast = cast->next) {
        if (cast->type != from && std::strcmp(cast->type->name, from->name) != 0)
            continue;
        if (cast != to->casts) {
            // The next look-up is likely for the same type.
            cast->previous->next = cast->next;
            if (cast->next)
                cast->next->previous = cast->previous;
            cast->previous = nullptr;
            cast->next = to->casts;
            to->casts->previous = cast;
            to->casts = cast;
        }
        return cast;
    }
    return nullptr;
}

} // namespace binding
