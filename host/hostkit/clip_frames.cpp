// SPDX-License-Identifier: MIT
#include "hostkit/clip_frames.h"

#include <utility>

namespace hostkit {

bool ClipFrames::read(long long number, Image &image) {
    if (number < 0)
        return false;
    // Unknown until the frame is there: the decoder may throw anywhere in between.
    long long next = std::exchange(next_, -1);
    if (next < 0 || number < next) {
        reader_.rewind();
        next = 0;
    }
    for (; next < number; ++next)
        if (!reader_.skip())
            return false;
    if (!reader_.read(image))
        return false;
    next_ = number + 1;
    return true;
}

} // namespace hostkit
