// SPDX-License-Identifier: MIT
#include "binding/opaque_chain.h"

#include <utility>

namespace binding {

namespace {

/// Where a walk in single steps and one in double steps from `head` meet, which they do in a circle; else null.
OpaqueObject *meetingPoint(OpaqueObject *head) {
    OpaqueObject *slow = head;
    OpaqueObject *fast = head;
    do {
        fast = fast ? nextInChain(fast) : nullptr;
        fast = fast ? nextInChain(fast) : nullptr;
        slow = nextInChain(slow);
    } while (fast && fast != slow);
    return fast;
}

} // namespace

std::size_t chainLength(OpaqueObject *head) {
    std::size_t length = 0;
    OpaqueObject *inCircle = meetingPoint(head);
    OpaqueObject *object = head;
    // In a circle: up to where it is entered, which is as far from the head as from the meeting point; then once
    // around.
    for (; object && object != inCircle; object = nextInChain(object), ++length) {
        if (inCircle)
            inCircle = nextInChain(inCircle);
    }
    if (!object)
        return length;
    do {
        object = nextInChain(object);
        ++length;
    } while (object != inCircle);
    return length;
}

bool chainReaches(OpaqueObject *head, const OpaqueObject *target) {
    OpaqueObject *object = head;
    for (std::size_t left = chainLength(head); left > 0; --left, object = nextInChain(object)) {
        if (object == target)
            return true;
    }
    return false;
}

void releaseChain(PyObject *head) {
    while (head) {
        // A link that goes with this reference gives up the next one first: its own release would recurse.
        OpaqueObject *const last = Py_REFCNT(head) == 1 ? asOpaque(head) : nullptr;
        PyObject *const following = last ? std::exchange(last->next, nullptr) : nullptr;
        Py_DECREF(head);
        head = following;
    }
}

} // namespace binding
