// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/types/overlay_canvas.h"

/// A drawing component without the operations that are used: what the tests' components have in common.
class BareCanvas : public OverlayCanvas {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &, void **object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }

    // Positions that nobody calls.
    HRESULT STDMETHODCALLTYPE Reserved4() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved7() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved8() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved9() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved10() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved11() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved12() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved13() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved14() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved15() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved16() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved17() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved18() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved19() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved20() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved21() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved22() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved23() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved25() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved28() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved30() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved31() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved32() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved33() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved34() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved35() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved36() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved37() override { return unexpected(); }
    HRESULT STDMETHODCALLTYPE Reserved38() override { return unexpected(); }

  protected:
    ~BareCanvas() = default;

    /// Called for each of those positions.
    virtual HRESULT unexpected() = 0;
};
