// SPDX-License-Identifier: MIT
#include "platform/class_factories.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/fork.h"

namespace platform {
namespace {

struct Registration {
    GUID clsid;
    ClassFactory factory;
};

struct Registry {
    std::mutex mutex;
    std::vector<Registration> registrations;
};

Registry &registry() {
    // Never destroyed: components register from static constructors and objects may outlive static destruction.
    static Registry *const instance = [] {
        Registry *const made = new Registry;
        holdAcrossForks(made->mutex);
        return made;
    }();
    return *instance;
}

auto find(std::vector<Registration> &registrations, const GUID &clsid) {
    return std::find_if(registrations.begin(), registrations.end(), [&](const Registration &registration) {
        return std::memcmp(&registration.clsid, &clsid, sizeof clsid) == 0;
    });
}

} // namespace

ClassFactory findClassFactory(const GUID &clsid) {
    const std::lock_guard guard(registry().mutex);
    const auto found = find(registry().registrations, clsid);
    return found == registry().registrations.end() ? nullptr : found->factory;
}

ClassFactory registerClassFactory(const GUID &clsid, ClassFactory factory) {
    const std::lock_guard guard(registry().mutex);
    std::vector<Registration> &registrations = registry().registrations;
    const auto found = find(registrations, clsid);
    if (found != registrations.end())
        return std::exchange(found->factory, factory);
    registrations.push_back({clsid, factory});
    return nullptr;
}

} // namespace platform
