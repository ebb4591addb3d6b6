// SPDX-License-Identifier: MIT
// An interpreter in which memory runs out when a script says so, for tests in Python. Extension modules find this
// program's operators new before the library's. The interpreter has no hook for its own allocations: they are reached
// where it is linked in as an archive, whose calls the linker can lead through here (ORVANEL_WRAPPED_ALLOCATOR).
//
//   import _failing
//   _failing.arm(kind, granted)   on this thread the allocation after so many others fails, once; -1 for never. Kind 0:
//                                 C++; 1: the interpreter's as well
//   _failing.disarm()             whether one has failed since
//   _failing.kinds                how many kinds there are

#include "callback/python.h"

#include <cstddef>
#include <optional>

#include "platform/testing/failing_new.h"

namespace {

constexpr int kNever = -1;
thread_local int granted = kNever;
thread_local bool hasFailed = false;

#if ORVANEL_WRAPPED_ALLOCATOR
constexpr int kKinds = 2;

bool fails() {
    if (granted == kNever || granted-- != 0)
        return false;
    hasFailed = true;
    return true;
}
#else
constexpr int kKinds = 1;
#endif

std::optional<platform::FailingNew> failingNew;

PyObject *arm(PyObject *, PyObject *arguments) {
    int kind = 0;
    int first = 0;
    if (!PyArg_ParseTuple(arguments, "ii", &kind, &first))
        return nullptr;
    hasFailed = false;
    if (kind == 0)
        failingNew.emplace(first);
    else
        granted = first;
    Py_RETURN_NONE;
}

PyObject *disarm(PyObject *, PyObject *) {
    granted = kNever;
    const bool failed = hasFailed || (failingNew && failingNew->hasFailed());
    failingNew.reset();
    return PyBool_FromLong(failed);
}

PyMethodDef methods[] = {
    {"arm", arm, METH_VARARGS, nullptr}, {"disarm", disarm, METH_NOARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

} // namespace

#if ORVANEL_WRAPPED_ALLOCATOR
extern "C" {
void *__real_malloc(std::size_t size);
void *__real_realloc(void *memory, std::size_t size);
void *__real_PyObject_Malloc(std::size_t size);
void *__real_PyObject_Realloc(void *memory, std::size_t size);

void *__wrap_malloc(std::size_t size) {
    return fails() ? nullptr : __real_malloc(size);
}
void *__wrap_realloc(void *memory, std::size_t size) {
    return fails() ? nullptr : __real_realloc(memory, size);
}
void *__wrap_PyObject_Malloc(std::size_t size) {
    return fails() ? nullptr : __real_PyObject_Malloc(size);
}
void *__wrap_PyObject_Realloc(void *memory, std::size_t size) {
    return fails() ? nullptr : __real_PyObject_Realloc(memory, size);
}
}
#endif

int main(int argc, char **argv) {
    PyImport_AppendInittab("_failing", [] {
        PyObject *const module = Py_InitModule("_failing", methods);
        PyModule_AddIntConstant(module, "kinds", kKinds);
    });
    return Py_Main(argc, argv);
}
