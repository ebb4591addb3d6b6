// SPDX-License-Identifier: MIT
// The four functions by which the system and regsvr32 know an in-process server. OrvanelCanvas.def exports them.

#include <new>

#include "canvas/server/class_factory.h"
#include "overlay/types/overlay_canvas.h"
#include "platform/com_server.h"

extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(const GUID &clsid, const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid != CLSID_OverlayCanvas)
        return CLASS_E_CLASSNOTAVAILABLE;
    auto *const factory = new (std::nothrow) canvas::CanvasClassFactory;
    if (!factory)
        return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
}

extern "C" HRESULT STDMETHODCALLTYPE DllCanUnloadNow() {
    return canvas::CanvasClassFactory::canUnload() ? S_OK : S_FALSE;
}

extern "C" HRESULT STDMETHODCALLTYPE DllRegisterServer() {
    return platform::registerServer(CLSID_OverlayCanvas, L"Orvanel overlay canvas");
}

extern "C" HRESULT STDMETHODCALLTYPE DllUnregisterServer() {
    return platform::unregisterServer(CLSID_OverlayCanvas);
}
