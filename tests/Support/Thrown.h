#pragma once

#include <Qel/Exception/Exception.h>

#include <boost/throw_exception.hpp>
#include <gtest/gtest.h>

#include <string_view>
#include <typeinfo>

namespace Support {

/// What a failure reports besides its class.
struct Thrown {
    int code;
    std::string_view text;
    std::string_view file;     ///< From `Qel/` on, without extension; the throw file ends in it.
    std::string_view function; ///< The throw function contains it.
};

/// Reports all differences between a caught exception and the expected one.
testing::AssertionResult matches(const Qel::Exception::Exception& caught, const std::type_info& type,
                                 const Thrown& expected);

/// Runs an action that is expected to end in a failure of the library.
/// @tparam Class The class that is thrown, inside boost's wrapper.
template <typename Class, typename Action>
testing::AssertionResult throws(const Thrown& expected, Action action) {
    try {
        action();
    } catch (const Qel::Exception::Exception& caught) {
        return matches(caught, typeid(boost::wrapexcept<Class>), expected);
    }
    return testing::AssertionFailure() << "nothing was thrown instead of \"" << expected.text << "\"";
}

} // namespace Support
