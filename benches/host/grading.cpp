// SPDX-License-Identifier: MIT
// What grading one UHD frame costs on a thread of its own, step by step: the mask out of its runs and its picture, the
// soft edge, the copy that is graded, and the grade. The outline is an oval of a fifth of the picture, as the default
// edit's.
#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "hostkit/frame_format.h"
#include "hostkit/frame_pool.h"
#include "hostkit/grade.h"
#include "hostkit/mask_png.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixfmt.h>
}

namespace {

constexpr int kWidth = 3840, kHeight = 2160;
constexpr int kSoftPixels = 24, kSoftPasses = 2;

std::vector<hostkit::MaskRun> ovalRuns() {
    std::vector<hostkit::MaskRun> runs;
    for (int y = 0; y < kHeight; ++y) {
        const double fromMiddle = (y + 0.5 - kHeight / 2.0) / (0.3 * kHeight);
        if (std::abs(fromMiddle) >= 1)
            continue;
        const double half = std::round(0.235 * kWidth * std::sqrt(1 - fromMiddle * fromMiddle));
        runs.push_back({(kWidth / 2.0 - half) / kWidth, static_cast<double>(y) / kHeight, 2 * half / kWidth});
    }
    return runs;
}

hostkit::FrameFormat uhd(int pixelFormat) {
    hostkit::FrameFormat format;
    format.width = kWidth;
    format.height = kHeight;
    format.pixelFormat = pixelFormat;
    format.matrix = AVCOL_SPC_BT709;
    return format;
}

/// Brightness that rises across the picture, with a little grain, and colours that are neither grey nor extreme.
hostkit::SharedFrame makePicture(const hostkit::FrameFormat &format, hostkit::FramePool &pool) {
    hostkit::SharedFrame frame = pool.acquire(format.pixelFormat, kWidth, kHeight);
    const hostkit::Planes planes = planesOf(*frame, format);
    const int unit = 1 << (planes.depth - 8);
    std::uint32_t grain = 1;
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < (plane == 0 ? kHeight : planes.chromaHeight()); ++y)
            for (int x = 0; x < (plane == 0 ? kWidth : planes.chromaWidth()); ++x) {
                grain = grain * 1664525U + 1013904223U;
                const int smooth = plane == 0 ? 20 + 200 * x / kWidth : 110 + 40 * ((x / 64 + y / 64) % 2);
                const int code = (smooth + static_cast<int>(grain >> 29)) * unit;
                std::uint8_t *const row = planes.data[plane] + y * planes.stride[plane];
                if (planes.depth > 8)
                    reinterpret_cast<std::uint16_t *>(row)[x] = static_cast<std::uint16_t>(code);
                else
                    row[x] = static_cast<std::uint8_t>(code);
            }
    return frame;
}

void gradeUhd(benchmark::State &state, int pixelFormat) {
    const auto pool = hostkit::FramePool::make();
    const hostkit::FrameFormat format = uhd(pixelFormat);
    const hostkit::SharedFrame picture = makePicture(format, *pool);
    const std::vector<hostkit::MaskRun> runs = ovalRuns();
    const hostkit::Grade grade(0.5, 1.3);
    hostkit::Mask mask(kWidth, kHeight);
    for ([[maybe_unused]] auto _ : state) {
        mask.setRuns(runs);
        benchmark::DoNotOptimize(encodePng(mask, kWidth, kHeight));
        mask.feather(kSoftPixels, kSoftPasses);
        const hostkit::SharedFrame graded = pool->acquire(pixelFormat, kWidth, kHeight);
        av_frame_copy(graded.get(), picture.get());
        grade.applyInside(planesOf(*graded, format), mask);
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(gradeUhd, 8_bits, AV_PIX_FMT_YUV420P)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(gradeUhd, 10_bits, AV_PIX_FMT_YUV420P10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(gradeUhd, 10_bits_422, AV_PIX_FMT_YUV422P10)->Unit(benchmark::kMillisecond);

} // namespace
