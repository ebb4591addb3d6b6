// SPDX-License-Identifier: MIT
//
// _hostkit: what a host supplies to the module, for Python 2.7. The point records, the keyframe record and the syncer's
// interface are registered under the names that the module knows, so its entries accept objects made here.
//
// HOSTKIT_WITHOUT_MEDIA leaves out what needs the video and picture libraries; records, clock and syncer remain.

%module(threads="1", moduleimport="import _hostkit") hostkit

%{
#include <new>
#include <stdexcept>

#include "hostkit/error.h"
#include "hostkit/frame_clock.h"
#include "hostkit/video_syncer.h"
#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/video_texture_syncer.h"
%}

#ifndef HOSTKIT_WITHOUT_MEDIA
%{
#include "hostkit/composite.h"
#include "hostkit/clip_index.h"
#include "hostkit/contact_sheet.h"
#include "hostkit/grade.h"
#include "hostkit/image.h"
#include "hostkit/mask.h"
#include "hostkit/mask_png.h"
#include "hostkit/png_writer.h"
#include "hostkit/preview_renderer.h"
#include "hostkit/render_pipeline.h"
#include "hostkit/scale.h"
#include "hostkit/text.h"
#include "hostkit/video_reader.h"
#include "hostkit/video_writer.h"
#include "hostkit/window.h"
%}
#endif

%include "stdint.i"
%include "std_string.i"
%include "std_vector.i"
%include "exception.i"

// Only the operations named further down let other Python threads run: for a getter the hand-over costs more than the call.
%nothread;

%exception {
    try {
        $action
    } catch (const hostkit::MediaError &error) {
        SWIG_exception(SWIG_IOError, error.what());
    } catch (const std::invalid_argument &error) {
        SWIG_exception(SWIG_ValueError, error.what());
    } catch (const std::out_of_range &error) {
        SWIG_exception(SWIG_IndexError, error.what());
    } catch (const std::bad_alloc &) {
        SWIG_exception(SWIG_MemoryError, "out of memory");
    } catch (const std::exception &error) {
        SWIG_exception(SWIG_RuntimeError, error.what());
    }
}

// --- Records of the boundary --------------------------------------------------------------------------------------

#define STDMETHODCALLTYPE
typedef unsigned char BYTE;
typedef unsigned int UINT;
typedef long long LONGLONG;

%ignore operator==;
%include "overlay/types/outline_points.h"
%template(MPointVector) std::vector<MPoint>;
%template(MPointFVector) std::vector<MPointF>;
%template(UIntVector) std::vector<unsigned int>;
%template(ByteVector) std::vector<unsigned char>;
%template(LongLongVector) std::vector<long long>;

// A record that GetKeyFrameMaskInfo made belongs to nobody until the host takes it: see orvanel.py.
%include "overlay/types/keyframe_mask_info.h"
%include "overlay/types/video_texture_syncer.h"

%include "hostkit/frame_clock.h"
%include "hostkit/video_syncer.h"

#ifndef HOSTKIT_WITHOUT_MEDIA
// --- Pictures and masks -------------------------------------------------------------------------------------------

%thread hostkit::Mask::setRuns;
%thread hostkit::Mask::feather;
%thread hostkit::Grade::applyInside;
%thread hostkit::compositeOverlay;
%thread hostkit::writePng;
%thread hostkit::scaled;
%thread hostkit::ContactSheet::add;
%thread hostkit::ContactSheet::compose;
%thread hostkit::ClipIndex::ClipIndex;
%thread hostkit::ClipIndex::step;
%thread hostkit::VideoReader::VideoReader;
%thread hostkit::VideoReader::~VideoReader;
%thread hostkit::VideoReader::read;
%thread hostkit::VideoReader::skip;
%thread hostkit::VideoReader::rewind;
%thread hostkit::VideoWriter::VideoWriter;
%thread hostkit::VideoWriter::write;
%thread hostkit::VideoWriter::finish;

