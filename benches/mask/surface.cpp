// SPDX-License-Identifier: MIT
// This project's own long way: clear, fill and scan the 24-bit surface.
#include "mask/encode.h"
#include "rasterizer.h"

namespace bench {
namespace {

class Surface : public Rasterizer {
  public:
    Surface(int width, int height) : m_width(width), m_height(height) {}

    void encode(const Outline &outline, Runs &runs) override {
        const Quill::EncodeJob job{outline.data(), static_cast<int>(outline.size()), m_width, m_height};
        const auto &found =
            Quill::encodeRuns({m_scratch, Quill::EncodeRoute::Surface, Quill::RasterEngine::Portable}, job);
        runs.assign(found.begin(), found.end());
    }

  private:
    int m_width;
    int m_height;
    Quill::RasterScratch m_scratch;
};

} // namespace

std::unique_ptr<Rasterizer> makeSurface(int width, int height) {
    return std::make_unique<Surface>(width, height);
}

} // namespace bench
