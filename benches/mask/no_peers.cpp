// SPDX-License-Identifier: MIT
#include "rasterizer.h"

namespace bench {

std::vector<Contender> peers() {
    return {};
}

} // namespace bench
