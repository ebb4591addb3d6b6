// SPDX-License-Identifier: MIT
#include "platform/com.h"

#include <objbase.h>

#include "platform/class_factories.h"

namespace platform {

HRESULT createInstance(const GUID &clsid, const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (const ClassFactory factory = findClassFactory(clsid))
        return factory(iid, object);
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, object);
}

} // namespace platform
