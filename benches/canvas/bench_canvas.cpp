// SPDX-License-Identifier: MIT
// The overlay against cairo and AGG and against one memset of its surface, in one run on one thread.
//
// Every drawer gets the same rotating inputs, so that no branch predictor learns one of them. Competitors draw the dark edge
// and the core as two strokes; "core" is one stroke of theirs against our whole line. Medians of interleaved repetitions;
// the ratios stand at the end. ORVANEL_BENCH_PICTURES=FOLDER writes what each drew.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "benches/canvas/drawer.h"
#include "canvas/testing/png.h"

namespace {

using canvas::testing::Scene;

constexpr int kAnchors = 24;
constexpr int kInputs = 16;

struct Format {
    const char *name;
    int width;
    int height;
};
constexpr Format kFormats[] = {{"1080p", 1920, 1080}, {"4K", 3840, 2160}};

std::vector<Scene> makeScenes(const Format &format, bool isMask) {
    std::vector<Scene> scenes;
    for (int i = 0; i < kInputs; ++i) {
        Scene scene;
        scene.width = static_cast<UINT>(format.width);
        scene.height = static_cast<UINT>(format.height);
        scene.points = canvas::testing::blob(kAnchors, format.width / 2.0 + 7 * i, format.height / 2.0 - 5 * i,
                                             format.height * (0.30 + 0.005 * i), 0.10 + 0.01 * i);
        canvas::testing::showAllHandles(scene.points);
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

void measure(benchmark::State &state, std::unique_ptr<bench::Drawer> (*make)(), const Format &format, Work work, bool isMask) {
    const std::vector<Scene> scenes = makeScenes(format, isMask);
    const auto drawer = make();
    drawer->resize(format.width, format.height);
    std::size_t i = 0;
    for (auto _ : state) {
        const Scene &scene = scenes[i++ % kInputs];
        switch (work) {
        case Work::Redraw:
            drawer->redraw(scene);
            break;
        case Work::Stroke:
        case Work::Core:
            state.PauseTiming();
            drawer->clear();
            state.ResumeTiming();
            if (work == Work::Stroke)
                drawer->stroke(scene.points);
            else
                drawer->strokeCore(scene.points);
            break;
        }
        benchmark::ClobberMemory();
    }
}

void measureMemset(benchmark::State &state, const Format &format) {
    std::vector<std::uint32_t> surface(static_cast<std::size_t>(format.width) * static_cast<std::size_t>(format.height));
    for (auto _ : state) {
        std::memset(surface.data(), 0, surface.size() * sizeof(surface[0]));
        benchmark::DoNotOptimize(surface.data());
        benchmark::ClobberMemory();
    }
}

/// Prints as usual and keeps the medians.
class Reporter final : public benchmark::ConsoleReporter {
  public:
    Reporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs)
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    void ratio(const std::string &slow, const std::string &fast, const char *what) const {
        const auto a = m_medians.find(slow);
        const auto b = m_medians.find(fast);
        if (a != m_medians.end() && b != m_medians.end())
            std::printf("%-34s %10.3f %s\n", what, a->second / b->second, slow.c_str());
    }
    double median(const std::string &name) const {
        const auto found = m_medians.find(name);
        return found == m_medians.end() ? 0 : found->second;
    }

  private:
    std::map<std::string, double> m_medians;
};

void writePictures(const char *folder) {
    const Format format = kFormats[0];
    const Scene scene = makeScenes(format, true)[3];
    for (auto *const make : {bench::makeOwnDrawer, bench::makeAggDrawer, bench::makeCairoDrawer}) {
        const auto drawer = make();
        drawer->resize(format.width, format.height);
        drawer->redraw(scene);
        canvas::testing::writePicture(std::string(folder) + "/redraw_" + drawer->name() + ".png", drawer->picture());
        drawer->resize(format.width, format.height);
        drawer->stroke(scene.points);
        canvas::testing::writePicture(std::string(folder) + "/stroke_" + drawer->name() + ".png", drawer->picture());
    }
}

} // namespace

int main(int argc, char **argv) {
    std::vector<char *> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_repetitions=9", "--benchmark_enable_random_interleaving=true",
                              "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.05"};
    for (std::size_t i = 0; i < std::size(defaults); ++i)
        arguments.insert(arguments.begin() + 1 + static_cast<std::ptrdiff_t>(i), defaults[i].data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (const char *const folder = std::getenv("ORVANEL_BENCH_PICTURES"))
        writePictures(folder);

    for (const Format &format : kFormats) {
        const std::string where = std::string("/") + format.name;
        benchmark::RegisterBenchmark(("memset" + where).c_str(), [&format](benchmark::State &state) { measureMemset(state, format); })->Unit(benchmark::kMicrosecond);
        for (auto *const make : {bench::makeOwnDrawer, bench::makeAggDrawer, bench::makeCairoDrawer}) {
            const std::string who = std::string(make()->name());
            const auto add = [&](const char *what, Work work, bool isMask) {
                benchmark::RegisterBenchmark((std::string(what) + "/" + who + where).c_str(), [=, &format](benchmark::State &state) { measure(state, make, format, work, isMask); })->Unit(benchmark::kMicrosecond);
            };
            add("stroke", Work::Stroke, false);
            add("core", Work::Core, false);
            add("redraw", Work::Redraw, false);
            add("redraw_mask", Work::Redraw, true);
        }
    }

    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\nratios (how many times our time)\n");
    for (const Format &format : kFormats) {
        const std::string where = std::string("/") + format.name;
        for (const char *const what : {"stroke", "core", "redraw", "redraw_mask"})
            for (const char *const who : {"/agg", "/cairo"})
                reporter.ratio(std::string(what) + who + where, std::string(what) + "/own" + where, "competitor / own");
        reporter.ratio("redraw/own" + where, "memset" + where, "own / memset of the surface");
        reporter.ratio("redraw_mask/own" + where, "memset" + where, "own / memset of the surface");
    }
    return 0;
}
