// SPDX-License-Identifier: MIT
#include "canvas/surface.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "support/dib_surface.h"

namespace canvas {

Surface::~Surface() {
    release();
}

HRESULT Surface::resize(UINT width, UINT height) {
    if (!empty() && width == static_cast<UINT>(m_width) && height == static_cast<UINT>(m_height)) {
        clear();
        return S_OK;
    }
    release();
    if (width == 0 || height == 0)
        return S_OK;
    if (width > kLongestSide || height > kLongestSide)
        return E_INVALIDARG;

    void *bits = nullptr;
    if (!CreateDIBSection32(width, -static_cast<INT>(height), &m_bitmap, &bits))
        return E_OUTOFMEMORY;
    try {
        m_touched.resize(static_cast<int>(width), static_cast<int>(height));
    } catch (const std::bad_alloc &) {
        release();
        return E_OUTOFMEMORY;
    }
    m_pixels = static_cast<Pixel *>(bits);
    m_width = static_cast<int>(width);
    m_height = static_cast<int>(height);
    return S_OK;
}

void Surface::clear() {
    constexpr int kBlock = decltype(m_touched)::kBlockPixels;
    m_touched.drain([this](int y, int first, int end) {
        Pixel *const pixels = row(y);
        int x = first;
        for (; x < end && x + kBlock <= m_width; x += kBlock)
            std::memset(pixels + x, 0, kBlock * sizeof(Pixel));
        std::fill(pixels + x, pixels + std::max(x, std::min(end, m_width)), kTransparent);
    });
}

void Surface::release() {
    platform::deleteBitmap(m_bitmap);
    m_bitmap = nullptr;
    m_pixels = nullptr;
    m_width = 0;
    m_height = 0;
    m_touched.resize(0, 0);
}

} // namespace canvas
