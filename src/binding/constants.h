// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/types/outline_points.h"

namespace binding {

struct Constant {
    const char *name;
    int value;
    const char *meaning;
};

/// The module's integers, in the order in which they are added.
inline constexpr Constant kConstants[] = {
    {"CONST_DEFAULT_IDX", CONST_DEFAULT_IDX, "no point: the default index"},
    {"ECB_POINT_ADD", ECB_POINT_ADD, "event: a point was added"},
    {"ECB_POINT_REMOVE", ECB_POINT_REMOVE, "event: a point was removed"},
    {"ECB_MASK_CREATE", ECB_MASK_CREATE, "event: the outline was closed for the first time"},
    {"ECB_MASK_UPDATE", ECB_MASK_UPDATE, "event: the mask changed"},
    {"ECB_MASK_REMOVE", ECB_MASK_REMOVE, "event: the mask was removed"},
    {"ECB_POINT_UPDATE", ECB_POINT_UPDATE, "event: a keyframe's points were loaded; comes from the worker thread"},
    {"ECS_MOUSE_MOVE", ECS_MOUSE_MOVE, "input: the mouse moved"},
    {"ECS_MOUSE_DOWN", ECS_MOUSE_DOWN, "input: the button was pressed"},
    {"ECS_MOUSE_UP", ECS_MOUSE_UP, "input: the button was released"},
    {"ECS_MOUSE_DBCLICK", ECS_MOUSE_DBCLICK, "input: double click"},
    {"ECS_DELETE", ECS_DELETE, "input: the delete key"},
    {"ECS_DELETE_LAST_POINT", ECS_DELETE_LAST_POINT, "input: delete the point appended last"},
};

} // namespace binding
