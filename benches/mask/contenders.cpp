// SPDX-License-Identifier: MIT
#include "rasterizer.h"

namespace bench {

const std::vector<Contender> &contenders() {
    static const std::vector<Contender> all = [] {
        std::vector<Contender> list = {{"direct", makeDirect, false}, {"surface", makeSurface, false}};
        for (const Contender &peer : peers())
            list.push_back(peer);
        return list;
    }();
    return all;
}

} // namespace bench
