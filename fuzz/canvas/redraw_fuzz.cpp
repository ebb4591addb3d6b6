// SPDX-License-Identifier: MIT
// Any sequence of calls on one component. A call that fails with anything but a refusal, or bytes that depend on what
// was drawn before the last clear, are a crash.
//
// Input: width and height (one byte each), then operations: a byte that chooses, and what it takes.

#include <cmath>
#include <vector>

#include "canvas/canvas_component.h"
#include "fuzz/mask/byte_reader.h"
#include "platform/com_pointer.h"

namespace {

using Component = platform::ComPointer<OverlayCanvas>;

constexpr std::size_t kMostPoints = 60;
constexpr int kMostOperations = 24;

struct Operation {
    std::uint8_t kind;
    std::vector<MPoint> points;
    std::uint8_t isMask;
    float scale;
    UINT size;
    CanvasColor color;
    PixelRect rect;
};

using fuzz::require;

Operation takeOperation(fuzz::ByteReader &bytes) {
    Operation operation{};
    operation.kind = bytes.take<std::uint8_t>() % 5;
    operation.isMask = bytes.take<std::uint8_t>() % 2;
    operation.color = CanvasColor::fromArgb(bytes.take<std::uint32_t>());
    const bool wide = operation.color.green % 4 == 0;
    const auto coordinate = [&]() -> std::int32_t {
        return wide ? bytes.take<std::int32_t>() : bytes.take<std::int8_t>();
    };
    operation.rect = {coordinate(), coordinate(), coordinate(), coordinate()};
    operation.size = wide ? bytes.take<std::uint32_t>() : bytes.take<std::uint8_t>();
    operation.scale = bytes.take<float>();
    const std::size_t count = bytes.take<std::uint8_t>() % kMostPoints;
    for (std::size_t i = 0; i < count && !bytes.empty(); ++i) {
        MPoint point;
        point.type = i % 3 == 0 ? kAnchorPoint : kControlPoint;
        point.x = coordinate();
        point.y = coordinate();
        point.handleShown = (point.x ^ point.y) & 1;
        operation.points.push_back(point);
    }
    return operation;
}

void perform(OverlayCanvas &canvas, const Operation &operation) {
    MPoint point;
    point.type = operation.isMask;
    point.x = operation.rect.left;
    point.y = operation.rect.top;
    const OutlineStyle style = {operation.color, operation.color, operation.color, 0};
    switch (operation.kind) {
    case 0:
    case 1: {
        const HRESULT result = canvas.DrawOutline(operation.points.data(), static_cast<INT>(operation.points.size()),
                                                  style, operation.isMask, operation.scale);
        require(result == (std::isnan(operation.scale) ? E_INVALIDARG : S_OK));
        break;
    }
    case 2:
        require(canvas.DrawMarker(point, operation.size, operation.color) == S_OK);
        break;
    case 3:
        require(canvas.DrawRegion(operation.rect, operation.color, operation.color) == S_OK);
        break;
    default:
        require(canvas.HideAllPoints() == S_OK);
        break;
    }
}

std::vector<BYTE> bytesOf(OverlayCanvas &canvas) {
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    if (FAILED(canvas.GetBuffer(&buffer, &length)))
        return {};
    return {buffer, buffer + length};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::ByteReader bytes(data, size);
    const UINT width = bytes.take<std::uint8_t>();
    const UINT height = bytes.take<std::uint8_t>();
    const Component used(new canvas::CanvasComponent);
    require(used->SetSize(width, height, 1, 1) == S_OK);

    std::vector<Operation> sinceClear;
    for (int i = 0; i < kMostOperations && !bytes.empty(); ++i) {
        if (bytes.take<std::uint8_t>() % 4 == 0) {
            require(used->Clear() == S_OK);
            sinceClear.clear();
        }
        sinceClear.push_back(takeOperation(bytes));
        perform(*used.get(), sinceClear.back());
    }

    const Component fresh(new canvas::CanvasComponent);
    fresh->SetSize(width, height, 1, 1);
    for (const Operation &operation : sinceClear)
        perform(*fresh.get(), operation);
    require(bytesOf(*used.get()) == bytesOf(*fresh.get()));

    used->Clear();
    for (const BYTE value : bytesOf(*used.get()))
        require(value == 0);
    return 0;
}
