// SPDX-License-Identifier: MIT
#include "binding/pointer_conversion.h"

#include "binding/opaque_chain.h"
#include "binding/type_registry.h"

namespace binding {

namespace {

// A proxy's "this" may be a proxy again. Nobody nests them deeper; a proxy that contains itself ends here.
constexpr int kDeepestProxy = 16;

PyObject *thisName() {
    static PyObject *const name = PyString_InternFromString("this");
    return name;
}

/// The attribute "this": from the instance's own dictionary if it is there, which is the quick way and the one that
/// classes with attribute hooks expect. Null without an error pending when there is none.
PyRef thisOf(PyObject *object) {
    PyObject *dictionary = nullptr;
    if (PyInstance_Check(object))
        dictionary = reinterpret_cast<PyInstanceObject *>(object)->in_dict;
    else if (PyObject **const slot = _PyObject_GetDictPtr(object))
        dictionary = *slot;
    if (dictionary) {
        if (PyObject *const found = PyDict_GetItem(dictionary, thisName()))
            return PyRef::share(found);
    }
    PyRef attribute = PyRef::adopt(PyObject_GetAttr(object, thisName()));
    if (!attribute)
        PyErr_Clear();
    return attribute;
}

/// The opaque object that `object` is, or that its "this" leads to; null when there is none. A reference is kept to one
/// that was found inside another object.
OpaqueObject *findCarrier(PyObject *object, PyRef &keptAlive) {
    if (OpaqueObject *const opaque = asOpaque(object))
        return opaque;
    keptAlive = thisOf(object);
    for (int depth = 0; keptAlive && depth < kDeepestProxy; ++depth) {
        if (OpaqueObject *const opaque = asOpaque(keptAlive.get()))
            return opaque;
        keptAlive = thisOf(keptAlive.get());
    }
    return nullptr;
}

/// Looks along the chain for an object that is accepted as `type`.
bool searchChain(OpaqueObject *carrier, TypeRecord *type, PointerArgument &result) {
    OpaqueObject *opaque = carrier;
    for (std::size_t left = chainLength(carrier); left > 0; --left, opaque = nextInChain(opaque)) {
        if (!opaque->type)
            continue;
        const CastRecord *const cast = opaque->type == type ? nullptr : findCast(opaque->type, type);
        if (!cast && opaque->type != type)
            continue;
        result.convert = cast ? cast->convert : nullptr;
        result.carrier = opaque;
        // Anyone may cut the chain before this link.
        if (opaque != carrier)
            result.keptAlive = PyRef::share(reinterpret_cast<PyObject *>(opaque));
        return true;
    }
    return false;
}

} // namespace

bool searchPointer(PyObject *object, TypeRecord *type, PointerArgument &result) {
    OpaqueObject *const carrier = findCarrier(object, result.keptAlive);
    return carrier && searchChain(carrier, type, result);
}

bool carriedAddress(PyObject *object, void **address) {
    PyRef keptAlive;
    OpaqueObject *const carrier = findCarrier(object, keptAlive);
    if (carrier)
        *address = carrier->pointer;
    return carrier != nullptr;
}

namespace {

/// An instance of the class without a call of its __init__. New reference or null.
PyObject *makeInstance(const ClassRecord &record, PyObject *opaque) {
    if (!record.makeInstance) {
        const PyRef dictionary = PyRef::adopt(PyDict_New());
        if (!dictionary || PyDict_SetItem(dictionary.get(), thisName(), opaque) != 0)
            return nullptr;
        return PyInstance_NewRaw(record.instanceArguments, dictionary.get());
    }
    PyRef instance = PyRef::adopt(PyObject_Call(record.makeInstance, record.instanceArguments, nullptr));
    if (!instance)
        return nullptr;
    PyObject **const dictionary = _PyObject_GetDictPtr(instance.get());
    if (dictionary && !*dictionary)
        *dictionary = PyDict_New();
    // Past the class's own __setattr__, which may ask for a "this" that is not there yet.
    const int failed = dictionary && *dictionary ? PyDict_SetItem(*dictionary, thisName(), opaque)
                                                 : PyObject_SetAttr(instance.get(), thisName(), opaque);
    return failed ? nullptr : instance.release();
}

bool canWrap(const ClassRecord *record) {
    return record && record->instanceArguments && (record->makeInstance || PyClass_Check(record->instanceArguments));
}

} // namespace

PyObject *wrapPointer(void *pointer, TypeRecord *type) {
    if (!pointer)
        Py_RETURN_NONE;
    PyRef opaque = PyRef::adopt(makeOpaque(pointer, type, Ownership::Borrowed));
    const ClassRecord *const record = static_cast<ClassRecord *>(type->classRecord);
    if (!opaque || !canWrap(record))
        return opaque.release();
    return makeInstance(*record, opaque.get());
}

namespace {

PyObject *optionalAttribute(PyObject *object, const char *name) {
    PyObject *const attribute = PyObject_GetAttrString(object, name);
    if (!attribute)
        PyErr_Clear();
    return attribute;
}

// One record at one address: other modules may have taken it over with the type.
ClassRecord orvanelClass;

} // namespace

bool registerProxyClass(PyObject *proxyClass) {
    ClassRecord record{};
    if (PyType_Check(proxyClass)) {
        record.instanceArguments = PyTuple_Pack(1, proxyClass);
        if (!record.instanceArguments)
            return false;
        record.makeInstance = optionalAttribute(proxyClass, "__new__");
    } else {
        Py_INCREF(proxyClass);
        record.instanceArguments = proxyClass;
    }
    Py_INCREF(proxyClass);
    record.proxyClass = proxyClass;
    record.destroy = optionalAttribute(proxyClass, "__swig_destroy__");
    record.destroyTakesTuple = 1;

    const ClassRecord before = std::exchange(orvanelClass, record);
    TypeRecord *const type = typeRecordOf<Orvanel>();
    type->classRecord = &orvanelClass;
    // The record is a static of this module: no other runtime may free it.
    type->ownsClassRecord = 0;
    for (PyObject *const object : {before.proxyClass, before.makeInstance, before.instanceArguments, before.destroy})
        Py_XDECREF(object);
    return true;
}

void forgetProxyClass() {
    TypeRecord *const type = typeRecordOf<Orvanel>();
    if (type->classRecord == &orvanelClass)
        type->classRecord = nullptr;
    orvanelClass = {};
}

} // namespace binding
