// SPDX-License-Identifier: MIT
#include "platform/png_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/halftone_palette.h"
#include "platform/png_read_back_test.h"
#include "platform/test_path.h"

namespace platform {
namespace {

/// A folder of this test's own, gone with it.
class PngFileTest : public testing::Test {
  protected:
    PngFileTest() : m_folder(ownTemporaryPath("orvanel_png_")) {
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
    }
    ~PngFileTest() override { std::filesystem::remove_all(m_folder); }

    std::string path(const char *name = "picture.png") const { return (m_folder / name).string(); }
    std::ptrdiff_t fileCount() const {
        return std::distance(std::filesystem::directory_iterator(m_folder), std::filesystem::directory_iterator());
    }

    std::filesystem::path m_folder;
};

/// The chunks of a PNG file by type; of several with one type the first.
std::map<std::string, std::string> chunksOf(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::map<std::string, std::string> chunks;
    for (std::size_t at = 8; at + 12 <= bytes.size();) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(bytes[at + i]);
        chunks.emplace(bytes.substr(at + 4, 4), bytes.substr(at + 8, length));
        at += length + 12;
    }
    return chunks;
}

std::string bytesOf(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

TEST_F(PngFileTest, HalftonePaletteHasGdiPlusColours) {
    EXPECT_EQ(halftoneColour(0), 0xFF000000U);
    EXPECT_EQ(halftoneColour(1), 0xFF800000U);
    EXPECT_EQ(halftoneColour(2), 0xFF008000U);
    EXPECT_EQ(halftoneColour(4), 0xFF000080U);
    EXPECT_EQ(halftoneColour(7), 0xFF808080U);
    EXPECT_EQ(halftoneColour(8), 0xFFC0C0C0U);
    EXPECT_EQ(halftoneColour(9), 0xFFFF0000U);
    EXPECT_EQ(halftoneColour(15), 0xFFFFFFFFU);
    EXPECT_EQ(halftoneColour(16), 0U);
    EXPECT_EQ(halftoneColour(39), 0U);
    EXPECT_EQ(halftoneColour(40), 0xFF000000U);
    EXPECT_EQ(halftoneColour(41), 0xFF000033U);
    EXPECT_EQ(halftoneColour(46), 0xFF003300U);
    EXPECT_EQ(halftoneColour(76), 0xFF330000U);
    EXPECT_EQ(halftoneColour(255), 0xFFFFFFFFU);
}

TEST_F(PngFileTest, Bgr24KeepsEveryPixelAndSkipsThePadding) {
    // 3 pixels a row: 9 bytes and 3 of padding, which must not show.
    const std::vector<std::uint8_t> data = {1,  2,  3,  4,  5,  6,  7,  8,  9,  99, 99, 99,
                                            10, 20, 30, 40, 50, 60, 70, 80, 90, 99, 99, 99};
    ASSERT_TRUE(writePng(path().c_str(), PngPixels::Bgr24, 3, 2, 12, data.data()));
    const DecodedPng picture = readBackPng(path());
    EXPECT_EQ(picture.width, 3);
    EXPECT_EQ(picture.height, 2);
    EXPECT_EQ(picture.pixels,
              (std::vector<std::uint32_t>{0xFF030201, 0xFF060504, 0xFF090807, 0xFF1E140A, 0xFF3C3228, 0xFF5A5046}));
    EXPECT_EQ(chunksOf(path())["IHDR"].substr(8, 2), std::string("\x08\x02", 2)) << "8 bits, true colour";
}

TEST_F(PngFileTest, Bgra32KeepsStraightAlpha) {
    const std::vector<std::uint8_t> data = {255, 128, 64, 0, 255, 128, 64, 1, 10, 20, 30, 128, 1, 2, 3, 255};
    ASSERT_TRUE(writePng(path().c_str(), PngPixels::Bgra32, 2, 2, 8, data.data()));
    EXPECT_EQ(readBackPng(path()).pixels, (std::vector<std::uint32_t>{0x004080FF, 0x014080FF, 0x801E140A, 0xFF030201}));
    EXPECT_EQ(chunksOf(path())["IHDR"].substr(8, 2), std::string("\x08\x06", 2)) << "8 bits, true colour with alpha";
}

TEST_F(PngFileTest, Indexed8CarriesTheHalftonePaletteWithItsTransparentEntries) {
    std::vector<std::uint8_t> data(256);
    for (std::size_t index = 0; index < data.size(); ++index)
        data[index] = static_cast<std::uint8_t>(index);
    ASSERT_TRUE(writePng(path().c_str(), PngPixels::Indexed8, 16, 16, 16, data.data()));

    auto chunks = chunksOf(path());
    EXPECT_EQ(chunks["IHDR"], std::string("\0\0\0\x10\0\0\0\x10\x08\x03\0\0\0", 13))
        << "16 x 16, 8 bits, colour type 3";
    std::string colours;
    std::string alphas;
    for (std::uint32_t index = 0; index < 256; ++index) {
        for (const int shift : {16, 8, 0})
            colours.push_back(static_cast<char>(halftoneColour(index) >> shift & 0xFF));
        alphas.push_back(static_cast<char>(halftoneColour(index) >> 24));
    }
    EXPECT_EQ(chunks["PLTE"], colours);
    // Entries behind the last transparent one may be left out: they are opaque.
    std::string transparency = chunks["tRNS"];
    transparency.resize(256, '\xFF');
    EXPECT_EQ(transparency, alphas);

    const auto palette = halftonePalette();
    EXPECT_EQ(readBackPng(path()).pixels, std::vector<std::uint32_t>(palette.begin(), palette.end()));
}

TEST_F(PngFileTest, RefusesLayoutsThatNoBitmapHas) {
    const std::vector<std::uint8_t> data(64);
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgr24, 0, 2, 12, data.data()));
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgr24, 2, 0, 12, data.data()));
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgr24, -1, 2, 12, data.data()));
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgr24, 3, 2, 9, data.data())) << "a stride is a multiple of 4";
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgr24, 5, 2, 12, data.data())) << "a row must fit the stride";
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgra32, 2, 2, -8, data.data()));
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgra32, 2, 2, 8, nullptr));
    EXPECT_FALSE(writePng(nullptr, PngPixels::Bgra32, 2, 2, 8, data.data()));
    EXPECT_EQ(fileCount(), 0);
}

