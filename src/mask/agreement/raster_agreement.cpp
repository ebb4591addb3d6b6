// SPDX-License-Identifier: MIT
// The platform's rasterizer against the portable engine: seeded figures filled by both, segments flattened and sampled
// by both, and the golden vectors. For people with a real Windows machine: there the two should not differ at all.
//
//   raster_agreement [--count N] [--large N] [--curves N] [--seed N] [--tolerance PIXELS] [--stray N] [--report FILE]
//
// Polygons and axis-parallel outlines must agree to the pixel. Curves may differ within `tolerance` pixels of the
// figure's edges (default 0; Wine rounds the vertices of curves to whole pixels and needs 3; vertices themselves are
// not judged then), in all but `stray` pictures. The report is a page of text to send to somebody. Exit code 0 when
// they agree, 1 when they do not, 2 when the arguments make no sense or the platform has no rasterizer of its own.

#include <cstdlib>
#include <cstring>

#include "mask/agreement/findings.h"
#include "platform/native_raster.h"

namespace {

using agreement::Findings;
using agreement::Options;

bool parse(int argc, char **argv, Options &options) {
    for (int i = 1; i < argc; i += 2) {
        if (i + 1 == argc)
            return false;
        const std::string name = argv[i];
        if (name == "--report") {
            options.report = argv[i + 1];
            continue;
        }
        char *end = nullptr;
        const long value = std::strtol(argv[i + 1], &end, 10);
        if (end == argv[i + 1] || *end != '\0' || value < 0 || value > 100000000)
            return false;
        const int number = static_cast<int>(value);
        if (name == "--count")
            options.count = number;
        else if (name == "--large")
            options.large = number;
        else if (name == "--curves")
            options.curves = number;
        else if (name == "--seed")
            options.seed = static_cast<std::uint32_t>(value);
        else if (name == "--tolerance")
            options.tolerance = number;
        else if (name == "--stray")
            options.stray = number;
        else
            return false;
    }
    return true;
}

bool writeReport(const Findings &findings, const Options &options) {
    std::FILE *const file = std::fopen(options.report.c_str(), "w");
    if (!file)
        return false;
    findings.write(file, options);
    return std::fclose(file) == 0;
}

} // namespace

int main(int argc, char **argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::fprintf(stderr,
                     "usage: raster_agreement [--count N] [--large N] [--curves N] [--seed N] [--tolerance PIXELS] "
                     "[--stray N] [--report FILE]\n");
        return 2;
    }
    if (!platform::hasNativeRaster()) {
        std::fprintf(stderr, "this platform has no rasterizer of its own to compare with\n");
        return 2;
    }
    Findings findings;
    compareGolden(options, findings);
    compareCurves(options, findings);
    compareFills(options, findings);
    findings.write(stdout, options);
    if (!options.report.empty() && !writeReport(findings, options)) {
        std::fprintf(stderr, "cannot write %s\n", options.report.c_str());
        return 2;
    }
    return findings.agreed() ? 0 : 1;
}
