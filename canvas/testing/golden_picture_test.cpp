// SPDX-License-Identifier: MIT
// The golden states against the checked-in PNG files, pixel by pixel.

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "canvas/testing/png.h"
#include "canvas/testing/scenes.h"

namespace {

using canvas::testing::Picture;

class GoldenPicture : public testing::TestWithParam<canvas::testing::Scene> {};

TEST_P(GoldenPicture, LooksAsStored) {
    const auto &scene = GetParam();
    const Picture stored = canvas::testing::readPicture(std::string(ORVANEL_CANVAS_GOLDEN "/") + scene.name + ".png");
    const Picture drawn = canvas::testing::render(scene);
    ASSERT_EQ(drawn.width, stored.width) << "no such picture?";
    ASSERT_EQ(drawn.height, stored.height);
    int different = 0;
    for (std::size_t i = 0; i < drawn.pixels.size(); ++i) {
        if (drawn.pixels[i] == stored.pixels[i])
            continue;
        if (++different == 1)
            ADD_FAILURE() << "first at column " << i % static_cast<std::size_t>(drawn.width) << ", row "
                          << i / static_cast<std::size_t>(drawn.width) << ": " << std::hex << drawn.pixels[i]
                          << " instead of " << stored.pixels[i];
    }
    EXPECT_EQ(different, 0);
}

INSTANTIATE_TEST_SUITE_P(States, GoldenPicture, testing::ValuesIn(canvas::testing::goldenScenes()),
                         [](const auto &state) { return "State" + state.param.name; });

} // namespace
