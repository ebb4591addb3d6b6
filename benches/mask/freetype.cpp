// SPDX-License-Identifier: MIT
// FreeType's smooth rasterizer, spans by callback, a pixel in when it is covered by half or more; no surface.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "peers.h"

namespace bench {
namespace {

class FreeType : public Rasterizer {
  public:
    FreeType(int width, int height) : m_width(width), m_height(height) { FT_Init_FreeType(&m_library); }
    ~FreeType() override { FT_Done_FreeType(m_library); }

    void encode(const Outline &outline, Runs &runs) override {
        m_points.clear();
        m_tags.clear();
        for (const MPoint &point : outline) { // rows run upwards here
            m_points.push_back({FT_Pos{point.x} * 64, FT_Pos{m_height - point.y} * 64});
            m_tags.push_back(point.type == kAnchorPoint ? FT_CURVE_TAG_ON : FT_CURVE_TAG_CUBIC);
        }
        short end = static_cast<short>(m_points.size() - 1);
        FT_Outline shape{};
        shape.n_contours = 1;
        shape.n_points = static_cast<short>(m_points.size());
        shape.points = m_points.data();
        shape.tags = m_tags.data();
        shape.contours = &end;
        shape.flags = FT_OUTLINE_EVEN_ODD_FILL;
        runs.clear();
        m_runs = &runs;
        FT_Raster_Params parameters{};
        parameters.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT | FT_RASTER_FLAG_CLIP;
        parameters.clip_box = {0, 0, m_width, m_height};
        parameters.gray_spans = [](int y, int count, const FT_Span *spans, void *user) {
            static_cast<FreeType *>(user)->addSpans(y, count, spans);
        };
        parameters.user = this;
        FT_Outline_Render(m_library, &shape, &parameters);
    }

  private:
    void addSpans(int y, int count, const FT_Span *spans) {
        constexpr unsigned char kHalf = 128;
        const auto row = static_cast<std::uint16_t>(m_height - 1 - y);
        for (const FT_Span *span = spans; span != spans + count; ++span) {
            if (span->coverage < kHalf)
                continue;
            const auto column = static_cast<std::uint16_t>(span->x);
            if (!m_runs->empty() && m_runs->back().row == row &&
                m_runs->back().column + m_runs->back().length == column)
                m_runs->back().length = static_cast<std::uint16_t>(m_runs->back().length + span->len);
            else
                m_runs->push_back({column, row, span->len});
        }
    }

    FT_Library m_library = nullptr;
    int m_width;
    int m_height;
    std::vector<FT_Vector> m_points;
    std::vector<char> m_tags;
    Runs *m_runs = nullptr;
};

} // namespace

std::unique_ptr<Rasterizer> makeFreeType(int width, int height) {
    return std::make_unique<FreeType>(width, height);
}

} // namespace bench
