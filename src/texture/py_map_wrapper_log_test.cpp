// SPDX-License-Identifier: MIT
// What a refresh and its end write to the log.

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "support/log_recorder.h"
#include "texture/testing/refresh_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class PyMapWrapperLog : public RefreshFixture {
  protected:
    LogRecorder log;
};

TEST_F(PyMapWrapperLog, CopyWritesThreeLines) {
    owner.mappingOffset = -5000000000;
    const std::uint32_t before = platform::millisecondClock();
    map->UpdateCounter();
    const std::uint32_t after = platform::millisecondClock();
    Lines lines = log.messages();
    ASSERT_EQ(3u, lines.size());
    // The render time is the clock at the call.
    const std::string start = "UpdateFrame() m_renderTime=";
    const std::string rest = ", video duration=1000, mapping duration=-4999999000";
    ASSERT_EQ(start, lines[0].substr(0, start.size()));
    ASSERT_EQ(rest, lines[0].substr(lines[0].find(',')));
    const auto rendered = static_cast<std::uint32_t>(std::atoll(lines[0].c_str() + start.size()));
    EXPECT_LE(rendered - before, after - before);
    EXPECT_EQ("UpdateFrame() buffer size(16,8) len=512", lines[1]);
    EXPECT_EQ("UpdateFrame() End", lines[2]);
}

TEST_F(PyMapWrapperLog, Slot35KeepsTheRenderTimeOfTheLastSlot11) {
    map->Update();
    EXPECT_EQ("UpdateFrame() m_renderTime=0, video duration=1000, mapping duration=1000", log.messages().front());
}

TEST_F(PyMapWrapperLog, NothingIsWrittenWhenNothingIsCopied) {
    map->UpdateCounter();
    log.clear();
    map->UpdateCounter(); // nothing changed
    owner.dirty = true;
    owner.preview = true;
    map->UpdateCounter();
    owner.preview = false;
    owner.visible = false;
    map->UpdateCounter();
    map->SetSyncer(nullptr);
    map->UpdateCounter();
    EXPECT_EQ(Lines{}, log.messages());
}

TEST_F(PyMapWrapperLog, CreateWritesNothing) {
    map->Create(4, 4, Host{}.get(), renderer.get());
    map->Create(0, 4, nullptr, nullptr);
    EXPECT_EQ(Lines{}, log.messages());
}

TEST_F(PyMapWrapperLog, JoinWritesTwoLinesStoppedOrNot) {
    const Lines join = {"PyMapWrapper::Join() enter\n", "PyMapWrapper::Join() end\n"};
    map->Join(0);
    EXPECT_EQ(join, log.messages());
    log.clear();
    map->Stop();
    EXPECT_EQ(Lines{}, log.messages());
    map->Join(platform::kInfinite);
    EXPECT_EQ(join, log.messages());
}

} // namespace
