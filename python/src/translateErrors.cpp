#include "translateErrors.h"

#include <Qel/Exception/Exception.h>

#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>
#include <pybind11/pybind11.h>

#include <exception>
#include <new>
#include <stdexcept>

namespace py = pybind11;

namespace MoxPython {

namespace {

// A null pointer becomes None.
template <typename InfoT>
py::object placeOf(const Qel::Exception::Exception& error) {
    const auto* const value = boost::get_error_info<InfoT>(error);
    return value == nullptr ? py::object(py::none()) : py::cast(*value);
}

template <typename... ArgumentsT>
void raise(const char* maker, const ArgumentsT&... arguments) {
    const py::object error = py::module_::import("moxwriter._errors").attr(maker)(arguments...);
    PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
}

void translate(std::exception_ptr pointer) {
    try {
        std::rethrow_exception(pointer);
    } catch (const Qel::Exception::Exception& error) {
        raise("_writer_error", error.code(), py::bytes(error.what()), placeOf<boost::throw_file>(error),
              placeOf<boost::throw_line>(error), placeOf<boost::throw_function>(error));
    } catch (const std::out_of_range& error) {
        raise("_position_error", py::bytes(error.what()));
    } catch (const std::bad_alloc& error) {
        raise("_memory_error", py::bytes(error.what()));
    }
}

} // namespace

void translateErrors() {
    py::register_local_exception_translator([](std::exception_ptr pointer) {
        try {
            translate(pointer);
        } catch (py::error_already_set& error) {
            error.restore();
        }
    });
}

} // namespace MoxPython
