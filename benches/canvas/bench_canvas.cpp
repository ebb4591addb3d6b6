// SPDX-License-Identifier: MIT
// The overlay against cairo and AGG and against one memset of its surface, in one run on one thread.
//
//     stroke    the outline's line alone; competitors draw the dark edge and the core as two strokes
//     core      one stroke of theirs, against our whole line
//     redraw    clear, line, anchors, all handles, hover mark, every anchor selected; "editor": with the handles of one
//               anchor, which is what the editor shows at most; "mask": with the fill
//
// Every drawer gets the same rotating outlines of 24 anchors, half as tall as the picture, so that no branch predictor
// learns one of them. Processor time of many short interleaved repetitions, none of which pays for a surface's first
// use; the ratios at the end are those of the best ones, because what neighbours on the machine take away differs from
// one to the next. Our stroke includes clearing the one before, which the others are spared.
// ORVANEL_BENCH_PICTURES=FOLDER writes what each drew.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "benches/canvas/drawer.h"
#include "canvas/surface.h"

namespace {

using canvas::testing::Scene;

constexpr int kAnchors = 24;
constexpr int kInputs = 8;

struct Format {
    const char *name;
    int width;
    int height;
};
constexpr Format kFormats[] = {{"1080p", 1920, 1080}, {"4K", 3840, 2160}};

enum class Handles { All, OfOneAnchor };

std::vector<Scene> makeScenes(const Format &format, bool isMask, Handles handles) {
    std::vector<Scene> scenes;
    for (int i = 0; i < kInputs; ++i) {
        Scene scene;
        scene.width = static_cast<UINT>(format.width);
        scene.height = static_cast<UINT>(format.height);
        scene.points = canvas::testing::blob(kAnchors, format.width / 2.0 + 7 * i, format.height / 2.0 - 5 * i,
                                             format.height * (0.23 + 0.005 * i), 0.10 + 0.02 * i);
        if (handles == Handles::All)
            canvas::testing::showAllHandles(scene.points);
        else
            canvas::testing::showHandles(scene.points, static_cast<std::size_t>(3 * i));
        scene.isMask = isMask;
        scene.hover = canvas::testing::Hover::Point;
        scene.hoverIndex = static_cast<std::size_t>(3 * i);
        for (std::size_t anchor = 0; anchor < kAnchors; ++anchor)
            scene.selected.push_back(3 * anchor);
        scenes.push_back(std::move(scene));
    }
    return scenes;
}

enum class Work { Stroke, Core, Redraw };

void measure(benchmark::State &state, bench::MakeDrawer make, const Format &format, Work work, bool isMask,
             Handles handles) {
    const std::vector<Scene> scenes = makeScenes(format, isMask, handles);
    const auto drawer = make();
    drawer->resize(format.width, format.height);
    const auto draw = [&](const Scene &scene) {
        switch (work) {
        case Work::Redraw:
            drawer->redraw(scene);
            break;
        case Work::Stroke:
            drawer->stroke(scene.points);
            break;
        case Work::Core:
            drawer->strokeCore(scene.points);
            break;
        }
        benchmark::ClobberMemory();
    };
    // The first time takes the surface's pages, and whatever a drawer keeps from then on.
    std::for_each(scenes.begin(), scenes.end(), draw);
    std::size_t i = 0;
    for (auto _ : state)
        draw(scenes[i++ % kInputs]);
}

void measureMemset(benchmark::State &state, const Format &format) {
    canvas::Surface surface;
    surface.resize(static_cast<UINT>(format.width), static_cast<UINT>(format.height));
    const auto set = [&] {
        std::memset(surface.pixels(), 0, surface.byteCount());
        benchmark::DoNotOptimize(surface.pixels());
        benchmark::ClobberMemory();
    };
    set();
    for (auto _ : state)
        set();
}

double best(const std::vector<double> &times) {
    return *std::min_element(times.begin(), times.end());
}

/// Prints as usual and keeps the best times.
class Reporter final : public benchmark::ConsoleReporter {
  public:
    Reporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs)
            if (run.aggregate_name == "best")
                m_best[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    void ratio(const std::string &slow, const std::string &fast, const char *what) const {
        const auto a = m_best.find(slow);
        const auto b = m_best.find(fast);
        if (a != m_best.end() && b != m_best.end())
            std::printf("%-34s %10.3f %s\n", what, a->second / b->second, slow.c_str());
    }

  private:
    std::map<std::string, double> m_best;
};

} // namespace

int main(int argc, char **argv) {
    std::vector<char *> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_repetitions=40", "--benchmark_enable_random_interleaving=true",
                              "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.01"};
    for (std::size_t i = 0; i < std::size(defaults); ++i)
        arguments.insert(arguments.begin() + 1 + static_cast<std::ptrdiff_t>(i), defaults[i].data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (const char *const folder = std::getenv("ORVANEL_BENCH_PICTURES"))
        bench::writePictures(folder, makeScenes(kFormats[0], true, Handles::All)[3]);

    for (const Format &format : kFormats) {
        const std::string where = std::string("/") + format.name;
        benchmark::RegisterBenchmark(("memset" + where).c_str(),
                                     [&format](benchmark::State &state) { measureMemset(state, format); })
            ->ComputeStatistics("best", best)
            ->Unit(benchmark::kMicrosecond);
        for (const bench::MakeDrawer make : bench::drawers()) {
            const std::string who = std::string(make()->name());
            const auto add = [&](const char *what, Work work, bool isMask, Handles handles) {
                benchmark::RegisterBenchmark(
                    (std::string(what) + "/" + who + where).c_str(),
                    [=, &format](benchmark::State &state) { measure(state, make, format, work, isMask, handles); })
                    ->ComputeStatistics("best", best)
                    ->Unit(benchmark::kMicrosecond);
            };
            add("stroke", Work::Stroke, false, Handles::All);
            add("core", Work::Core, false, Handles::All);
            add("redraw", Work::Redraw, false, Handles::All);
            add("redraw_editor", Work::Redraw, false, Handles::OfOneAnchor);
            add("redraw_mask", Work::Redraw, true, Handles::All);
        }
    }

    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\nratios of the best\n");
    for (const Format &format : kFormats) {
        const std::string where = std::string("/") + format.name;
        for (const char *const what : {"stroke", "core", "redraw", "redraw_editor", "redraw_mask"})
            for (const char *const who : {"/agg", "/cairo"})
                reporter.ratio(std::string(what) + who + where, std::string(what) + "/own" + where, "competitor / own");
        for (const char *const what : {"redraw", "redraw_editor", "redraw_mask"})
            reporter.ratio(std::string(what) + "/own" + where, "memset" + where, "own / memset of the surface");
    }
    return 0;
}
