// SPDX-License-Identifier: MIT
#include "support/dib_surface.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/log_capture_test.h"

namespace {

using platform::DeviceContext;
using platform::DibHeader;

int g_marker = 0;
DeviceContext const kContext = reinterpret_cast<DeviceContext>(&g_marker);
HBITMAP const kBitmap = reinterpret_cast<HBITMAP>(&g_marker);
HBITMAP const kUntouched = reinterpret_cast<HBITMAP>(&g_marker + 1);

struct Recorder {
    std::vector<std::string> calls;
    DibHeader header;
    bool contextFails = false;
    bool bitmapFails = false;
};
Recorder g_recorder;

const platform::DibCalls kFake = {
    [] {
        g_recorder.calls.emplace_back("context");
        return g_recorder.contextFails ? nullptr : kContext;
    },
    [](DeviceContext context) {
        g_recorder.calls.emplace_back(context == kContext ? "delete context" : "delete a stranger");
    },
    [] { g_recorder.calls.emplace_back("flush"); },
    [](DeviceContext, const DibHeader &header, void **bits) -> HBITMAP {
        g_recorder.calls.emplace_back("section");
        g_recorder.header = header;
        if (bits)
            *bits = g_recorder.bitmapFails ? nullptr : &g_marker;
        return g_recorder.bitmapFails ? nullptr : kBitmap;
    },
    [] { return 0x57U; },
};

class DibSurface : public testing::Test {
  protected:
    DibSurface() { g_recorder = Recorder(); }

    LogCapture m_log;
    HBITMAP m_bitmap = kUntouched;
    void *m_bits = &m_bitmap;
};

using Calls = std::vector<std::string>;

TEST_F(DibSurface, TopDownSurfaceStatesItsImageSize) {
    EXPECT_EQ(createDibSection32(kFake, 640, -480, &m_bitmap, &m_bits), 1);
    DibHeader expected;
    expected.size = 40;
    expected.width = 640;
    expected.height = -480;
    expected.planes = 1;
    expected.bitCount = 32;
    expected.compression = 0;
    expected.imageSize = 640 * 480 * 4;
    expected.xPixelsPerMetre = 100;
    expected.yPixelsPerMetre = 100;
    EXPECT_EQ(g_recorder.header, expected);
    EXPECT_EQ(g_recorder.calls, (Calls{"context", "flush", "section", "delete context"}));
    EXPECT_EQ(m_bitmap, kBitmap);
    EXPECT_EQ(m_bits, &g_marker);
}

TEST_F(DibSurface, BottomUpHeightIsPassedOnUnchanged) {
    EXPECT_EQ(createDibSection32(kFake, 7, 5, &m_bitmap, nullptr), 1);
    EXPECT_EQ(g_recorder.header.height, 5);
    EXPECT_EQ(g_recorder.header.imageSize, 140U);
}

TEST_F(DibSurface, InvalidArgumentsAllocateNothing) {
    EXPECT_EQ(createDibSection32(kFake, 0, 5, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(createDibSection32(kFake, 5, 0, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(createDibSection32(kFake, 5, 5, nullptr, &m_bits), 0);
    EXPECT_TRUE(g_recorder.calls.empty());
    EXPECT_EQ(m_bitmap, kUntouched);
    EXPECT_EQ(m_bits, &m_bitmap);
    const std::string lines = m_log.take();
    const std::string text = "CreateDIBSection32 Invalid argument! return FALSE\n";
    std::size_t count = 0;
    for (std::size_t at = lines.find(text); at != std::string::npos; at = lines.find(text, at + 1))
        ++count;
    EXPECT_EQ(count, 3U) << lines;
}

TEST_F(DibSurface, ContextFailureLeavesTheOutputsUntouched) {
    g_recorder.contextFails = true;
    EXPECT_EQ(createDibSection32(kFake, 5, 5, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(g_recorder.calls, Calls{"context"});
    EXPECT_EQ(m_bitmap, kUntouched);
    EXPECT_EQ(m_bits, &m_bitmap);
    EXPECT_NE(m_log.take().find("CreateDIBSection32 failed to create compatible DC! return FALSE\n"),
              std::string::npos);
}

TEST_F(DibSurface, BitmapFailureStoresNullAndKeepsTheContext) {
    g_recorder.bitmapFails = true;
    EXPECT_EQ(createDibSection32(kFake, 5, 5, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(g_recorder.calls, (Calls{"context", "flush", "section"}));
    EXPECT_EQ(m_bitmap, nullptr);
    EXPECT_NE(m_log.take().find("CreateDIBSection32 failed to create bitmap handle! error code = 0x57\n"),
              std::string::npos);
}

TEST_F(DibSurface, OverflowingSizesAreStatedWrongAndLeftToTheSystem) {
    createDibSection32(kFake, 0x10000, 0x10000, &m_bitmap, nullptr);
    EXPECT_EQ(g_recorder.header.imageSize, 0U);
    createDibSection32(kFake, 0x2000, -0x2000, &m_bitmap, nullptr); // 2^26 pixels, 2^31 bits: the sign turns
    EXPECT_EQ(g_recorder.header.imageSize, 0xF0000000U);
    createDibSection32(kFake, 1, std::numeric_limits<INT>::min(), &m_bitmap, nullptr);
    EXPECT_EQ(g_recorder.header.imageSize, 0U);
    EXPECT_EQ(g_recorder.header.height, std::numeric_limits<INT>::min());
}

TEST_F(DibSurface, PixelMemoryIsZeroedAndWritable) {
    ASSERT_EQ(CreateDIBSection32(33, -17, &m_bitmap, &m_bits), 1);
    const std::size_t length = 33 * 17 * 4;
    auto *const bytes = static_cast<std::uint8_t *>(m_bits);
    EXPECT_EQ(std::count(bytes, bytes + length, 0), static_cast<std::ptrdiff_t>(length));
    std::memset(bytes, 0xA5, length);
    platform::deleteBitmap(m_bitmap);

    ASSERT_EQ(CreateDIBSection32(33, 17, &m_bitmap, nullptr), 1);
    platform::deleteBitmap(m_bitmap);
}

TEST_F(DibSurface, SizesThatNoSystemHoldsAreRefused) {
    EXPECT_EQ(CreateDIBSection32(0x7FFFFFFF, 0x7FFFFFFF, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(m_bitmap, nullptr);
    EXPECT_EQ(m_bits, nullptr);
    m_bitmap = kUntouched;
    EXPECT_EQ(CreateDIBSection32(0x80000000U, 1, &m_bitmap, &m_bits), 0);
    EXPECT_EQ(m_bitmap, nullptr);
    EXPECT_NE(m_log.take().find("failed to create bitmap handle! error code = 0x"), std::string::npos);
}

} // namespace