TEST_F(PngFileTest, AFailedSaveLeavesNothingBehind) {
    const std::vector<std::uint8_t> data(64);
    EXPECT_FALSE(writePng(path("missing/picture.png").c_str(), PngPixels::Bgra32, 2, 2, 8, data.data()));
    EXPECT_FALSE(writePng("", PngPixels::Bgra32, 2, 2, 8, data.data()));

    // The target is a folder: the picture can be written beside it but never take its name.
    std::filesystem::create_directory(path("folder.png"));
    EXPECT_FALSE(writePng(path("folder.png").c_str(), PngPixels::Bgra32, 2, 2, 8, data.data()));
    EXPECT_EQ(fileCount(), 1);
    EXPECT_TRUE(std::filesystem::is_empty(path("folder.png")));
}

TEST_F(PngFileTest, ReplacesAnEarlierPictureWhole) {
    const std::vector<std::uint8_t> data(64, 0xFF);
    { std::ofstream(path(), std::ios::binary) << "an earlier file, longer than the picture" << std::string(5000, '.'); }
    EXPECT_FALSE(writePng(path().c_str(), PngPixels::Bgra32, 2, 2, 6, data.data()));
    EXPECT_EQ(bytesOf(path()).size(), 5040U) << "a refused picture leaves the earlier file alone";
    ASSERT_TRUE(writePng(path().c_str(), PngPixels::Bgra32, 2, 2, 8, data.data()));
    EXPECT_EQ(readBackPng(path()).pixels, std::vector<std::uint32_t>(4, 0xFFFFFFFFU));
    EXPECT_EQ(fileCount(), 1);
}

} // namespace
} // namespace platform
