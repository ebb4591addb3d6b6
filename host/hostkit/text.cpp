// SPDX-License-Identifier: MIT
//
// Labels for contact sheets in a pixel font of capitals, digits and a few signs. A contact sheet needs one size and no
// shaping; a font library and a font file on every machine would be a high price for that.
#include "hostkit/text.h"

#include <cctype>
#include <cstddef>
#include <string_view>

namespace hostkit {
namespace {

constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 7;
constexpr int kAdvance = kGlyphWidth + 1;
constexpr std::size_t kGlyphsPerBand = 16;

/// The glyphs in the order of the sheet below.
constexpr std::string_view kGlyphs = "0123456789.,:-/%ABCDEFGHIJKLMNOPQRSTUVWXYZ()+?";

/// Bands of sixteen glyphs, seven rows each, drawn as they look.
constexpr std::string_view kSheet[] = {
    " ###    #    ###   ###     #  #####   ##  #####  ###   ###                              # ##  #",
    "#   #  ##   #   # #   #   ##  #      #        # #   # #   #              ##             # ##  #",
    "#  ##   #       #     #  # #  ####  #        #  #   # #   #              ##            #     # ",
    "# # #   #      #    ##  #  #      # ####    #    ###   ####                   #####   #     #  ",
    "##  #   #     #       # #####     # #   #   #   #   #     #        ##    ##          #     #   ",
    "#   #   #    #    #   #    #  #   # #   #   #   #   #    #   ##     #    ##         #     #  ##",
    " ###   ###  #####  ###     #   ###   ###    #    ###   ##    ##    #                #     #  ##",
    " ###  ####   ###  ####  ##### #####  ###  #   #  ###      # #   # #     #   # #   #  ###  #### ",
    "#   # #   # #   # #   # #     #     #   # #   #   #       # #  #  #     ## ## ##  # #   # #   #",
    "#   # #   # #     #   # #     #     #     #   #   #       # # #   #     # # # # # # #   # #   #",
    "##### ####  #     #   # ####  ####  # ### #####   #       # ##    #     # # # #  ## #   # #### ",
    "#   # #   # #     #   # #     #     #   # #   #   #       # # #   #     #   # #   # #   # #    ",
    "#   # #   # #   # #   # #     #     #   # #   #   #   #   # #  #  #     #   # #   # #   # #    ",
    "#   # ####   ###  ####  ##### #      ###  #   #  ###   ###  #   # ##### #   # #   #  ###  #    ",
    " ###  ####   #### ##### #   # #   # #   # #   # #   # #####    #   #           ###             ",
    "#   # #   # #       #   #   # #   # #   # #   # #   #     #   #     #     #   #   #            ",
    "#   # #   # #       #   #   # #   # #   #  # #   # #     #   #       #    #       #            ",
    "#   # ####   ###    #   #   # #   # # # #   #     #     #    #       #  #####    #             ",
    "# # # # #       #   #   #   # #   # # # #  # #    #    #     #       #    #     #              ",
    "#  #  #  #      #   #   #   #  # #  ## ## #   #   #   #       #     #     #                    ",
    " ## # #   # ####    #    ###    #   #   # #   #   #   #####    #   #            #              ",
};

bool isInk(std::size_t glyph, int x, int y) {
    const std::string_view row = kSheet[glyph / kGlyphsPerBand * kGlyphHeight + static_cast<std::size_t>(y)];
    return row[glyph % kGlyphsPerBand * kAdvance + static_cast<std::size_t>(x)] == '#';
}

void fillSquare(Image &image, int left, int top, int size, const std::uint8_t (&bgr)[3]) {
    for (int y = top; y < top + size; ++y)
        for (int x = left; x < left + size; ++x)
            if (x >= 0 && y >= 0 && x < image.width() && y < image.height())
                for (int channel = 0; channel < 3; ++channel)
                    image.row(y)[x * 4 + channel] = bgr[channel];
}

} // namespace

int textWidth(const std::string &text, int scale) {
    return text.empty() ? 0 : (static_cast<int>(text.size()) * kAdvance - 1) * scale;
}

int textHeight(int scale) {
    return kGlyphHeight * scale;
}

void drawText(Image &image, int left, int top, const std::string &text, int scale, std::uint32_t rgb) {
    const std::uint8_t bgr[3] = {static_cast<std::uint8_t>(rgb), static_cast<std::uint8_t>(rgb >> 8),
                                 static_cast<std::uint8_t>(rgb >> 16)};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int letter = std::toupper(static_cast<unsigned char>(text[i]));
        if (letter == ' ')
            continue;
        std::size_t glyph = kGlyphs.find(static_cast<char>(letter));
        if (glyph == std::string_view::npos)
            glyph = kGlyphs.find('?');
        const int origin = left + static_cast<int>(i) * kAdvance * scale;
        for (int y = 0; y < kGlyphHeight; ++y)
            for (int x = 0; x < kGlyphWidth; ++x)
                if (isInk(glyph, x, y))
                    fillSquare(image, origin + x * scale, top + y * scale, scale, bgr);
    }
}

} // namespace hostkit
