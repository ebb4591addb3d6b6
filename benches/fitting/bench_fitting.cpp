// SPDX-License-Identifier: MIT
// Fitting an outline to a mask: the whole entry, its search for border pixels, and the plain way of that, which sorts
// the border for every anchor and every long gap. Then the growth with the border's length from 720p to 4K.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "callback/py_ref.h"
#include "fitting/fit.h"
#include "fitting/testing/plain_selection.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"

namespace {

constexpr double kTurn = 6.283185307179586;
/// Masks and outlines take turns, so that nothing learns one by heart.
constexpr std::size_t kInputs = 8;

struct Format {
    const char *name;
    int width;
    int height;
};
constexpr Format kFormats[] = {{"720p", 1280, 720}, {"1080p", 1920, 1080}, {"1440p", 2560, 1440}, {"4K", 3840, 2160}};
constexpr const Format &kMain = kFormats[1];

using Runs = std::vector<Quill::MaskRunF>;

/// A ring of waves around the middle. Its border grows with the height.
Runs wavyMask(const Format &format, std::size_t variant) {
    Runs runs;
    const double phase = static_cast<double>(variant);
    const auto inside = [&](int x, int y) {
        const double dx = x - format.width * 0.5;
        const double dy = y - format.height * 0.5;
        return std::hypot(dx, dy) < format.height * (0.36 + 0.07 * std::sin(9 * std::atan2(dy, dx) + phase));
    };
    for (int y = 0; y < format.height; ++y) {
        for (int x = 0; x < format.width; ++x) {
            const int first = x;
            while (x < format.width && inside(x, y))
                ++x;
            if (x > first)
                runs.push_back({static_cast<float>(first) / static_cast<float>(format.width),
                                static_cast<float>(y) / static_cast<float>(format.height),
                                static_cast<float>(x - first) / static_cast<float>(format.width)});
        }
    }
    return runs;
}

/// Anchors on a circle beside the border.
std::vector<fitting::Place> drawnAnchors(const Format &format, int count, std::size_t variant) {
    std::vector<fitting::Place> places;
    for (int anchor = 0; anchor < count; ++anchor) {
        const double angle = kTurn * anchor / count;
        const double radius = format.height * (0.34 + 0.01 * static_cast<double>(variant));
        places.push_back({static_cast<float>(0.5 + radius * std::cos(angle) / format.width),
                          static_cast<float>(0.5 + radius * std::sin(angle) / format.height)});
    }
    return places;
}

/// Calls `fill(a, b)` for every pair of neighbours that is too far apart.
template <typename Fill>
void forEachGap(const std::vector<fitting::Pixel> &anchors, double longest, Fill fill) {
    for (std::size_t index = 0; index < anchors.size(); ++index) {
        const fitting::Pixel &previous = anchors[(index + anchors.size() - 1) % anchors.size()];
        if (std::sqrt(squaredDistance(previous, anchors[index])) > longest)
            fill(previous, anchors[index]);
    }
}

/// All of the fit but the outline's own points.
void fit(const Runs &runs, const Format &format, std::vector<fitting::Place> places) {
    auto target = fitting::Target::decode(runs, format.width, format.height);
    target->snap(places, {0, 0});
    std::vector<fitting::Pixel> anchors;
    for (const fitting::Place &place : places)
        anchors.push_back(target->pixelOf(place));
    forEachGap(anchors, target->longestGap(), [&](const fitting::Pixel &a, const fitting::Pixel &b) {
        places.push_back(target->placeOf(target->fillGap(a, b)));
    });
    benchmark::DoNotOptimize(target->trace(places, 3));
}

/// The same with a sort of the list for every choice, and without the tracing.
void plainFit(const Runs &runs, const Format &format, const std::vector<fitting::Place> &places) {
    const fitting::BitPicture mask = *fitting::decodeRuns(runs, format.width, format.height);
    const fitting::Border border(mask);
    benchmark::DoNotOptimize(fitting::centroidOf(mask));
    benchmark::DoNotOptimize(fitting::findExtremes(border.pixels()));
    std::vector<fitting::Pixel> list = border.pixels();
    fitting::shuffle(std::span(list));
    std::vector<fitting::Pixel> anchors;
    for (const fitting::Place &place : places) {
        const fitting::Pixel pixel = {static_cast<int>(static_cast<float>(format.width) * place.x),
                                      static_cast<int>(static_cast<float>(format.height) * place.y)};
        anchors.push_back(border.contains(pixel) ? pixel : fitting::plainChoice(list, pixel, list.size() / 2));
    }
    const double longest = 0.14 * std::min(format.width, format.height);
    forEachGap(anchors, longest, [&list](const fitting::Pixel &a, const fitting::Pixel &b) {
        const fitting::Pixel middle = {(a.x + b.x) / 2, (a.y + b.y) / 2};
        benchmark::DoNotOptimize(fitting::plainChoice(list, middle, list.size()));
    });
}

struct Input {
    Runs runs;
    std::vector<fitting::Place> anchors;
};

/// Made once: drawing the masks takes longer than fitting to them.
const std::vector<Input> &inputsFor(const Format &format, int anchors) {
    static std::map<std::pair<int, int>, std::vector<Input>> made;
    std::vector<Input> &inputs = made[{format.height, anchors}];
    if (!inputs.empty())
        return inputs;
    for (std::size_t variant = 0; variant < kInputs; ++variant)
        inputs.push_back({wavyMask(format, variant), drawnAnchors(format, anchors, variant)});
    return inputs;
}

void measure(benchmark::State &state, const Format &format, int anchors, bool plain) {
    const std::vector<Input> &inputs = inputsFor(format, anchors);
    double pixels = 0;
    for (const Input &input : inputs)
        pixels += static_cast<double>(
            fitting::Border(*fitting::decodeRuns(input.runs, format.width, format.height)).pixels().size());
    state.counters["border"] = pixels / kInputs;
    std::size_t next = 0;
    for (auto _ : state) {
        const Input &input = inputs[next++ % kInputs];
        if (plain)
            plainFit(input.runs, format, input.anchors);
        else
            fit(input.runs, format, input.anchors);
    }
}

/// AdjustPoints as Python calls it, reading the list included. The outline is put back in between, which is not
/// measured.
void measureEntry(benchmark::State &state, const Format &format, int anchors) {
    const std::vector<Input> &inputs = inputsFor(format, anchors);
    std::vector<PyRef> lists;
    std::vector<PyRef> settings;
    for (const Input &input : inputs) {
        lists.push_back(PyRef::adopt(buildRunList(input.runs)));
        Orvanel drawing;
        drawing.SetVideoCoordinate(format.width, format.height, 0, 0, format.width, format.height);
        drawing.SetVideoInfo(0, 0, 0, 1LL << 60);
        drawing.PrepareKeyframe(0);
        for (const fitting::Place &place : input.anchors)
            drawing.AddPoint(static_cast<int>(place.x * static_cast<float>(format.width)),
                             static_cast<int>(place.y * static_cast<float>(format.height)));
        const fitting::Place &first = input.anchors.front();
        drawing.Interactive(ECS_MOUSE_DOWN, static_cast<int>(first.x * static_cast<float>(format.width)),
                            static_cast<int>(first.y * static_cast<float>(format.height)));
        drawing.Interactive(ECS_MOUSE_UP);
        settings.push_back(PyRef::adopt(drawing.GetCurrentDevSetting()));
    }
    const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", format.width, format.height));
    const PyRef pair = PyRef::adopt(Py_BuildValue("(ff)", 0.0, 0.0));
    Orvanel object;
    object.SetVideoCoordinate(format.width, format.height, 0, 0, format.width, format.height);
    object.SetVideoInfo(0, 0, 0, 1LL << 60);
    std::size_t next = 0;
    for (auto _ : state) {
        const std::size_t input = next++ % kInputs;
        state.PauseTiming();
        object.SetDevSetting(settings[input].get());
        object.PrepareKeyframe(0);
        state.ResumeTiming();
        const PyRef none = PyRef::adopt(object.AdjustPoints(pair.get(), lists[input].get(), size.get()));
    }
    const PyRef bytes = PyRef::adopt(object.GetCurrentPoints());
    state.counters["anchors_after"] = static_cast<double>(PyString_GET_SIZE(bytes.get())) / (3 * sizeof(MPointF));
}

/// Prints as usual and keeps the medians.
class Reporter final : public benchmark::ConsoleReporter {
  public:
    Reporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name != "median")
                continue;
            medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
            if (const auto border = run.counters.find("border"); border != run.counters.end())
                borders[run.run_name.function_name] = border->second;
        }
    }

    std::map<std::string, double> medians; ///< milliseconds
    std::map<std::string, double> borders; ///< pixels
};

} // namespace

