// SPDX-License-Identifier: MIT
// How well the fitted outline covers the mask, over 200 masks with outlines drawn in a hurry: the overlap (intersection
// over union) of the mask and the outline's mask before and after, as a table. ORVANEL_FITTING_SHEET=FILE.png draws
// twenty of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "callback/py_ref.h"
#include "cases.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"
#include "sheet.h"

namespace {

using namespace fitting_quality;

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

constexpr std::uint32_t kCases = 200;
constexpr std::uint32_t kOnTheSheet = 20;

struct Column {
    std::vector<double> values;

    double mean() const {
        double sum = 0;
        for (const double value : values)
            sum += value;
        return sum / static_cast<double>(values.size());
    }
    double worst() const { return *std::ranges::min_element(values); }
};

struct Row {
    Column before, after;
    int worse = 0;

    void add(double first, double second) {
        before.values.push_back(first);
        after.values.push_back(second);
        worse += second < first ? 1 : 0;
    }
};

/// What an object's outline covers and where its anchors are.
Sheet::Outline outlineOf(Orvanel &object) {
    const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", kWidth, kHeight));
    const PyRef runs = PyRef::adopt(object.Convert2SelectionLineUS(size.get()));
    Sheet::Outline outline{pixelsOf(readRunList(runs.get())), {}};
    std::vector<MPointF> points;
    const PyRef bytes = PyRef::adopt(object.GetCurrentPoints());
    readPointBytes(bytes.get(), points);
    for (const MPointF &point : points) {
        if (point.type == kAnchorPoint)
            outline.anchors.emplace_back(point.x * kWidth, point.y * kHeight);
    }
    return outline;
}

/// Anchor, control, control, over and over, with every place a number.
bool hasClosedLayout(Orvanel &object) {
    std::vector<MPointF> points;
    const PyRef bytes = PyRef::adopt(object.GetCurrentPoints());
    readPointBytes(bytes.get(), points);
    for (std::size_t index = 0; index < points.size(); ++index) {
        if (points[index].type != (index % 3 == 0 ? kAnchorPoint : kControlPoint) ||
            !(points[index].x >= -1 && points[index].x <= 2 && points[index].y >= -1 && points[index].y <= 2))
            return false;
    }
    return points.size() >= 9 && points.size() % 3 == 0;
}

void draw(Orvanel &object, const Case &example) {
    object.SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
    object.SetVideoInfo(0, 0, 0, 1000);
    for (const auto &[x, y] : example.drawn)
        object.AddPoint(x, y);
    object.Interactive(ECS_MOUSE_DOWN, example.drawn[0].first, example.drawn[0].second);
    object.Interactive(ECS_MOUSE_UP);
}

void fit(Orvanel &object, const Case &example) {
    const PyRef runs = PyRef::adopt(buildRunList(runsOf(example.mask)));
    const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", kWidth, kHeight));
    const PyRef pair = PyRef::adopt(Py_BuildValue("(ff)", 0.0, 0.0));
    const PyRef none = PyRef::adopt(object.AdjustPoints(pair.get(), runs.get(), size.get()));
}

TEST(FittingQuality, FittedOutlinesCoverTheirMasks) {
    RecordingCanvas canvas;
    const CanvasForTest registration(&canvas);
    std::map<std::string, Row> table;
    Row all;
    Sheet sheet(4);
    const std::uint32_t cases = std::getenv("ORVANEL_LONG_TESTS") ? 20 * kCases : kCases;
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        const Case example = makeCase(seed);
        std::srand(seed);
        Orvanel object;
        draw(object, example);
        ASSERT_TRUE(object.IsMask()) << "seed " << seed;
        const Sheet::Outline drawn = outlineOf(object);
        fit(object, example);
        EXPECT_TRUE(hasClosedLayout(object)) << "seed " << seed;
        EXPECT_EQ(object.Convert2Mask(false), S_OK) << "seed " << seed;
        const Sheet::Outline fitted = outlineOf(object);

        const double before = intersectionOverUnion(example.mask, drawn.mask);
        const double after = intersectionOverUnion(example.mask, fitted.mask);
        table[example.kind].add(before, after);
        all.add(before, after);
        if (example.isConvex) {
            EXPECT_GE(after, before) << example.kind << ", seed " << seed;
        }
        if (seed < kOnTheSheet)
            sheet.add(example.mask, drawn, fitted);
    }
    table["all"] = all;
    std::printf("%-16s %5s  %-15s  %-15s  %s\n", "overlap", "cases", "before", "after", "worse");
    std::printf("%-16s %5s  %-7s %-7s  %-7s %-7s\n", "", "", "mean", "worst", "mean", "worst");
    for (const auto &[kind, row] : table) {
        std::printf("%-16s %5zu  %-7.3f %-7.3f  %-7.3f %-7.3f  %d\n", kind.c_str(), row.before.values.size(),
                    row.before.mean(), row.before.worst(), row.after.mean(), row.after.worst(), row.worse);
        EXPECT_GT(row.after.mean(), row.before.mean()) << kind;
    }
    if (const char *const path = std::getenv("ORVANEL_FITTING_SHEET")) {
        EXPECT_TRUE(sheet.write(path)) << path;
    }
}

} // namespace
