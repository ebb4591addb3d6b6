// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include "mask/mask_handler.h"

/// Fills a record without points with the outline between two others, at its own duration. std::bad_alloc without
/// memory: the routine behind it reports success whatever happens, and leaves the record as it was.
inline void fillBetween(const Quill::KeyFrameMaskInfo &earlier, const Quill::KeyFrameMaskInfo &later,
                        Quill::KeyFrameMaskInfo &between) {
    Quill::MaskHandler::CalcKeyFrame(earlier, later, between, false);
    if (between.pointsF.size() != earlier.pointsF.size())
        throw std::bad_alloc();
}
