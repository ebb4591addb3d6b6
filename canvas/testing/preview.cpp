// SPDX-License-Identifier: MIT
// Pictures of the overlay's golden states.
//
//     canvas_preview sheet FILE.png [FRAME.png]             all states on black, white and a frame, in one picture
//     canvas_preview zoom STATE FACTOR FILE.png [FRAME.png] one state on the three, enlarged
//     canvas_preview golden FOLDER                          the files that tests compare with
//
// Without a frame a test pattern of greys and saturated bars stands in.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <string>
#include <vector>

#include "canvas/testing/fingerprint.h"
#include "canvas/testing/png.h"
#include "canvas/testing/scenes.h"

namespace {

using canvas::testing::Picture;
using canvas::testing::Scene;

constexpr std::uint32_t kPaper = 0xFF404040;

Picture blank(int width, int height, std::uint32_t color) {
    return {width, height,
            std::vector<std::uint32_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color)};
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
            const auto below = background.pixels[static_cast<std::size_t>(sy % background.height) * background.width +
                                                 sx % background.width];
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
            picture.pixels[static_cast<std::size_t>(y) * 320 + x] =
                y / 20 % 2 ? kBars[(x / 40 + y / 40) % 6] : 0xFF000000 | grey << 16 | grey << 8 | grey;
        }
    return picture;
}

int writeZoom(const Scene &scene, int factor, const char *file, const std::array<Picture, 3> &backgrounds) {
    const Picture overlay = canvas::testing::render(scene);
    Picture sheet = blank(overlay.width * factor * 3, overlay.height * factor, kPaper);
    for (int i = 0; i < 3; ++i)
        place(sheet, overlay, backgrounds[static_cast<std::size_t>(i)], i * overlay.width * factor, 0, factor);
    return canvas::testing::writePicture(file, sheet) ? 0 : 1;
}

// Three backgrounds side by side for each state, as many states in a row as fit.
int writeSheet(const std::vector<Scene> &scenes, const char *file, const std::array<Picture, 3> &backgrounds) {
    constexpr int kWidth = 1016;
    constexpr int kGap = 6;
    Picture sheet = blank(kWidth, 10000, kPaper);
    int left = kGap;
    int top = kGap;
    int rowHeight = 0;
    for (const Scene &scene : scenes) {
        const Picture overlay = canvas::testing::render(scene);
        const int width = 3 * overlay.width + 2;
        if (left + width + kGap > kWidth && left > kGap) {
            left = kGap;
            top += rowHeight + kGap;
            rowHeight = 0;
        }
        for (int i = 0; i < 3; ++i)
            place(sheet, overlay, backgrounds[static_cast<std::size_t>(i)], left + i * (overlay.width + 1), top, 1);
        left += width + kGap;
        rowHeight = std::max(rowHeight, overlay.height);
    }
    sheet.height = top + rowHeight + kGap;
    sheet.pixels.resize(static_cast<std::size_t>(sheet.width) * static_cast<std::size_t>(sheet.height));
    return canvas::testing::writePicture(file, sheet) ? 0 : 1;
}

int writeGolden(const std::vector<Scene> &scenes, const std::string &folder) {
    std::ofstream fingerprints(folder + "/fingerprints.txt");
    for (const Scene &scene : scenes) {
        const Picture picture = canvas::testing::render(scene);
        if (!canvas::testing::writePicture(folder + "/" + scene.name + ".png", picture))
            return 1;
        fingerprints << std::hex << std::setw(16) << std::setfill('0') << canvas::testing::fingerprint(picture) << ' '
                     << scene.name << '\n';
    }
    return fingerprints.good() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::vector<Scene> scenes = canvas::testing::goldenScenes();
    const auto backgrounds = [&](std::size_t argument) {
        Picture frame = arguments.size() > argument ? canvas::testing::readPicture(arguments[argument]) : testPattern();
        if (frame.pixels.empty())
            frame = blank(1, 1, 0xFF808080);
        return std::array<Picture, 3>{blank(1, 1, 0xFF000000), blank(1, 1, 0xFFFFFFFF), std::move(frame)};
    };
    if (arguments.size() >= 2 && arguments[0] == "sheet")
        return writeSheet(scenes, arguments[1].c_str(), backgrounds(2));
    if (arguments.size() == 2 && arguments[0] == "golden")
        return writeGolden(scenes, arguments[1]);
    if (arguments.size() >= 4 && arguments[0] == "zoom")
        for (const Scene &scene : scenes)
            if (scene.name.find(arguments[1]) != std::string::npos)
                return writeZoom(scene, std::max(1, std::atoi(arguments[2].c_str())), arguments[3].c_str(),
                                 backgrounds(4));
    std::fprintf(stderr,
                 "usage: canvas_preview sheet FILE.png [FRAME.png] | zoom STATE FACTOR FILE.png [FRAME.png] | golden "
                 "FOLDER\n");
    return 2;
}
