// SPDX-License-Identifier: MIT
#include "mask/encode.h"

#include <memory>

#include "mask/fill.h"
#include "mask/filter_sink.h"
#include "mask/fraction_sink.h"
#include "mask/run_sinks.h"
#include "mask/surface_scan.h"

namespace Quill {
namespace {

template <typename Sink>
void encodeDirect(RasterScratch &scratch, const EncodeJob &job, Sink &sink) {
    // A surface that cannot be made is all background, however large.
    if (canMakeSurface(job.width, job.height))
        buildOutline(job.points, job.count, {job.width, job.height}, scratch.polyline);
    else
        scratch.polyline.clear();
    const int columns = std::min(job.width, kMaxEncodedWidth);
    if (!job.invert && !job.exclusion) {
        sweepPolyline(scratch, columns, job.height, sink);
        return;
    }
    FilterSink filter(sink, {job.invert, job.exclusion, job.width, columns});
    sweepPolyline(scratch, columns, job.height, filter);
}

template <typename Sink>
void encodeThroughSurface(RasterEngine engine, const EncodeJob &job, Sink &sink) {
    const auto stride = static_cast<int>(surfaceStride(job.width));
    const auto bits =
        std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(stride) * static_cast<std::size_t>(job.height));
    const MaskSurface surface{bits.get(), job.width, job.height, stride};
    fillOutline(engine, surface, job.points, job.count);
    scanSurface(surface, std::min(job.width, kMaxEncodedWidth), job.invert, job.exclusion, sink);
}

template <typename Sink>
void encode(const EncodeContext &context, const EncodeJob &job, Sink sink) {
    if (context.route == EncodeRoute::Direct || !canMakeSurface(job.width, job.height))
        encodeDirect(context.scratch, job, sink);
    else
        encodeThroughSurface(context.engine, job, sink);
}

} // namespace

EncodeRoute defaultEncodeRoute() {
    return maskEngine() == RasterEngine::Native ? EncodeRoute::Surface : EncodeRoute::Direct;
}

const PodBuffer<MaskRun> &encodeRuns(const EncodeContext &context, const EncodeJob &job) {
    encode(context, job, RunSink(context.scratch.runs));
    return context.scratch.runs;
}

const PodBuffer<std::uint16_t> &encodeRowList(const EncodeContext &context, const EncodeJob &job) {
    encode(context, job, RowListSink(context.scratch.values));
    return context.scratch.values;
}

const PodBuffer<MaskRunF> &encodeFractions(const EncodeContext &context, const EncodeJob &job, std::int32_t originX,
                                           std::int32_t originY) {
    encode(context, job, FractionSink(context.scratch.fractions, {originX, originY, job.width, job.height}));
    return context.scratch.fractions;
}

} // namespace Quill
