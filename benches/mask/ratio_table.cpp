// SPDX-License-Identifier: MIT
#include "ratio_table.h"

#include <algorithm>
#include <cstdio>

#include "shapes.h"

namespace bench {
namespace {

double find(const Medians &medians, const std::string &contender, const std::string &input) {
    const auto found = medians.find(contender + "/" + input);
    return found == medians.end() ? 0 : found->second;
}

struct Best {
    double seconds = 0;
    const char *name = "";
};

Best bestPeer(const Medians &medians, const std::string &input) {
    Best best;
    for (const Contender &contender : contenders()) {
        const double seconds = contender.isPeer ? find(medians, contender.name, input) : 0;
        if (seconds > 0 && (best.seconds == 0 || seconds < best.seconds))
            best = {seconds, contender.name};
    }
    return best;
}

/// Times faster than the best peer that is promised for this input, or 0.
double promised(const std::string &input) {
    static const std::map<std::string, double> promises{
        {"24/1080p", 10}, {"24/4K", 15}, {"24/8K", 15}, {"200/1080p", 5}, {"1000/1080p", 3}};
    const auto found = promises.find(input);
    return found == promises.end() ? 0 : found->second;
}

void printRow(const Medians &medians, const std::string &input) {
    const double direct = find(medians, "direct", input);
    const Best best = bestPeer(medians, input);
    const double surface = find(medians, "surface", input);
    const double memset = find(medians, "memset", input.substr(input.find('/') + 1));
    if (direct == 0)
        return;
    std::printf("%-13s %9.2f us", input.c_str(), direct * 1e6);
    if (best.seconds > 0)
        std::printf(" %8.1f x %-8s %9.1f us", best.seconds / direct, best.name, best.seconds * 1e6);
    if (surface > 0)
        std::printf(" %8.0f x surface", surface / direct);
    if (memset > 0)
        std::printf(" %8.4f of memset", direct / memset);
    const double promise = promised(input);
    if (promise > 0 && best.seconds > 0)
        std::printf("  promised %2.0f x: %s", promise, best.seconds / direct >= promise ? "held" : "MISSED");
    std::printf("\n");
}

} // namespace

void printRatios(const Medians &medians) {
    std::printf(
        "\noutline to runs, medians; faster than the best of cairo, AGG, FreeType and OpenCV; than clear, fill and "
        "scan; part of one memset of the surface\n");
    for (const Shape &shape : kShapes)
        for (const Size &size : kSizes)
            printRow(medians, std::string(shape.name) + "/" + size.name);
    const double direct = find(medians, "direct", "24/1080p");
    const double surface = find(medians, "surface", "24/1080p");
    if (direct > 0 && surface > 0)
        std::printf("against clear + fill + scan at 1080p: %.0f x, promised 100 x: %s\n", surface / direct,
                    surface / direct >= 100 ? "held" : "MISSED");
    for (const char *encoding : {"rowlist", "normalised", "inverted"})
        if (const double seconds = find(medians, encoding, "24/1080p"); seconds > 0)
            std::printf("%s, 24/1080p: %.2f us\n", encoding, seconds * 1e6);
}

} // namespace bench
