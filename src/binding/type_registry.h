// SPDX-License-Identifier: MIT
#pragma once

#include "binding/type_record.h"
#include "binding/type_table.h"

namespace binding {

/// Version of the runtime whose registry was joined. It decides by which name foreign modules know opaque objects.
enum class RuntimeVersion { Three = 3, Four = 4 };

/// This module's types within the registry that all modules of the interpreter share. Lives as long as the process.
class TypeRegistry {
  public:
    /// Enters the types into the registry, or publishes a registry when there is none. False with a Python error
    /// pending. May run again, also after the interpreter was started anew.
    bool join();

    RuntimeVersion runtimeVersion() const { return m_version; }
    /// The record that stands for kPointerTypes[index]: this module's own, or one that was there before.
    TypeRecord *type(std::size_t index) const { return m_types[index]; }
    /// This module as the others see it.
    ModuleRecord &module() { return m_module; }

  private:
    static constexpr std::size_t kCount = kPointerTypes.size();
    // A type's own cast, the equivalent ones, and the null type at the end.
    static constexpr std::size_t kCastsPerType = 4;

    void fillOwnRecords();
    TypeRecord *findInOthers(const char *name) const;
    TypeRecord *settle(std::size_t index);
    ModuleRecord *publishedHead();
    bool publish(ModuleRecord *head);
    bool isInRing(const ModuleRecord *head) const;

    TypeRecord *m_types[kCount + 1]{};
    TypeRecord m_ownTypes[kCount]{};
    TypeRecord *m_ownTypePointers[kCount + 1]{};
    CastRecord m_ownCasts[kCount][kCastsPerType]{};
    CastRecord *m_ownCastPointers[kCount + 1]{};
    ModuleRecord m_module{};
    RuntimeVersion m_version = RuntimeVersion::Four;
};

/// The module's one registry.
extern TypeRegistry typeRegistry;

/// The record of "pointer to T".
template <typename T>
TypeRecord *typeRecordOf() {
    return typeRegistry.type(Pointee<T>::pointer);
}

/// The last of the type's human names.
const char *shownName(const TypeRecord *type);

/// The cast by which a pointer of type `from` is accepted as `to`, or null.
CastRecord *findCast(const TypeRecord *from, TypeRecord *to);

} // namespace binding