int main(int argc, char **argv) {
    Py_SetPythonHome(const_cast<char *>(ORVANEL_PYTHON27_HOME));
    Py_InitializeEx(0);
    PyEval_InitThreads();
    std::vector<char *> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_repetitions=5", "--benchmark_enable_random_interleaving=true",
                              "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.05"};
    for (std::size_t index = 0; index < std::size(defaults); ++index)
        arguments.insert(arguments.begin() + 1 + static_cast<std::ptrdiff_t>(index), defaults[index].data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());

    const auto add = [](const std::string &name, auto body) {
        benchmark::RegisterBenchmark(name.c_str(), body)->Unit(benchmark::kMillisecond);
    };
    for (const int anchors : {24, 100}) {
        const std::string where = std::string("/") + kMain.name + "/" + std::to_string(anchors);
        add("entry" + where, [anchors](benchmark::State &state) { measureEntry(state, kMain, anchors); });
        add("plain" + where, [anchors](benchmark::State &state) { measure(state, kMain, anchors, true); });
    }
    add("fit/1080p/24", [](benchmark::State &state) { measure(state, kMain, 24, false); });
    for (const Format &format : kFormats)
        add(std::string("fit/") + format.name + "/100",
            [&format](benchmark::State &state) { measure(state, format, 100, false); });

    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\nfull sorts / fit (medians)\n");
    for (const char *const where : {"/1080p/24", "/1080p/100"}) {
        for (const char *const what : {"fit", "entry"}) {
            const auto plain = reporter.medians.find(std::string("plain") + where);
            const auto own = reporter.medians.find(what + std::string(where));
            if (plain != reporter.medians.end() && own != reporter.medians.end())
                std::printf("%-20s %8.3f ms  %8.1f times faster than full sorts\n", own->first.c_str(), own->second,
                            plain->second / own->second);
        }
    }
    std::printf("\ngrowth with the border's length, 100 anchors\n");
    for (const Format &format : kFormats) {
        const std::string name = std::string("fit/") + format.name + "/100";
        if (reporter.medians.count(name) != 0)
            std::printf("%-6s %8.0f pixels  %8.3f ms  %6.1f ns a pixel\n", format.name, reporter.borders[name],
                        reporter.medians[name], reporter.medians[name] * 1e6 / reporter.borders[name]);
    }
    Py_Finalize();
    return 0;
}
