// SPDX-License-Identifier: MIT
#include "canvas/surface.h"

#include <cstring>

#include "mask/no_throw.h"
#include "platform/prefetch.h"
#include "support/dib_surface.h"

namespace canvas {
namespace {

// Pixels cleared at once. What lies behind a span is cleared with it: either it is transparent already or it will be.
constexpr std::size_t kBlock = 8;
static_assert(kBlock <= Surface::kSpill);
// Spans between asking for a span's pixels and clearing them.
constexpr std::ptrdiff_t kSpansAhead = 16;

} // namespace

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

    const HRESULT result =
        Quill::withoutThrowing([this] { m_touched.room(kMostSpans + std::size_t{kMostSpansAtOnce}); });
    if (FAILED(result))
        return result;
    // Rows enough for kSpill pixels lie behind the last one.
    const UINT rows = height + (kSpill + width - 1) / width;
    void *bits = nullptr;
    if (!CreateDIBSection32(width, -static_cast<INT>(rows), m_bitmap.put(), &bits))
        return E_OUTOFMEMORY;
    m_pixels = static_cast<Pixel *>(bits);
    m_width = static_cast<int>(width);
    m_height = static_cast<int>(height);
    return S_OK;
}

void Surface::clear() {
    if (m_allTouched) {
        std::memset(m_pixels, 0, byteCount());
    } else {
        const Span *const spansEnd = m_touched.end();
        for (const Span &span : m_touched) {
            if (spansEnd - &span > kSpansAhead)
                platform::prefetch(m_pixels + (&span)[kSpansAhead].first);
            Pixel *pixels = m_pixels + span.first;
            if (span.count > 4 * kBlock) {
                std::memset(pixels, 0, span.count * sizeof(Pixel));
                continue;
            }
            for (Pixel *const end = pixels + span.count; pixels < end; pixels += kBlock)
                std::memset(pixels, 0, kBlock * sizeof(Pixel));
        }
    }
    m_touched.clear();
    m_allTouched = false;
}

void Surface::release() {
    m_bitmap.reset();
    m_pixels = nullptr;
    m_width = 0;
    m_height = 0;
    m_touched.clear();
    m_allTouched = false;
}

} // namespace canvas
