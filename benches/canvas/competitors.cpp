// SPDX-License-Identifier: MIT
#include "benches/canvas/drawer.h"
#include "canvas/testing/png.h"

namespace bench {

std::vector<MakeDrawer> drawers() {
    return {makeOwnDrawer, makeAggDrawer, makeCairoDrawer};
}

void writePictures(const std::string &folder, const canvas::testing::Scene &scene) {
    const int width = static_cast<int>(scene.width);
    const int height = static_cast<int>(scene.height);
    for (const MakeDrawer make : drawers()) {
        const auto drawer = make();
        drawer->resize(width, height);
        drawer->redraw(scene);
        canvas::testing::writePicture(folder + "/redraw_" + drawer->name() + ".png", drawer->picture());
        drawer->resize(width, height);
        drawer->stroke(scene.points);
        canvas::testing::writePicture(folder + "/stroke_" + drawer->name() + ".png", drawer->picture());
    }
}

} // namespace bench
