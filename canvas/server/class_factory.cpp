// SPDX-License-Identifier: MIT
#include "canvas/server/class_factory.h"

#include "canvas/canvas_component.h"

namespace canvas {
namespace {

/// Factories and locks that keep the library.
std::atomic<long> g_holds = 0;

} // namespace

CanvasClassFactory::CanvasClassFactory() {
    ++g_holds;
}

CanvasClassFactory::~CanvasClassFactory() {
    --g_holds;
}

bool CanvasClassFactory::canUnload() {
    return g_holds == 0 && CanvasComponent::liveCount() == 0;
}

HRESULT CanvasClassFactory::QueryInterface(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IClassFactory *>(this);
    return S_OK;
}

ULONG CanvasClassFactory::AddRef() {
    return ++m_references;
}

ULONG CanvasClassFactory::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT CanvasClassFactory::CreateInstance(IUnknown *outer, const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : createCanvasComponent(iid, object);
}

HRESULT CanvasClassFactory::LockServer(BOOL lock) {
    g_holds += lock ? 1 : -1;
    return S_OK;
}

} // namespace canvas
