// SPDX-License-Identifier: MIT
#pragma once

// From a method to a Python entry. A row names an entry and the C++ function behind it; everything else follows from
// the function's type:
//
//   row<"Orvanel_AddPoint", &Orvanel::AddPoint>("self, x, y", "...")
//
// Arguments are read straight out of the tuple by a function instantiated for the row: no format string, no table walk.
// Rejected: one interpreter of a data table for all entries, which costs an indirect call an argument (half of the time
// of a call with three integers), and code generated into the tree, which is one more thing to keep in step.
//
// Values after the function are the defaults of its last parameters and make the entry overloaded: fewer arguments are
// accepted, and what does not fit is answered with the list of prototypes. A default also declares its parameter:
// Bool32{0} is an INT that texts call BOOL.

#include <array>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "binding/argument.h"
#include "binding/entry.h"
#include "binding/result.h"
#include "overlay/orvanel.h"

namespace binding {

/// Declared types of a function's arguments, and how to call it with them.
template <typename Function>
struct Signature;

template <typename R, typename... Parameters>
struct Signature<R (*)(Parameters...)> {
    using Result = R;
    using Declared = std::tuple<Parameters...>;
    static constexpr bool isMethod = false;
};

template <typename R, typename Object, typename... Parameters>
struct Signature<R (Object::*)(Parameters...)> {
    using Result = R;
    using Declared = std::tuple<Self<Object>, Parameters...>;
    static constexpr bool isMethod = true;
};

template <typename R, typename Object, typename... Parameters>
struct Signature<R (Object::*)(Parameters...) const> {
    using Result = R;
    using Declared = std::tuple<Self<const Object>, Parameters...>;
    static constexpr bool isMethod = true;
};

template <typename T>
constexpr ResultShape resultShape() {
    if constexpr (std::is_void_v<T> || std::is_same_v<T, Outcome>)
        return {ResultKind::Nothing};
    else if constexpr (std::is_same_v<T, bool>)
        return {ResultKind::Bool};
    else if constexpr (std::is_integral_v<T>)
        return {sizeof(T) == 8 ? ResultKind::LongLong : ResultKind::Int};
    else if constexpr (std::is_same_v<T, PyObject *>)
        return {ResultKind::Object};
    else if constexpr (std::is_pointer_v<T>)
        return {ResultKind::Pointer, Pointee<std::remove_pointer_t<T>>::pointer};
    else
        return {ResultKind::OwnedPointer, Pointee<typename decltype(T::pointee)::element_type>::pointer};
}

template <FixedText Name, auto Function, auto... Defaults>
class Row {
    using Types = Signature<std::remove_const_t<decltype(Function)>>;
    using Result = typename Types::Result;

    static constexpr std::size_t kCount = std::tuple_size_v<typename Types::Declared>;
    static constexpr std::size_t kRequired = kCount - sizeof...(Defaults);
    static constexpr bool kOverloaded = sizeof...(Defaults) > 0;
    /// The interpreter makes no tuple for the only argument of a function, and counts for itself.
    static constexpr bool kTakesOne = kCount == 1 && !kOverloaded;

    template <std::size_t Index>
    static constexpr auto defaultValue() {
        return std::get<Index - kRequired>(std::tuple{Defaults...});
    }

    template <std::size_t Index>
    static constexpr auto declaredType() {
        if constexpr (Index < kRequired)
            return std::type_identity<Argument<std::tuple_element_t<Index, typename Types::Declared>>>{};
        else
            return std::type_identity<Argument<decltype(defaultValue<Index>())>>{};
    }

    template <std::size_t Index>
    using ArgumentAt = typename decltype(declaredType<Index>())::type;

    template <std::size_t... Index>
    static constexpr auto describe(std::index_sequence<Index...>) {
        return std::array<ArgumentShape, kCount>{
            ArgumentShape{ArgumentAt<Index>::text.c_str(), ArgumentAt<Index>::kind, ArgumentAt<Index>::pointer,
                          ArgumentAt<Index>::kind == ArgumentKind::Reference || (Types::isMethod && Index == 0)}...};
    }

