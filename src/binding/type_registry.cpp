// SPDX-License-Identifier: MIT
// The ring of modules. Whoever comes first publishes the ring's head in a small module of sys.modules; whoever comes
// later links itself in behind the head and uses the records that are there already, so that for each mangled name one
// record serves every module. A record is looked up by name in each module's sorted array.
//
// The small module has two attributes for one pointer: a CObject, which releases before 2.0.4 look for, and a capsule,
// which later ones do. Each knows its own only, and publishes a ring of its own when it finds none: so whatever ring is
// found here is published under both.

#include "binding/type_registry.h"

#include <algorithm>
#include <cstring>

#include "callback/python.h"

namespace binding {

constinit TypeRegistry typeRegistry;

namespace {

constexpr const char *kModuleName4 = "swig_runtime_data4";
constexpr const char *kModuleName3 = "swig_runtime_data3";
constexpr const char *kCapsuleAttribute = "type_pointer_capsule";
constexpr const char *kCapsuleName = "swig_runtime_data4.type_pointer_capsule";
constexpr const char *kCObjectAttribute = "type_pointer";

static_assert(std::is_sorted(kPointerTypes.begin(), kPointerTypes.end(),
                             [](const PointerType &left, const PointerType &right) {
                                 return std::string_view(left.name) < std::string_view(right.name);
                             }));

TypeRecord *findIn(const ModuleRecord &module, const char *name) {
    TypeRecord **const end = module.types + module.size;
    TypeRecord **const found =
        std::lower_bound(module.types, end, name, [](const TypeRecord *type, const char *wanted) {
            return std::strcmp(type->name, wanted) < 0;
        });
    return found != end && std::strcmp((*found)->name, name) == 0 ? *found : nullptr;
}

void pushCast(TypeRecord &type, CastRecord &cast) {
    cast.next = type.casts;
    if (type.casts)
        type.casts->previous = &cast;
    type.casts = &cast;
}

/// An attribute of a module in sys.modules (borrowed), or null. Nothing is imported.
PyObject *loadedAttribute(const char *module, const char *attribute) {
    PyObject *const found = PyDict_GetItemString(PyImport_GetModuleDict(), module);
    return found && PyModule_Check(found) ? PyDict_GetItemString(PyModule_GetDict(found), attribute) : nullptr;
}

ModuleRecord *headInCapsule() {
    PyObject *const capsule = loadedAttribute(kModuleName4, kCapsuleAttribute);
    return capsule && PyCapsule_IsValid(capsule, kCapsuleName)
               ? static_cast<ModuleRecord *>(PyCapsule_GetPointer(capsule, kCapsuleName))
               : nullptr;
}

ModuleRecord *headInCObject(const char *module) {
    PyObject *const object = loadedAttribute(module, kCObjectAttribute);
    return object && PyCObject_Check(object) ? static_cast<ModuleRecord *>(PyCObject_AsVoidPtr(object)) : nullptr;
}

} // namespace

void TypeRegistry::fillOwnRecords() {
    for (std::size_t index = 0; index < kCount; ++index) {
        m_ownTypes[index].name = kPointerTypes[index].name;
        m_ownTypes[index].text = kPointerTypes[index].text;
        m_ownTypePointers[index] = &m_ownTypes[index];
        m_ownCastPointers[index] = m_ownCasts[index];
        m_ownCasts[index][0].type = &m_ownTypes[index];
    }
    for (const EquivalentTypes &pair : kEquivalentTypes) {
        CastRecord *const casts = m_ownCasts[pair.to];
        CastRecord *const free =
            std::find_if(casts, casts + kCastsPerType, [](const CastRecord &cast) { return cast.type == nullptr; });
        free->type = &m_ownTypes[pair.from];
    }
    m_module = {m_types, kCount, &m_module, m_ownTypePointers, m_ownCastPointers, nullptr};
}

/// The record that one of the ring's other modules has under that name, or null.
TypeRecord *TypeRegistry::findInOthers(const char *name) const {
    for (const ModuleRecord *module = m_module.next; module != &m_module; module = module->next) {
        if (TypeRecord *const type = findIn(*module, name))
            return type;
    }
    return nullptr;
}

/// Decides which record stands for one of our types and gives it our casts.
TypeRecord *TypeRegistry::settle(std::size_t index) {
    TypeRecord *const own = &m_ownTypes[index];
    TypeRecord *const found = findInOthers(own->name);
    TypeRecord *const type = found ? found : own;
    for (CastRecord *cast = m_ownCasts[index]; cast->type; ++cast) {
        TypeRecord *const source = findInOthers(cast->type->name);
        if (source && !found)
            cast->type = source;
        else if (source && findCast(source, type))
            continue;
        pushCast(*type, *cast);
    }
    return type;
}

/// The head of the ring that the interpreter's modules have published, or null.
ModuleRecord *TypeRegistry::publishedHead() {
    m_version = RuntimeVersion::Four;
    if (ModuleRecord *const head = headInCapsule())
        return head;
    if (ModuleRecord *const head = headInCObject(kModuleName4))
        return head;
    ModuleRecord *const head = headInCObject(kModuleName3);
    if (head)
        m_version = RuntimeVersion::Three;
    return head;
}

/// Publishes the ring's head under each name that leads to none yet.
bool TypeRegistry::publish(ModuleRecord *head) {
    PyObject *const module = PyImport_AddModule(kModuleName4);
    if (!module)
        return false;
    if (!headInCapsule()) {
        PyObject *const capsule = PyCapsule_New(head, kCapsuleName, nullptr);
        if (!capsule || PyModule_AddObject(module, kCapsuleAttribute, capsule) != 0)
            return false;
    }
    if (!headInCObject(kModuleName4)) {
        // For releases that know no capsules. The interpreter may have been told to refuse these objects: then without.
        PyObject *const object = PyCObject_FromVoidPtr(head, nullptr);
        if (!object || PyModule_AddObject(module, kCObjectAttribute, object) != 0)
            PyErr_Clear();
    }
    return true;
}

bool TypeRegistry::isInRing(const ModuleRecord *head) const {
    const ModuleRecord *module = head;
    do {
        if (module == &m_module)
            return true;
        module = module->next;
    } while (module != head);
    return false;
}

bool TypeRegistry::join() {
    const bool firstTime = m_module.next == nullptr;
    if (firstTime)
        fillOwnRecords();
    ModuleRecord *const head = publishedHead();
    // Modules of a ring of version three look nowhere else.
    if (m_version == RuntimeVersion::Four && !publish(head ? head : &m_module))
        return false;
    if (head && !isInRing(head)) {
        m_module.next = head->next;
        head->next = &m_module;
    }
    // In an interpreter that was started anew the types are settled already, and other modules point to them.
    if (!firstTime)
        return true;
    for (std::size_t index = 0; index < kCount; ++index)
        m_types[index] = settle(index);
    return true;
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
