// SPDX-License-Identifier: MIT
#pragma once

#include "rasterizer.h"

namespace bench {

std::unique_ptr<Rasterizer> makeCairo(int width, int height);
std::unique_ptr<Rasterizer> makeAgg(int width, int height);
std::unique_ptr<Rasterizer> makeFreeType(int width, int height);
std::unique_ptr<Rasterizer> makeOpenCv(int width, int height);

} // namespace bench
