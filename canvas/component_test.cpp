// SPDX-License-Identifier: MIT
#include "canvas/canvas_component.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"

namespace {

TEST(CanvasComponent, First) {
    void *object = nullptr;
    ASSERT_EQ(canvas::createCanvasComponent(IID_OverlayCanvas, &object), S_OK);
    auto *component = static_cast<OverlayCanvas *>(object);
    EXPECT_EQ(component->SetSize(64, 48, 1, 1), S_OK);
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    EXPECT_EQ(component->GetBuffer(&buffer, &length), S_OK);
    EXPECT_EQ(length, 64U * 48 * 4);
    EXPECT_EQ(component->Release(), 0U);
}

} // namespace
