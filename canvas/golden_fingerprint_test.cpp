// SPDX-License-Identifier: MIT
// Every golden state has, on every platform, the very picture that is checked in. How to make new ones: docs/canvas.md.

#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "canvas/testing/fingerprint.h"
#include "canvas/testing/scenes.h"

namespace {

std::map<std::string, std::uint64_t> storedFingerprints() {
    std::map<std::string, std::uint64_t> stored;
    std::ifstream file(ORVANEL_CANVAS_GOLDEN "/fingerprints.txt");
    std::string name;
    std::string hash;
    while (file >> hash >> name)
        stored[name] = std::stoull(hash, nullptr, 16);
    return stored;
}

TEST(GoldenFingerprint, EveryStateLooksAsStored) {
    const auto stored = storedFingerprints();
    const auto scenes = canvas::testing::goldenScenes();
    EXPECT_EQ(stored.size(), scenes.size());
    for (const auto &scene : scenes) {
        const auto found = stored.find(scene.name);
        ASSERT_NE(found, stored.end()) << scene.name << " has no fingerprint";
        EXPECT_EQ(canvas::testing::fingerprint(canvas::testing::render(scene)), found->second) << scene.name;
    }
}

} // namespace
