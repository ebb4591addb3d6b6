// SPDX-License-Identifier: MIT
#include "mask/raster_support_test.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "support/diag_log.h"
#include "support/log_recorder.h"

namespace Quill::test {
namespace {

using Rows = std::map<int, std::vector<std::pair<int, int>>>;

std::string asText(const Rows &rows) {
    std::string text;
    for (const auto &[row, runs] : rows) {
        text.append(text.empty() ? "" : "; ").append(std::to_string(row)).append(":");
        for (const auto &[first, last] : runs)
            text.append(" ").append(std::to_string(first)).append("-").append(std::to_string(last));
    }
    return text;
}

/// Collects rows; its own cursor.
class RowsSink {
  public:
    class Cursor {
      public:
        explicit Cursor(Rows &rows) : m_rows(&rows) {}
        void beginRow(std::int32_t row) { m_row = row; }
        void span(std::int32_t first, std::int32_t end) { (*m_rows)[m_row].emplace_back(first, end - 1); }
        void spanOrNone(std::int32_t first, std::int32_t end) {
            if (first != end)
                span(first, end);
        }
        void endRow() {}

      private:
        Rows *m_rows;
        int m_row = 0;
    };

    void emptyRows(RowRange) {}
    Cursor open(std::size_t, std::size_t) { return Cursor(rows); }
    void close(const Cursor &) {}

    Rows rows;
};

} // namespace

std::vector<MPoint> outline(const std::vector<XY> &points) {
    std::vector<MPoint> result;
    for (const XY &point : points) {
        MPoint record;
        record.type = result.size() % 3 == 0 ? kAnchorPoint : kControlPoint;
        record.x = point.x;
        record.y = point.y;
        result.push_back(record);
    }
    return result;
}

VertexBuffer polylineOf(const std::vector<XY> &pixels) {
    VertexBuffer polyline;
    for (const XY &pixel : pixels)
        polyline.push_back({toFixed(pixel.x), toFixed(pixel.y)});
    return polyline;
}

std::string filledRows(const VertexBuffer &polyline, int width, int height) {
    RasterScratch scratch;
    for (const FixedPoint &vertex : polyline)
        scratch.polyline.push_back(vertex);
    RowsSink sink;
    sweepPolyline(scratch, width, height, sink);
    return asText(sink.rows);
}

std::string asText(const std::vector<MaskRun> &runs) {
    Rows rows;
    for (const MaskRun &run : runs)
        rows[run.row].emplace_back(run.column, run.column + run.length - 1);
    return asText(rows);
}

std::string rowListAsText(const std::vector<std::uint16_t> &list) {
    Rows rows;
    int row = 0;
    for (std::size_t i = 0; i < list.size(); ++row) {
        const std::size_t count = list[i++];
        for (std::size_t end = i + count; i < end; i += 2)
            rows[row].emplace_back(list[i], list[i + 1]);
    }
    return asText(rows);
}

std::uint32_t fnvOf(const FixedPoint *begin, const FixedPoint *end) {
    Fnv hash;
    for (; begin != end; ++begin) {
        hash.add(begin->x);
        hash.add(begin->y);
    }
    return hash.value();
}

OwnedSurface::OwnedSurface(int w, int h)
    : width(w), height(h), stride(static_cast<int>(surfaceStride(w))),
      bytes(static_cast<std::size_t>(stride) * static_cast<std::size_t>(h), 0xAA), bits(bytes.data()) {}

std::uint8_t *OwnedSurface::pixel(int x, int y) {
    return bits + static_cast<std::ptrdiff_t>(y) * stride + static_cast<std::ptrdiff_t>(x) * kBytesPerPixel;
}

std::string OwnedSurface::rows() {
    Rows rows;
    for (int y = 0; y < height; ++y) {
        int first = -1;
        for (int x = 0; x <= width; ++x) {
            const bool in = x < width && pixelKey(pixel(x, y)) != kBackgroundKey;
            if (in) {
                EXPECT_EQ(pixelKey(pixel(x, y)), 0xFF0000u) << x << "," << y;
            }
            if (in && first < 0)
                first = x;
            if (!in && first >= 0) {
                rows[y].emplace_back(first, x - 1);
                first = -1;
            }
        }
    }
    return asText(rows);
}

std::vector<std::string> loggedLines(const std::function<void()> &body) {
    const bool before = diaglog::dumpEnabled;
    std::vector<std::string> lines;
    {
        const LogRecorder log;
        body();
        lines = log.messages();
    }
    diaglog::dumpEnabled = before;
    // Most formats end their line themselves; the recorder has taken the log's own line end away.
    for (std::string &line : lines)
        if (line.ends_with('\n'))
            line.pop_back();
    return lines;
}

} // namespace Quill::test
