// SPDX-License-Identifier: MIT
// The two picture files of the system, read back by another decoder: the fill's debugging aid and DumpBitmap's.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "callback/py_ref.h"
#include "mask/mask_handler.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "platform/png_read_back_test.h"
#include "platform/test_path.h"

namespace {

using platform::DecodedPng;
using platform::readBackPng;

constexpr std::uint32_t kInside = 0xFF0000FF;
constexpr std::uint32_t kOutside = 0xFF000000;

/// A folder of this test's own to stand in while it lasts.
class PictureFiles : public testing::Test {
  protected:
    PictureFiles()
        : m_folder(platform::ownTemporaryPath("orvanel_pictures_")), m_before(std::filesystem::current_path()) {
        std::filesystem::create_directories(m_folder);
        std::filesystem::current_path(m_folder);
    }
    ~PictureFiles() override {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_folder);
    }

    const std::filesystem::path m_folder;
    const std::filesystem::path m_before;
};

class DumpFlag : public PictureFiles {
  protected:
    static constexpr int kWidth = 10;
    static constexpr int kHeight = 6;
    static constexpr int kStride = 32;
    /// Everywhere but on Windows this is the name of a file in the folder.
    static constexpr const char *kPath = "D:\\Mask.png";

    DumpFlag() { std::filesystem::remove(kPath, m_error); }
    ~DumpFlag() override { std::filesystem::remove(kPath, m_error); }

    /// A rectangle from column 2 to column 7 and from row 1 to row 3, filled.
    HRESULT fill(bool dump) {
        const auto straight = [](MPoint a, MPoint b, double part) {
            return MPoint{kControlPoint,
                          a.x + static_cast<int>(part * (b.x - a.x)),
                          a.y + static_cast<int>(part * (b.y - a.y)),
                          0,
                          0,
                          0};
        };
        const std::array<MPoint, 4> corners = {MPoint{0, 2, 1, 0, 0, 0}, MPoint{0, 8, 1, 0, 0, 0},
                                               MPoint{0, 8, 4, 0, 0, 0}, MPoint{0, 2, 4, 0, 0, 0}};
        std::vector<MPoint> outline;
        for (std::size_t index = 0; index < corners.size(); ++index) {
            const MPoint &next = corners[(index + 1) % corners.size()];
            outline.insert(outline.end(), {corners[index], straight(corners[index], next, 0.25),
                                           straight(corners[index], next, 0.75)});
        }
        std::uint8_t *buffer = m_surface.data();
        return Quill::MaskHandler::m_fnFillBezierCurveMask(outline.data(), static_cast<int>(outline.size()), kWidth,
                                                           kHeight, kStride, &buffer, dump);
    }
    static bool hasDrive() {
        // Elsewhere than on Windows it is no drive.
        return !std::filesystem::path(kPath).is_absolute() || std::filesystem::exists("D:\\");
    }

    std::error_code m_error;
    std::vector<std::uint8_t> m_surface = std::vector<std::uint8_t>(std::size_t{kStride} * kHeight);
};

TEST_F(DumpFlag, WritesTheSurfaceAsAPicture) {
    if (!hasDrive())
        GTEST_SKIP() << "the picture goes to drive D:, which is not there";
    EXPECT_EQ(fill(true), S_OK);
    const DecodedPng picture = readBackPng(kPath);
    ASSERT_EQ(picture.width, kWidth);
    ASSERT_EQ(picture.height, kHeight);
    std::size_t inside = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const std::uint8_t *const pixel = m_surface.data() + y * kStride + x * 3;
            const bool isInside = pixel[0] == 0xFF;
            inside += isInside;
            EXPECT_EQ(picture.pixels[static_cast<std::size_t>(y * kWidth + x)], isInside ? kInside : kOutside)
                << x << ", " << y;
        }
    EXPECT_EQ(inside, 6U * 3);
}

TEST_F(DumpFlag, WritesNothingWhenItIsNotSet) {
    EXPECT_EQ(fill(false), S_OK);
    EXPECT_FALSE(std::filesystem::exists(kPath));
}

TEST_F(DumpFlag, AFileThatCannotBeWrittenIsNoFailure) {
    if (!hasDrive())
        GTEST_SKIP() << "the picture goes to drive D:, which is not there";
    std::filesystem::create_directory(kPath);
    EXPECT_EQ(fill(true), S_OK);
    EXPECT_TRUE(std::filesystem::is_directory(kPath));
}

class DumpBitmap : public PictureFiles {
  protected:
    static DecodedPng dump(const std::vector<Quill::MaskRunF> &runs, int width, int height) {
        const PyRef list = PyRef::adopt(buildRunList(runs));
        const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", width, height));
        const PyRef path = PyRef::adopt(PyString_FromString("runs.png"));
        EXPECT_EQ(Orvanel::DumpBitmap(list.get(), size.get(), path.get()), 0);
        EXPECT_FALSE(PyErr_Occurred());
        return readBackPng("runs.png");
    }
    /// Rows of the picture, "#" for what a run covers.
    static std::vector<std::string> rows(const DecodedPng &picture) {
        std::vector<std::string> result;
        for (int y = 0; y < picture.height; ++y) {
            result.emplace_back();
            for (int x = 0; x < picture.width; ++x) {
                const std::uint32_t pixel = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
                result.back() += pixel == 0xFFFFFFFF ? '#' : pixel == kOutside ? '.' : '?';
            }
        }
        return result;
    }
};

TEST_F(DumpBitmap, ShowsEveryRunWhereItsNumbersSay) {
    EXPECT_EQ(rows(dump({{0.25F, 0, 0.5F}, {0, 0.5F, 1}, {-0.25F, 0.25F, 0.5F}, {0.75F, 0.25F, 0.5F}}, 8, 4)),
              (std::vector<std::string>{"..####..", "###...##", "########", "........"}))
        << "column -1.5 is cut to -1: three of the four pixels are left";
}

TEST_F(DumpBitmap, DropsARunThatEndsWithTheLastByte) {
    EXPECT_EQ(rows(dump({{0, 0.75F, 1}, {0, 0, 0.5F}}, 8, 4)),
              (std::vector<std::string>{"####....", "........", "........", "........"}));
}

TEST_F(DumpBitmap, RowsOfAWidthThatIsNoMultipleOfFourLieAsTheContractWritesThem) {
    // Written at row x width, read at row x 8.
    EXPECT_EQ(rows(dump({{0, 0, 1}, {0, 0.5F, 0.6F}}, 5, 4)),
              (std::vector<std::string>{"#####", "..###", ".....", "....."}));
}

TEST_F(DumpBitmap, WritesNoPictureOfNothing) {
    EXPECT_EQ(dump({{0, 0, 1}}, 0, 4).width, 0);
    EXPECT_FALSE(std::filesystem::exists("runs.png"));
}

} // namespace
