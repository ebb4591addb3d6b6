// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "mask/columns.h"
#include "mask/flatten.h"

namespace Quill::lanes {

struct IntPair {
    std::int32_t x;
    std::int32_t y;

    explicit IntPair(FixedPoint point) : x(point.x), y(point.y) {}
    IntPair(std::int32_t px, std::int32_t py) : x(px), y(py) {}

    friend IntPair operator+(IntPair a, IntPair b) { return {a.x + b.x, a.y + b.y}; }
    friend IntPair operator-(IntPair a, IntPair b) { return {a.x - b.x, a.y - b.y}; }
    IntPair shiftedLeft(int bits) const { return {x * (1 << bits), y * (1 << bits)}; }
    IntPair shiftedRight(int bits) const { return {x >> bits, y >> bits}; }
    void store(FixedPoint *out) const { *out = {x, y}; }

    /// Whether a value of either pair is larger than `limit` in magnitude.
    static bool anyExceeds(IntPair a, IntPair b, std::int32_t limit) {
        const auto exceeds = [limit](std::int32_t value) { return value > limit || value < -limit; };
        return exceeds(a.x) || exceeds(a.y) || exceeds(b.x) || exceeds(b.y);
    }
};

/// Eight rows of an edge: 32.32 fixed-point columns less kColumnBias.
class FixedRows {
  public:
    FixedRows(std::uint64_t value, std::uint64_t step) : m_value(value), m_step(step) {}

    /// Writes the integer parts of the next eight rows, limited to what a stored column can be.
    void storeNext(StoredColumn *out) {
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i, m_value += m_step) {
            const auto whole = static_cast<std::int32_t>(m_value >> 32);
            out[i] = static_cast<StoredColumn>(std::clamp<std::int32_t>(whole, INT16_MIN, INT16_MAX));
        }
    }

  private:
    std::uint64_t m_value;
    std::uint64_t m_step;
};

/// One stored column for each of eight rows.
class Columns {
  public:
    Columns() = default;
    explicit Columns(StoredColumn everywhere) { std::fill_n(m_rows, kRowsAtOnce, everywhere); }

    static Columns load(const StoredColumn *rows) {
        Columns columns;
        std::copy_n(rows, kRowsAtOnce, columns.m_rows);
        return columns;
    }
    /// The last row first in memory.
    static Columns loadReversed(const StoredColumn *rows) {
        Columns columns;
        std::reverse_copy(rows, rows + kRowsAtOnce, columns.m_rows);
        return columns;
    }
    void store(StoredColumn *out) const { std::copy_n(m_rows, kRowsAtOnce, out); }

    static Columns min(Columns a, const Columns &b) {
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i)
            a.m_rows[i] = std::min(a.m_rows[i], b.m_rows[i]);
        return a;
    }
    static Columns max(Columns a, const Columns &b) {
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i)
            a.m_rows[i] = std::max(a.m_rows[i], b.m_rows[i]);
        return a;
    }
    static bool anyEqual(const Columns &a, const Columns &b) {
        bool equal = false;
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i)
            equal |= a.m_rows[i] == b.m_rows[i];
        return equal;
    }

    /// These on rows first .. end - 1 of the eight, `others` elsewhere.
    Columns onlyWithin(std::int32_t first, std::int32_t end, Columns others) const {
        for (std::int32_t i = std::max(first, 0); i < std::min(end, kRowsAtOnce); ++i)
            others.m_rows[i] = m_rows[i];
        return others;
    }

    /// Eight records (column, row, length) of six bytes each, from span ends of which no two are equal.
    static void storeRuns(const Columns &first, const Columns &end, std::uint16_t row, std::uint8_t *out) {
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i)
            storeTriple(columnOf(first.m_rows[i]), row + i, end.m_rows[i] - first.m_rows[i], out + 6 * i);
    }
    /// Eight records (2, column, last column) likewise.
    static void storeRowLists(const Columns &first, const Columns &end, std::uint8_t *out) {
        for (std::int32_t i = 0; i < kRowsAtOnce; ++i)
            storeTriple(2, columnOf(first.m_rows[i]), columnOf(end.m_rows[i]) - 1, out + 6 * i);
    }

  private:
    static void storeTriple(std::int32_t a, std::int32_t b, std::int32_t c, std::uint8_t *out) {
        const std::uint16_t triple[3] = {static_cast<std::uint16_t>(a), static_cast<std::uint16_t>(b),
                                         static_cast<std::uint16_t>(c)};
        std::memcpy(out, triple, sizeof triple);
    }

    StoredColumn m_rows[kRowsAtOnce];
};

} // namespace Quill::lanes
