// SPDX-License-Identifier: MIT
#include "texture/pointer_extraction.h"

#include <atomic>

namespace {
std::atomic<PointerExtractor> extractor{nullptr};
}

PointerExtractor registerPointerExtractor(PointerExtractor replacement) {
    return extractor.exchange(replacement);
}

bool extractPointer(PyObject *object, void **pointer) {
    *pointer = nullptr;
    const PointerExtractor extract = extractor;
    return extract && extract(object, pointer) && *pointer;
}
