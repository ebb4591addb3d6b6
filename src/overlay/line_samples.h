// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "mask/mask_handler.h"
#include "overlay/types/outline_points.h"

/// The outline sampled along its segments, for finding the segment under the pointer: one list of points a segment, as
/// Quill::MaskHandler::GenAllPoints makes them, made when the pointer comes near.
///
/// A large outline has tens of millions of such points, and a pointer is near a few thousand. So straight segments are
/// never listed: which of their points is near follows from where the pointer is. Bent ones are sampled when the
/// pointer comes into the box around their control points. The latest lists are kept; of the others the boxes around
/// their parts are, so that a segment is sampled again only when the pointer comes close to its curve.
class LineSamples {
  public:
    /// Takes another outline; `density` is the display width (a finer list on a wider display). Fewer than two points
    /// change nothing, but no points at all leave nothing to find.
    void rebuild(const std::vector<MPoint> &outline, int density, int height);

    struct Hit {
        std::int32_t segment;
        MPoint sample;
    };
    /// The highest-numbered segment with a sample within `tolerance` pixels on both axes, and its first such sample.
    std::optional<Hit> find(std::int32_t x, std::int32_t y, std::int32_t tolerance);

    /// Samples that are kept at present.
    std::size_t keptSamples() const { return m_kept; }
    /// Samples made so far.
    std::uint64_t madeSamples() const { return m_made; }

    /// Samples that are kept at most, but for those of one list that has more: a megabyte. Without repeats that is an
    /// outline of some hundred thousand pixels, whole.
    static constexpr std::size_t kMostKept = std::size_t{1} << 17;

  private:
    struct Position {
        std::int32_t x, y;
    };
    struct Box {
        std::int32_t left, top, right, bottom; ///< inclusive; left > right: empty

        static Box around(const Position &position) { return {position.x, position.y, position.x, position.y}; }
        void add(const Position &position);
        bool isNear(std::int32_t x, std::int32_t y, std::int32_t tolerance) const;
    };
    static constexpr std::int32_t kNone = -1;
    static constexpr std::size_t kParts = 16;

    struct Segment {
        bool isLine;
        std::int32_t start; ///< a line's first point, or that before a curve's controls
        std::int32_t end;
        Box reach;                  ///< of a curve: holds every sample
        std::int32_t parts = kNone; ///< of a curve that has been sampled: first of kParts in m_parts
        std::int32_t list = kNone;  ///< of a curve: in m_lists
    };
    /// Samples of one curve, without those that repeat the one before.
    struct List {
        std::int32_t segment = kNone;
        bool isUsed = false; ///< since it was last considered for going
        std::vector<Position> samples;
    };

    void addCurve(std::int32_t start, std::int32_t end);
    std::optional<MPoint> firstNear(Segment &segment, std::int32_t x, std::int32_t y, std::int32_t tolerance);
    bool isPartNear(const Segment &segment, std::int32_t x, std::int32_t y, std::int32_t tolerance) const;
    const std::vector<Position> &samplesOf(Segment &segment);
    std::size_t freeList();
    void drop(List &list);
    void makeRoom(std::size_t newest);
    void sample(const Segment &segment, std::vector<Position> &samples);
    void boxParts(Segment &segment, const std::vector<Position> &samples);

    std::vector<MPoint> m_outline;
    int m_density = 0;
    std::vector<Segment> m_segments;
    std::vector<Box> m_parts;
    std::vector<List> m_lists;
    std::vector<std::size_t> m_free; ///< of m_lists
    std::size_t m_next = 0;          ///< of m_lists: the next to be considered for going
    std::size_t m_kept = 0;
    std::uint64_t m_made = 0;
    std::vector<MPoint> m_points; ///< of the curve being sampled
};
