// SPDX-License-Identifier: MIT
// These tests are about the portable engine, also where the platform has one of its own: recorded pixels are not those
// of every version of every platform. Tests of the platform's engine ask for it by name.

#include <gtest/gtest.h>

#include <optional>

#include "mask/encode.h"

namespace Quill {
namespace {

class PortableEngine : public testing::Environment {
  public:
    void SetUp() override { m_override.emplace(RasterEngine::Portable); }
    void TearDown() override { m_override.reset(); }

  private:
    std::optional<RasterEngineOverride> m_override;
};

[[maybe_unused]] testing::Environment *const environment = testing::AddGlobalTestEnvironment(new PortableEngine);

TEST(RasterEngine, OverridesNestAndEnd) {
    EXPECT_EQ(defaultRasterEngine(), RasterEngine::Portable);
    {
        const RasterEngineOverride native(RasterEngine::Native);
        EXPECT_EQ(defaultRasterEngine(), RasterEngine::Native);
    }
    EXPECT_EQ(defaultRasterEngine(), RasterEngine::Portable);
}

TEST(RasterEngine, RunsAndSamplesAreThePortableOnesWhoeverFillsSurfaces) {
    const RasterEngineOverride native(RasterEngine::Native);
#ifdef ORVANEL_NATIVE_MASKS
    EXPECT_EQ(maskEngine(), RasterEngine::Native);
    EXPECT_EQ(defaultEncodeRoute(), EncodeRoute::Surface);
#else
    EXPECT_EQ(maskEngine(), RasterEngine::Portable);
    EXPECT_EQ(defaultEncodeRoute(), EncodeRoute::Direct);
#endif
}

} // namespace
} // namespace Quill
