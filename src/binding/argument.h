// SPDX-License-Identifier: MIT
#pragma once

// One class template a declared type: how an argument of that type is spelled in error texts, tested, and converted.
//
//   text           the declared type as texts and prototypes spell it
//   kind, pointer  what the type is, for whoever describes the table
//   fits(object)   whether the object would convert by its type alone
//   load(object)   converts and keeps the value; what it refuses leaves no Python error pending
//   get()          the value as the method takes it
//
// Everything runs with the interpreter lock held. Objects are borrowed from the argument tuple.

#include <cstddef>
#include <limits>
#include <utility>

#include "binding/pointer_conversion.h"
#include "binding/type_registry.h"
#include "binding/type_table.h"
#include "callback/py_callback.h"
#include "platform/win_types.h"

namespace binding {

/// Why an argument was refused, each with an exception class of its own.
enum class Refusal : unsigned char {
    None,
    Type,  ///< TypeError: a wrong type, or an integer that does not fit
    Range, ///< OverflowError: a number that does not fit a float
    Null,  ///< ValueError: null where a reference is declared
};

enum class ArgumentKind { Object, Int, LongLong, Bool, Float, Pointer, Reference };

inline constexpr std::size_t kNoPointer = std::numeric_limits<std::size_t>::max();

/// A 32-bit integer out of an int or a long.
inline bool convertInt(PyObject *object, INT &value) {
    long wide = 0;
    if (PyInt_Check(object)) {
        wide = PyInt_AS_LONG(object);
    } else if (PyLong_Check(object)) {
        int overflow = 0;
        wide = PyLong_AsLongAndOverflow(object, &overflow);
        if (overflow != 0)
            return false;
    } else {
        return false;
    }
    value = static_cast<INT>(wide);
    return value == wide;
}

/// A 64-bit integer out of a long or an int.
inline bool convertLongLong(PyObject *object, LONGLONG &value) {
    if (PyInt_Check(object)) {
        value = PyInt_AS_LONG(object);
        return true;
    }
    if (!PyLong_Check(object))
        return false;
    int overflow = 0;
    value = PyLong_AsLongLongAndOverflow(object, &overflow);
    return overflow == 0;
}

/// True, False, or whether an int or a long of any size is not zero.
inline bool convertBool(PyObject *object, bool &value) {
    if (PyInt_Check(object))
        value = PyInt_AS_LONG(object) != 0;
    else if (PyLong_Check(object))
        value = _PyLong_Sign(object) != 0;
    else
        return false;
    return true;
}

/// A float out of a float, int or long. Infinities are out of range, NaN is not.
inline Refusal convertFloat(PyObject *object, float &value) {
    double wide = 0;
    if (PyFloat_Check(object)) {
        wide = PyFloat_AS_DOUBLE(object);
    } else if (PyInt_Check(object)) {
        wide = static_cast<double>(PyInt_AS_LONG(object));
    } else if (PyLong_Check(object)) {
        wide = PyLong_AsDouble(object);
        if (wide == -1.0 && PyErr_Occurred()) {
            PyErr_Clear();
            return Refusal::Range;
        }
    } else {
        return Refusal::Type;
    }
    if (std::fabs(wide) > static_cast<double>(std::numeric_limits<float>::max()))
        return Refusal::Range;
    value = static_cast<float>(wide);
    return Refusal::None;
}

template <typename T>
class Argument;

/// Declared as PyObject *: passed on as it is.
template <>
class Argument<PyObject *> {
  public:
    static constexpr FixedText text = "PyObject *";
    static constexpr ArgumentKind kind = ArgumentKind::Object;
    static constexpr std::size_t pointer = kNoPointer;

    static bool fits(PyObject *) { return true; }
    Refusal load(PyObject *object) {
        m_object = object;
        return Refusal::None;
    }
    PyObject *get() const { return m_object; }

  private:
    PyObject *m_object = nullptr;
};

/// The shared part of the types that a conversion function of the form `bool (PyObject *, T &)` serves.
template <typename T, auto Convert, FixedText Text, ArgumentKind Kind>
class ScalarArgument {
  public:
    static constexpr FixedText text = Text;
    static constexpr ArgumentKind kind = Kind;
    static constexpr std::size_t pointer = kNoPointer;

    static bool fits(PyObject *object) {
        T ignored;
        return Convert(object, ignored);
    }
    Refusal load(PyObject *object) { return Convert(object, m_value) ? Refusal::None : Refusal::Type; }
    T get() const { return m_value; }

  private:
    T m_value{};
};

template <>
class Argument<INT> : public ScalarArgument<INT, convertInt, "INT", ArgumentKind::Int> {};

template <>
class Argument<LONGLONG> : public ScalarArgument<LONGLONG, convertLongLong, "LONGLONG", ArgumentKind::LongLong> {};

template <>
class Argument<bool> : public ScalarArgument<bool, convertBool, "bool", ArgumentKind::Bool> {};

/// A BOOL, told apart from the INT that it is in C++. Without private members, so that it can be a template argument.
struct Bool32 {
    BOOL value;

