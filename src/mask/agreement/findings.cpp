// SPDX-License-Identifier: MIT
#include "mask/agreement/findings.h"

#include <algorithm>

#include "platform/native_raster.h"

namespace agreement {

void Findings::place(const char *section, const std::string &text) {
    if (m_placed != section)
        m_places = 0;
    m_placed = section;
    if (m_places++ < kMostPlaces)
        std::printf("  %s: %s\n", section, text.c_str());
}

bool Findings::agreed() const {
    return std::all_of(m_sections.begin(), m_sections.end(), [](const Section &section) { return section.held; });
}

void Findings::write(std::FILE *file, const Options &options) const {
    std::fprintf(file, "raster_agreement, %s, seed %lu, tolerance %d\n", platform::nativeRasterName().c_str(),
                 static_cast<unsigned long>(options.seed), options.tolerance);
    std::fprintf(file, "%-34s %9s %9s\n", "", "compared", "differ");
    for (const Section &section : m_sections) {
        if (section.compared == 0 && section.held)
            continue;
        std::fprintf(file, "%-34s %9lu %9lu  %s%s\n", section.name.c_str(),
                     static_cast<unsigned long>(section.compared), static_cast<unsigned long>(section.differing),
                     section.detail.c_str(), section.held ? "" : "  <- HAS TO AGREE");
    }
    for (const std::string &note : m_notes)
        std::fprintf(file, "%s\n", note.c_str());
    std::fprintf(file, "%s\n",
                 agreed() ? "They agree."
                          : "THEY DO NOT AGREE: please send this summary to whoever gave you the program.");
}

} // namespace agreement
