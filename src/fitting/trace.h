// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "fitting/border.h"

namespace fitting {

/// Where an anchor stands: the place of its pixel in Border::pixels(), or nothing when it is on no border pixel.
using BorderPlace = std::optional<std::uint32_t>;

/// The anchors that stand on the border, by number, in the order in which a walk along the border meets them. Each
/// number comes once; the first one is the lowest. Of the two ways round, the one that keeps more anchors behind the
/// one they follow now. Anchors on one pixel keep their order.
std::vector<std::uint32_t> traceAnchors(const BitPicture &mask, const Border &border,
                                        std::span<const BorderPlace> anchors);

} // namespace fitting
