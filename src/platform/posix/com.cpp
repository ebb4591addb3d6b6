// SPDX-License-Identifier: MIT
#include "platform/com.h"

#include "platform/class_factories.h"

namespace platform {

HRESULT createInstance(const GUID &clsid, const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    const ClassFactory factory = findClassFactory(clsid);
    return factory ? factory(iid, object) : REGDB_E_CLASSNOTREG;
}

} // namespace platform
