// SPDX-License-Identifier: MIT
// Writes pictures of the overlay for people to look at.
//
//     canvas_preview sheet FILE.png [FRAME.png]    every golden state on black, white and a frame, in one picture
//     canvas_preview zoom STATE FACTOR FILE.png [FRAME.png]    one state on the three, enlarged

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "canvas/testing/png.h"
#include "canvas/testing/scenes.h"

namespace {

using canvas::testing::Picture;
using canvas::testing::Scene;

Picture blank(int width, int height, std::uint32_t color) {
    return {width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color)};
}

// What a renderer shows: straight alpha over an opaque picture.
std::uint32_t shown(std::uint32_t below, std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8)
        result |= ((pixel >> shift & 255) * alpha + (below >> shift & 255) * (255 - alpha) + 127) / 255 << shift;
    return result;
}

void place(Picture &sheet, const Picture &overlay, const Picture &background, int left, int top, int factor) {
    for (int y = 0; y < overlay.height * factor; ++y)
        for (int x = 0; x < overlay.width * factor; ++x) {
            if (left + x >= sheet.width || top + y >= sheet.height)
                continue;
            const int sx = x / factor;
            const int sy = y / factor;
            const auto below = background.pixels[static_cast<std::size_t>(sy % background.height) * background.width + sx % background.width];
            sheet.pixels[static_cast<std::size_t>(top + y) * sheet.width + left + x] =
                shown(below, overlay.pixels[static_cast<std::size_t>(sy) * overlay.width + sx]);
        }
}

// Bars from black to white and saturated colours, where no frame is given.
Picture testPattern() {
    Picture picture = blank(320, 240, 0);
    for (int y = 0; y < 240; ++y)
        for (int x = 0; x < 320; ++x) {
            const auto grey = static_cast<std::uint32_t>(x * 255 / 319);
            constexpr std::uint32_t kBars[] = {0xFF00A5E2, 0xFF65A5E2, 0xFFE14A4A, 0xFFE1E14A, 0xFF4AE14A, 0xFF808080};
            picture.pixels[static_cast<std::size_t>(y) * 320 + x] = y / 20 % 2 ? kBars[(x / 40 + y / 40) % 6] : 0xFF000000 | grey << 16 | grey << 8 | grey;
        }
    return picture;
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<Scene> scenes = canvas::testing::goldenScenes();
    const bool zoom = argc >= 5 && std::strcmp(argv[1], "zoom") == 0;
    const bool sheetOf = argc >= 3 && std::strcmp(argv[1], "sheet") == 0;
    if (!zoom && !sheetOf) {
        std::fprintf(stderr, "usage: canvas_preview sheet FILE.png [FRAME.png] | zoom STATE FACTOR FILE.png [FRAME.png]\n");
        return 2;
    }
    const int frameArgument = zoom ? 5 : 3;
    Picture frame = argc > frameArgument ? canvas::testing::readPicture(argv[frameArgument]) : testPattern();
    if (frame.pixels.empty())
        return 1;
    const Picture backgrounds[] = {blank(1, 1, 0xFF000000), blank(1, 1, 0xFFFFFFFF), std::move(frame)};

    if (zoom) {
        const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const Scene &scene) { return scene.name.find(argv[2]) != std::string::npos; });
        if (found == scenes.end())
            return 1;
        const int factor = std::max(1, std::atoi(argv[3]));
        const Picture overlay = canvas::testing::render(*found);
        Picture sheet = blank(overlay.width * factor * 3, overlay.height * factor, 0xFF404040);
        for (int i = 0; i < 3; ++i)
            place(sheet, overlay, backgrounds[i], i * overlay.width * factor, 0, factor);
        return canvas::testing::writePicture(argv[4], sheet) ? 0 : 1;
    }

    constexpr int kColumns = 2;
    constexpr int kGap = 6;
    std::vector<Picture> pictures;
    for (const Scene &scene : scenes)
        pictures.push_back(canvas::testing::render(scene));
    std::vector<int> tops;
    int top = kGap;
    const int cell = 3 * 240 + 4 * kGap;
    for (std::size_t i = 0; i < pictures.size(); i += kColumns) {
        tops.push_back(top);
        int height = 0;
        for (std::size_t k = i; k < std::min(i + kColumns, pictures.size()); ++k)
            height = std::max(height, pictures[k].height);
        top += height + kGap;
    }
    Picture sheet = blank(cell * kColumns, top, 0xFF404040);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        for (int b = 0; b < 3; ++b)
            place(sheet, pictures[i], backgrounds[b], static_cast<int>(i % kColumns) * cell + kGap + b * (pictures[i].width + kGap), tops[i / kColumns], 1);
    return canvas::testing::writePicture(argv[2], sheet) ? 0 : 1;
}
