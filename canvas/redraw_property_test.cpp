// SPDX-License-Identifier: MIT
// The same state gives the same bytes, whatever was drawn before.

#include <random>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/canvas_component.h"
#include "canvas/testing/scenes.h"
#include "platform/com_pointer.h"

namespace {

using canvas::CanvasComponent;
using Component = platform::ComPointer<OverlayCanvas>;

struct DrawOutline {
    std::vector<MPoint> points;
    BYTE isMask;
    float scale;
};
struct DrawMarker {
    MPoint point;
    UINT size;
    CanvasColor color;
};
struct DrawRegion {
    PixelRect rect;
};
struct HidePoints {};
using Operation = std::variant<DrawOutline, DrawMarker, DrawRegion, HidePoints>;

struct Perform {
    OverlayCanvas &canvas;

    HRESULT operator()(const DrawOutline &o) const {
        return canvas.DrawOutline(o.points.data(), static_cast<INT>(o.points.size()), canvas::testing::kEditorStyle,
                                  o.isMask, o.scale);
    }
    HRESULT operator()(const DrawMarker &o) const { return canvas.DrawMarker(o.point, o.size, o.color); }
    HRESULT operator()(const DrawRegion &o) const {
        return canvas.DrawRegion(o.rect, canvas::testing::kRegionBorder, canvas::testing::kRegionFill);
    }
    HRESULT operator()(const HidePoints &) const { return canvas.HideAllPoints(); }
};

class Source {
  public:
    explicit Source(unsigned seed) : m_random(seed) {}

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    int between(int low, int high) { return low + below(high - low + 1); }

    MPoint point() {
        MPoint result;
        result.type = static_cast<std::uint32_t>(below(2));
        result.x = between(-40, 220);
        result.y = between(-40, 170);
        return result;
    }

    Operation operation() {
        constexpr float kScales[] = {0.5F, 1, 1.5F, 2, 4};
        switch (below(8)) {
        case 0:
        case 1:
        case 2: {
            auto points =
                below(2) ? canvas::testing::blob(between(3, 9), between(0, 180), between(0, 140), between(5, 150), 0.3)
                         : std::vector<MPoint>(static_cast<std::size_t>(below(20)));
            for (MPoint &p : points) {
                if (p == MPoint())
                    p = point();
                p.handleShown = below(4) == 0;
            }
            return DrawOutline{std::move(points), static_cast<BYTE>(below(2)), kScales[below(5)]};
        }
        case 3:
            return DrawRegion{{between(-50, 200), between(-50, 160), between(-80, 120), between(-80, 120)}};
        case 4:
            return HidePoints{};
        default:
            return DrawMarker{point(), static_cast<UINT>(between(0, 90)),
                              CanvasColor::fromArgb(static_cast<std::uint32_t>(m_random()))};
        }
    }

  private:
    std::mt19937 m_random;
};

canvas::testing::Picture pictureOf(OverlayCanvas &component, UINT width, UINT height) {
    canvas::testing::Scene scene;
    scene.width = width;
    scene.height = height;
    return canvas::testing::copySurface(component, scene);
}

void runSequence(unsigned seed, int steps) {
    Source source(seed);
    const Component used(new CanvasComponent);
    UINT width = 0;
    UINT height = 0;
    const BYTE *address = nullptr;
    std::vector<Operation> sinceClear;
    for (int step = 0; step < steps; ++step) {
        if (step == 0 || source.below(40) == 0) {
            width = static_cast<UINT>(source.between(1, 200));
            height = static_cast<UINT>(source.between(1, 150));
            ASSERT_EQ(used->SetSize(width, height, 1, 1), S_OK);
            sinceClear.clear();
            BYTE *buffer = nullptr;
            std::uint64_t length = 0;
            ASSERT_EQ(used->GetBuffer(&buffer, &length), S_OK);
            address = buffer;
        }
        if (source.below(6) == 0) {
            ASSERT_EQ(used->Clear(), S_OK);
            sinceClear.clear();
        }
        sinceClear.push_back(source.operation());
        ASSERT_EQ(std::visit(Perform{*used.get()}, sinceClear.back()), S_OK);

        const Component fresh(new CanvasComponent);
        ASSERT_EQ(fresh->SetSize(width, height, 1, 1), S_OK);
        for (const Operation &operation : sinceClear)
            std::visit(Perform{*fresh.get()}, operation);
        ASSERT_EQ(pictureOf(*used.get(), width, height), pictureOf(*fresh.get(), width, height))
            << "seed " << seed << " step " << step;
        BYTE *buffer = nullptr;
        std::uint64_t length = 0;
        ASSERT_EQ(used->GetBuffer(&buffer, &length), S_OK);
        ASSERT_EQ(buffer, address) << "the buffer moved";
    }
}

TEST(RedrawProperty, UsedCanvasEqualsFreshCanvas) {
    const unsigned sequences = canvas::testing::longTests() ? 400 : 12;
    for (unsigned seed = 1; seed <= sequences; ++seed)
        runSequence(seed, 60);
}

TEST(RedrawProperty, RedrawingAStateGivesTheSameBytes) {
    const auto scenes = canvas::testing::goldenScenes();
    const Component component(new CanvasComponent);
    for (const auto &scene : scenes) {
        if (scene.width > 1000)
            continue;
        ASSERT_EQ(component->SetSize(scene.width, scene.height, 1, 1), S_OK);
        canvas::testing::redraw(*component.get(), scene);
        const auto once = canvas::testing::copySurface(*component.get(), scene);
        for (const auto &other : scenes)
            if (other.width == scene.width)
                canvas::testing::redraw(*component.get(), other);
        canvas::testing::redraw(*component.get(), scene);
        EXPECT_EQ(canvas::testing::copySurface(*component.get(), scene), once) << scene.name;
    }
}

} // namespace
