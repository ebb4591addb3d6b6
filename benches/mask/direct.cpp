// SPDX-License-Identifier: MIT
// This project's encoder as everybody calls it.
#include "rasterizer.h"

namespace bench {
namespace {

class Direct : public Rasterizer {
  public:
    Direct(int width, int height) : m_width(width), m_height(height) {}

    void encode(const Outline &outline, Runs &runs) override {
        Quill::MaskHandler::ConvertPoints2Mask(outline.data(), static_cast<int>(outline.size()), m_width, m_height,
                                               false, nullptr, &runs);
    }

  private:
    int m_width;
    int m_height;
};

} // namespace

std::unique_ptr<Rasterizer> makeDirect(int width, int height) {
    return std::make_unique<Direct>(width, height);
}

} // namespace bench
