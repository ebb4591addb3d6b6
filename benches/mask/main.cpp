// SPDX-License-Identifier: MIT
// Outline to runs, against everybody. `--benchmark_filter=.../24/1080p` and the like choose; the table of ratios comes
// last.

#include <benchmark/benchmark.h>

#include <cstring>
#include <limits>

#include "agreement.h"
#include "mask/surface.h"
#include "ratio_table.h"
#include "shapes.h"

namespace bench {
namespace {

void encodeRotating(benchmark::State &state, const Contender &contender, const Shape &shape, const Size &size) {
    const auto variants = makeVariants(shape, size);
    const auto rasterizer = contender.make(size.width, size.height);
    Runs runs;
    for (const Outline &outline : variants) // everybody warm
        rasterizer->encode(outline, runs);
    std::size_t next = 0;
    for (auto _ : state) {
        rasterizer->encode(variants[next], runs);
        benchmark::DoNotOptimize(runs.data());
        next = (next + 1) % kVariants;
    }
    state.counters["runs"] = static_cast<double>(runs.size());
}

void clearSurface(benchmark::State &state, const Size &size) {
    std::vector<unsigned char> surface(static_cast<std::size_t>(Quill::surfaceStride(size.width)) *
                                       static_cast<std::size_t>(size.height));
    for (auto _ : state) {
        std::memset(surface.data(), 0, surface.size());
        benchmark::DoNotOptimize(surface.data());
        benchmark::ClobberMemory();
    }
}

/// One of our own encodings at 24 anchors and 1080p, where the others have nothing to compare with.
template <typename Encode>
void encodeOwn(benchmark::State &state, Encode encode) {
    const auto variants = makeVariants(kShapes[1], kSizes[1]);
    std::size_t next = 0;
    for (auto _ : state) {
        encode(variants[next].data(), static_cast<int>(variants[next].size()), kSizes[1]);
        next = (next + 1) % kVariants;
    }
}

void registerAll() {
    for (const Size &size : kSizes) {
        benchmark::RegisterBenchmark((std::string("memset/") + size.name).c_str(),
                                     [&size](benchmark::State &state) { clearSurface(state, size); });
        for (const Shape &shape : kShapes)
            for (const Contender &contender : contenders())
                benchmark::RegisterBenchmark(
                    (std::string(contender.name) + "/" + shape.name + "/" + size.name).c_str(),
                    [&](benchmark::State &state) { encodeRotating(state, contender, shape, size); });
    }
    using Quill::MaskHandler;
    benchmark::RegisterBenchmark("rowlist/24/1080p", [](benchmark::State &state) {
        Quill::RowListMask mask;
        encodeOwn(state, [&](const MPoint *points, int count, const Size &size) {
            mask.width = size.width;
            mask.height = size.height;
            MaskHandler::ConvertPoints2Mask(points, count, &mask);
        });
    });
    benchmark::RegisterBenchmark("normalised/24/1080p", [](benchmark::State &state) {
        std::vector<Quill::MaskRunF> runs;
        encodeOwn(state, [&](const MPoint *points, int count, const Size &size) {
            MaskHandler::ConvertPoints2MaskUS(points, count, 0, 0, size.width, size.height, false, nullptr, &runs);
        });
    });
    benchmark::RegisterBenchmark("inverted/24/1080p", [](benchmark::State &state) {
        Runs runs;
        encodeOwn(state, [&](const MPoint *points, int count, const Size &size) {
            MaskHandler::ConvertPoints2Mask(points, count, size.width, size.height, true, nullptr, &runs);
        });
    });
    benchmark::RegisterBenchmark("samples/24/1080p", [](benchmark::State &state) {
        Quill::SegmentSamples samples;
        encodeOwn(state, [&](const MPoint *points, int count, const Size &size) {
            MaskHandler::GenAllPoints(points, count, size.width, size.height, &samples);
        });
    });
}

/// The usual console output, and the medians kept for the table: time on the processor, because machines are shared.
class KeepingReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run> &reports) override {
        for (const Run &run : reports)
            if (run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : run.repetitions == 1)
                medians[run.run_name.function_name] =
                    run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        ConsoleReporter::ReportRuns(reports);
    }

    Medians medians;
};

} // namespace

void appendRuns(const unsigned char *pixels, std::ptrdiff_t stride, int width, int height, Runs &runs) {
    for (int y = 0; y < height; ++y, pixels += stride) {
        const unsigned char *end = pixels + width;
        for (const unsigned char *at = pixels; at < end;) {
            // Eight empty pixels at a time, then the run's end by memchr: as fast as a plain scan gets.
            std::uint64_t eight;
            while (end - at >= 8 && (std::memcpy(&eight, at, 8), eight == 0))
                at += 8;
            while (at < end && *at == 0)
                ++at;
            if (at == end)
                break;
            const void *gap = std::memchr(at, 0, static_cast<std::size_t>(end - at));
            const unsigned char *stop = gap ? static_cast<const unsigned char *>(gap) : end;
            runs.push_back({static_cast<std::uint16_t>(at - pixels), static_cast<std::uint16_t>(y),
                            static_cast<std::uint16_t>(stop - at)});
            at = stop;
        }
    }
}

} // namespace bench

int main(int argc, char **argv) {
    // Several short repetitions, interleaved, so that whatever else the machine does falls on everybody alike.
    std::vector<char *> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=7";
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char aggregates[] = "--benchmark_report_aggregates_only=true";
    char minimum[] = "--benchmark_min_time=0.02";
    arguments.insert(arguments.begin() + 1, {repetitions, interleaving, aggregates, minimum});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()) || !bench::everybodyDrewTheSame())
        return 1;
    bench::registerAll();
    bench::KeepingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    bench::printRatios(reporter.medians);
    return 0;
}
