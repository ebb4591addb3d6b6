// SPDX-License-Identifier: MIT
#include "peers.h"

namespace bench {

std::vector<Contender> peers() {
    return {{"cairo", makeCairo, true},
            {"agg", makeAgg, true},
            {"freetype", makeFreeType, true},
            {"opencv", makeOpenCv, true}};
}

} // namespace bench