// Runs come as the list of tuples that Convert2SelectionLineUS builds. It is read before the interpreter is let go.
%{
namespace {

/// False with a Python error set when `list` is not one of (x, y, length) tuples.
bool readRuns(PyObject *list, std::vector<hostkit::MaskRun> &runs) {
    PyObject *const sequence = PySequence_Fast(list, "");
    bool readable = sequence != nullptr;
    const Py_ssize_t count = readable ? PySequence_Fast_GET_SIZE(sequence) : 0;
    runs.resize(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; readable && i < count; ++i) {
        PyObject *const item = PySequence_Fast_GET_ITEM(sequence, i);
        hostkit::MaskRun &run = runs[static_cast<std::size_t>(i)];
        readable = PyTuple_Check(item) && PyArg_ParseTuple(item, "ddd", &run.x, &run.y, &run.length);
    }
    Py_XDECREF(sequence);
    if (!readable)
        PyErr_SetString(PyExc_TypeError, "runs have to be a list of (x, y, length) tuples");
    return readable;
}

} // namespace
%}
%typemap(in) const std::vector<hostkit::MaskRun> & (std::vector<hostkit::MaskRun> storage) {
    if (!readRuns($input, storage))
        SWIG_fail;
    $1 = &storage;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_VECTOR) const std::vector<hostkit::MaskRun> & {
    $1 = PySequence_Check($input);
}

%ignore hostkit::Image::Image(Image &&);
%ignore hostkit::Image::operator=;
%ignore hostkit::Image::row;
%ignore hostkit::Mask::row;
%ignore hostkit::MaskRun;
%ignore hostkit::Planes;
%ignore hostkit::Grade::applyInside(const Planes &, const Mask &) const;
%ignore hostkit::Grade::apply;
%ignore hostkit::Grade::Block;
%ignore hostkit::Grade::Light;
%include "hostkit/image.h"
%include "hostkit/mask.h"
%include "hostkit/grade.h"
%include "hostkit/composite.h"
%include "hostkit/png_writer.h"
%ignore hostkit::encodePng;
%include "hostkit/mask_png.h"
%include "hostkit/text.h"
%ignore hostkit::ContactSheet::add(const PartOf &, const PartOf &, const Mask &, const std::string &, bool);
%include "hostkit/contact_sheet.h"
namespace hostkit {
Image scaled(const Image &image, const PixelRect &source, int width, int height);
}

// --- Video --------------------------------------------------------------------------------------------------------

%template(StringVector) std::vector<std::string>;
%ignore hostkit::ClipIndex::positions;
%extend hostkit::ClipIndex {
    std::vector<long long> times() const { return $self->positions(); }
}
%include "hostkit/clip_index.h"
%ignore hostkit::VideoReader::format;
%ignore hostkit::VideoReader::readFrame;
%ignore hostkit::VideoReader::copyMetadata;
%ignore hostkit::VideoWriter::write(const AVFrame &);
%include "hostkit/video_reader.h"
%include "hostkit/video_writer.h"

// --- The renderer -------------------------------------------------------------------------------------------------

// The module reads window, Direct3D object and device out of these methods' results, and the renderer the texture map out
// of the module's: all of them are opaque objects, whose types are nobody's business here.
typedef struct HWND__ *HWND;
%include "hostkit/window.h"

// Whatever waits for the renderer's thread lets other Python threads run: that thread may wait for one of them.
%thread hostkit::PreviewRenderer::~PreviewRenderer;
%thread hostkit::PreviewRenderer::render;
%thread hostkit::PreviewRenderer::hold;
%thread hostkit::PreviewRenderer::pause;
%thread hostkit::PreviewRenderer::latest;
%thread hostkit::PreviewRenderer::close;
%pythonappend hostkit::PreviewRenderer::PreviewRenderer %{
        self._kept = reader, syncer
%}
%ignore hostkit::PreviewRenderer::overlay;
%thread hostkit::PreviewRenderer::refresh;
%include "hostkit/preview_renderer.h"

%thread hostkit::RenderPipeline::RenderPipeline;
%thread hostkit::RenderPipeline::~RenderPipeline;
%thread hostkit::RenderPipeline::submit;
%thread hostkit::RenderPipeline::finish;
%thread hostkit::RenderPipeline::close;
%pythonappend hostkit::RenderPipeline::RenderPipeline %{
        self._kept = reader, sheet
%}
%include "hostkit/render_pipeline.h"
#endif
