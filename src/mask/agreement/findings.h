// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace agreement {

struct Options {
    int count = 10000; ///< pictures of up to 200 x 160
    int large = 40;    ///< pictures of up to 8K
    int curves = 4000; ///< segments, flattened and sampled
    std::uint32_t seed = 1;
    int tolerance = 0;  ///< pixels off an edge that a curve's pixels may be
    int stray = 0;      ///< pictures that may go beyond that
    std::string report; ///< file for the summary
};

/// One line of the summary.
struct Section {
    std::string name;
    std::size_t compared = 0;
    std::size_t differing = 0;
    std::string detail;
    bool held = true;
};

/// What was found, for people: places while it is being found, a summary at the end.
class Findings {
  public:
    /// Prints a place where the two differ, for the first few of each section.
    void place(const char *section, const std::string &text);
    void add(Section section) { m_sections.push_back(std::move(section)); }
    void note(std::string text) { m_notes.push_back(std::move(text)); }

    bool agreed() const;
    /// Everything that is worth sending, rasterizer and verdict included.
    void write(std::FILE *file, const Options &options) const;

  private:
    static constexpr int kMostPlaces = 5;

    std::string m_placed;
    int m_places = 0;
    std::vector<Section> m_sections;
    std::vector<std::string> m_notes;
};

void compareFills(const Options &options, Findings &findings);
void compareCurves(const Options &options, Findings &findings);
void compareGolden(const Options &options, Findings &findings);

} // namespace agreement
