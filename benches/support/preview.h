// SPDX-License-Identifier: MIT
#pragma once

// A renderer's side of a texture map, for benches: a device, the Python object that hands it over, a syncer that stands
// still, and an interpreter that has been started.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "callback/interpreter_gate.h"
#include "callback/python.h"
#include "overlay/types/video_texture_syncer.h"
#include "platform/com_pointer.h"
#include "software_d3d9/device.h"
#include "texture/testing/python_host.h"

using Clock = std::chrono::steady_clock;

inline double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

class StillSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return 40; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }
};

/// The host's renderer object and the device behind it.
struct Renderer {
    const platform::ComPointer<software_d3d9::Device> device{software_d3d9::Device::make()};
    const CObjectExtractor extractor;
    const PythonHostObject host{
        {"GetRenderName", PythonHostObject::value("'D3D9'")},
        {"GetD3D", PythonHostObject::pointer(device->direct3D())},
        {"GetD3DDevice", PythonHostObject::pointer(static_cast<IDirect3DDevice9 *>(device.get()))}};
};

/// Runs the benches on a thread without the interpreter lock, as a renderer's is.
inline int runAsRenderer(int argc, char **argv) {
    Py_SetPythonHome(const_cast<char *>(ORVANEL_PYTHON27_HOME));
    Py_InitializeEx(0);
    PyObject *const watch = watchInterpreter();
    if (!watch)
        return 1;
    PyThreadState *const saved = PyEval_SaveThread();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    PyEval_RestoreThread(saved);
    Py_DECREF(watch);
    return 0;
}
