// SPDX-License-Identifier: MIT
#include "hostkit/video_syncer.h"

namespace hostkit {

LONGLONG STDMETHODCALLTYPE VideoSyncer::GetTolerance(LONGLONG duration) {
    const LONGLONG frame = clock_.frameAt(duration);
    if (frame < 0 || frame >= clock_.frameCount())
        return 0;
    const LONGLONG next = frame + 1 < clock_.frameCount() ? clock_.startOf(frame + 1) : clock_.end();
    return next - 1 - duration;
}

} // namespace hostkit