    constexpr operator BOOL() const { return value; }
};

template <>
class Argument<Bool32> : public ScalarArgument<INT, convertInt, "BOOL", ArgumentKind::Int> {};

template <>
class Argument<ECallBack_State> : public ScalarArgument<INT, convertInt, "ECallBack_State", ArgumentKind::Int> {
  public:
    ECallBack_State get() const { return static_cast<ECallBack_State>(ScalarArgument::get()); }
};

template <>
class Argument<float> {
  public:
    static constexpr FixedText text = "float";
    static constexpr ArgumentKind kind = ArgumentKind::Float;
    static constexpr std::size_t pointer = kNoPointer;

    static bool fits(PyObject *object) {
        float ignored;
        return convertFloat(object, ignored) == Refusal::None;
    }
    Refusal load(PyObject *object) { return convertFloat(object, m_value); }
    float get() const { return m_value; }

  private:
    float m_value = 0;
};

/// What pointers and references share. By its type alone None fits both.
template <typename T>
class PointeeArgument {
  public:
    static constexpr std::size_t pointer = Pointee<std::remove_const_t<T>>::pointer;

    static bool fits(PyObject *object) {
        PointerArgument ignored;
        return convertPointer(object, record(), ignored);
    }

  protected:
    static constexpr auto qualifiedName() {
        if constexpr (std::is_const_v<T>)
            return Pointee<std::remove_const_t<T>>::name + " const";
        else
            return Pointee<T>::name;
    }
    static TypeRecord *record() { return typeRecordOf<std::remove_const_t<T>>(); }

    Refusal loadPointer(PyObject *object) {
        if (OpaqueObject *const opaque = exactCarrier(object, record())) {
            m_argument.carrier = opaque;
            return Refusal::None;
        }
        // A value of its own: one whose address is taken would be kept in memory on the short way, too.
        PointerArgument found;
        if (!convertPointer(object, record(), found))
            return Refusal::Type;
        m_argument = std::move(found);
        return Refusal::None;
    }
    T *pointee() const { return static_cast<T *>(m_argument.pointer()); }
    OpaqueObject *carrier() const { return m_argument.carrier; }

  private:
    PointerArgument m_argument;
};

template <typename T>
class Argument<T *> : public PointeeArgument<T> {
  public:
    static constexpr FixedText text = PointeeArgument<T>::qualifiedName() + " *";
    static constexpr ArgumentKind kind = ArgumentKind::Pointer;

    Refusal load(PyObject *object) { return this->loadPointer(object); }
    T *get() const { return this->pointee(); }
};

template <typename T>
class Argument<T &> : public PointeeArgument<T> {
  public:
    static constexpr auto text = [] {
        // "Name *&", but "Name &".
        if constexpr (std::is_pointer_v<T>)
            return PointeeArgument<T>::qualifiedName() + "&";
        else
            return PointeeArgument<T>::qualifiedName() + " &";
    }();
    static constexpr ArgumentKind kind = ArgumentKind::Reference;

    Refusal load(PyObject *object) {
        const Refusal refusal = this->loadPointer(object);
        return refusal == Refusal::None && !this->pointee() ? Refusal::Null : refusal;
    }
    T &get() const { return *this->pointee(); }
};

/// The object that a method runs on: declared as a pointer, but null is refused, since there is nothing to run on. In
/// use from here to the end of the call, so that neither converting the other arguments nor the method itself ends it.
template <typename T>
struct Self {};

template <typename T>
class Argument<Self<T>> {
  public:
    static constexpr FixedText text = Argument<T *>::text;
    static constexpr ArgumentKind kind = Argument<T *>::kind;
    static constexpr std::size_t pointer = Argument<T *>::pointer;

    static bool fits(PyObject *object) { return Argument<T *>::fits(object); }
    Refusal load(PyObject *object) {
        TypeRecord *const record = typeRecordOf<std::remove_const_t<T>>();
        if (const OpaqueObject *const opaque = exactCarrier(object, record))
            return begin(opaque->pointer);
        PointerArgument found;
        if (!convertPointer(object, record, found))
            return Refusal::Type;
        const Refusal refusal = begin(found.pointer());
        m_keptAlive = std::move(found.keptAlive);
        return refusal;
    }
    T *get() const { return static_cast<T *>(const_cast<PyCallback *>(m_use.object())); }

  private:
    Refusal begin(void *address) {
        if (!address)
            return Refusal::Null;
        m_use.begin(*static_cast<T *>(address));
        return Refusal::None;
    }

    PyRef m_keptAlive;
    PyCallback::Use m_use;
};

/// A pointer whose ownership the Python object gives up. Whoever destroys the pointee takes the address away, too.
template <typename T>
struct Disowned {
    T *pointee;
    OpaqueObject *carrier; ///< borrowed; null for None
};

template <typename T>
class Argument<Disowned<T>> : public Argument<T *> {
  public:
    Disowned<T> get() const {
        if (this->carrier())
            this->carrier()->owns = 0;
        return {this->pointee(), this->carrier()};
    }
};

} // namespace binding
