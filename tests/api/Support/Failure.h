#pragma once

#include "Support/Thrown.h"

#include <Qel/Exception/Exception.h>

#include <boost/throw_exception.hpp>
#include <gtest/gtest.h>

#include <string_view>
#include <typeinfo>

namespace Api {

/// What an application learns from a failure of the library.
struct Failure {
    const std::type_info* type;
    Support::Thrown thrown;
};

/// @tparam Class The class that is thrown, inside boost's wrapper.
template <typename Class>
Failure failure(int code, std::string_view text, std::string_view file, std::string_view function) {
    return {&typeid(boost::wrapexcept<Class>), {code, text, file, function}};
}

/// Runs an action that is expected to end in a failure of the library.
template <typename Action>
testing::AssertionResult fails(Action action, const Failure& expected) {
    try {
        action();
    } catch (const Qel::Exception::Exception& caught) {
        return Support::matches(caught, *expected.type, expected.thrown);
    }
    return testing::AssertionFailure() << "nothing was thrown instead of \"" << expected.thrown.text << "\"";
}

} // namespace Api
