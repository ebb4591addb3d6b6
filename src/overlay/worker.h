// SPDX-License-Identifier: MIT
#pragma once

#include "platform/event.h"

class Orvanel;

/// What the object and its worker thread share. The worker reports to the host that keyframe drawing loaded new points.
struct WorkerBlock {
    platform::Event stop{platform::Event::Reset::Manual, false};
    platform::Event done{platform::Event::Reset::Manual, false};
    platform::Event trigger{platform::Event::Reset::Automatic, false};
    Orvanel *owner = nullptr;
};
