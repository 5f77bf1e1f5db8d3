#pragma once

#include <Qel/Exception/Exception.h>

#include <boost/exception/get_error_info.hpp>
#include <boost/throw_exception.hpp>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <typeinfo>

namespace Api {

/// What an application learns of a failure of the library.
struct Failure {
    const std::type_info* type;
    int code;
    std::string_view text;
    std::string_view file;     ///< The throw file ends in this.
    std::string_view function; ///< The throw function contains this.
};

/// @tparam Class The class that is thrown, inside boost's wrapper.
template <typename Class>
Failure failure(int code, std::string_view text, std::string_view file, std::string_view function) {
    return {&typeid(boost::wrapexcept<Class>), code, text, file, function};
}

/// Tells all differences between a caught exception and the expected one.
testing::AssertionResult matches(const Qel::Exception::Exception& caught, const Failure& expected);

/// Runs an action that is expected to end in a failure of the library.
template <typename Action>
testing::AssertionResult fails(Action action, const Failure& expected) {
    try {
        action();
    } catch (const Qel::Exception::Exception& caught) {
        return matches(caught, expected);
    }
    return testing::AssertionFailure() << "nothing was thrown instead of \"" << expected.text << "\"";
}

} // namespace Api
