// SPDX-License-Identifier: MIT
// Writing a run list as a picture, for diagnosis.

#include "callback/py_ref.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/run_bitmap.h"
#include "platform/png_file.h"

int Orvanel::DumpBitmap(PyObject *runs, PyObject *size, PyObject *path) {
    const std::vector<Quill::MaskRunF> parsed = readRunList(runs);
    int width = 0;
    int height = 0;
    parseIntPair(size, width, height);
    // Nothing is reported, so no error of a malformed argument may stay behind either.
    PyErr_Clear();
    const overlay::RunBitmap bitmap = overlay::drawRunBitmap(parsed, width, height);
    if (path && PyString_Check(path) && !bitmap.pixels.empty()) {
        // A failed save is nobody's concern: the picture is an aid for whoever looks for it.
        platform::writePng(PyString_AS_STRING(path), platform::PngPixels::Indexed8, bitmap.width, bitmap.height,
                           bitmap.stride, bitmap.pixels.data());
    }
    return 0;
}
