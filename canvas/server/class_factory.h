// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "platform/win_types.h"

namespace canvas {

/// Makes drawing components for the system. Windows only.
class CanvasClassFactory final : public IClassFactory {
  public:
    /// Made with one reference, which is the caller's.
    CanvasClassFactory();
    CanvasClassFactory(const CanvasClassFactory &) = delete;
    CanvasClassFactory &operator=(const CanvasClassFactory &) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, const GUID &iid, void **object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

    /// Whether nobody needs this library any more: no factory, no lock, no component.
    static bool canUnload();

  private:
    ~CanvasClassFactory();

    std::atomic<ULONG> m_references = 1;
};

} // namespace canvas