    template <typename... Arguments>
    static PyObject *run(Arguments &&...arguments) {
        try {
            if constexpr (std::is_void_v<Result>) {
                std::invoke(Function, std::forward<Arguments>(arguments)...);
                Py_RETURN_NONE;
            } else {
                return toPython(std::invoke(Function, std::forward<Arguments>(arguments)...));
            }
        } catch (...) {
            return refuseException();
        }
    }

    template <std::size_t... Index>
    static bool fits(PyObject *const *objects, std::index_sequence<Index...>) {
        return (ArgumentAt<Index>::fits(objects[Index]) && ...);
    }

    /// Converts the first Given... objects, in order, and calls with them and the defaults of the rest.
    template <std::size_t... Given, std::size_t... Omitted>
    static PyObject *convertAndRun([[maybe_unused]] PyObject *const *objects, std::index_sequence<Given...> given,
                                   std::index_sequence<Omitted...>) {
        std::tuple<ArgumentAt<Given>...> arguments;
        Refusal refusal = Refusal::None;
        std::size_t refused = 0;
        const char *text = nullptr;
        const bool converted = ([&] {
            refusal = std::get<Given>(arguments).load(objects[Given]);
            if (refusal == Refusal::None)
                return true;
            refused = Given;
            text = ArgumentAt<Given>::text.c_str();
            return false;
        }() && ...);
        if (!converted) {
            // An overload is chosen by types. Only when they fit is the refusal that of one argument; asking afterwards
            // spares every call that succeeds a second conversion.
            if (kOverloaded && !fits(objects, given))
                return refuseOverload(Name.c_str(), kArguments, kRequired);
            return refuseArgument(Name.c_str(), refused + 1, text, refusal);
        }
        return run(std::get<Given>(arguments).get()..., defaultValue<sizeof...(Given) + Omitted>()...);
    }

    template <std::size_t Count>
    static PyObject *callWith(PyObject *const *objects) {
        return convertAndRun(objects, std::make_index_sequence<Count>{}, std::make_index_sequence<kCount - Count>{});
    }

    /// The candidate with as many arguments as are given.
    template <std::size_t Count>
    static PyObject *dispatch(PyObject *const *objects, std::size_t given) {
        if constexpr (Count <= kCount) {
            if (given == Count)
                return callWith<Count>(objects);
            return dispatch<Count + 1>(objects, given);
        } else {
            return refuseOverload(Name.c_str(), kArguments, kRequired);
        }
    }

    static PyObject *callWithTuple(PyObject *, PyObject *args) {
        if (!isServed())
            return refuseInterpreter();
        const std::size_t given = PyTuple_Check(args) ? static_cast<std::size_t>(PyTuple_GET_SIZE(args)) : kCount + 1;
        PyObject *const *const objects = reinterpret_cast<PyTupleObject *>(args)->ob_item;
        if constexpr (kOverloaded)
            return dispatch<kRequired>(objects, given);
        else if (given == kCount)
            return callWith<kCount>(objects);
        else
            return refuseArgumentCount(Name.c_str(), kCount, args);
    }

    static PyObject *callWithOne(PyObject *, PyObject *object) {
        return isServed() ? callWith<kCount>(&object) : refuseInterpreter();
    }

  public:
    static constexpr std::array<ArgumentShape, kCount> kArguments = describe(std::make_index_sequence<kCount>{});

    static constexpr Entry entry(const char *argumentNames, const char *meaning) {
        return {Name.c_str(),
                kTakesOne ? &callWithOne : &callWithTuple,
                kTakesOne ? METH_O : METH_VARARGS,
                kArguments,
                kRequired,
                resultShape<Result>(),
                argumentNames,
                meaning};
    }
};

/// See the top of the file.
template <FixedText Name, auto Function, auto... Defaults>
constexpr Entry row(const char *argumentNames, const char *meaning) {
    return Row<Name, Function, Defaults...>::entry(argumentNames, meaning);
}

} // namespace binding
