#include "Support/Thrown.h"

#include <boost/exception/get_error_info.hpp>

#include <sstream>

namespace Support {

namespace {

/// One of boost's error infos, or else `fallback`.
template <typename Info>
typename Info::value_type infoOr(const Qel::Exception::Exception& caught,
                                 typename Info::value_type fallback) {
    const auto* const value = boost::get_error_info<Info>(caught);
    return value != nullptr ? *value : fallback;
}

} // namespace

testing::AssertionResult matches(const Qel::Exception::Exception& caught, const std::type_info& type,
                                 const Thrown& expected) {
    const std::string_view file = infoOr<boost::throw_file>(caught, "");
    const std::string_view function = infoOr<boost::throw_function>(caught, "");
    std::ostringstream differences;
    if (typeid(caught) != type) {
        differences << "class " << typeid(caught).name() << " instead of " << type.name() << '\n';
    }
    if (caught.code() != expected.code) {
        differences << "code " << caught.code() << " instead of " << expected.code << '\n';
    }
    if (caught.what() != expected.text) {
        differences << "text \"" << caught.what() << "\" instead of \"" << expected.text << "\"\n";
    }
    if (!file.ends_with(expected.file)) {
        differences << "file \"" << file << "\" instead of \"" << expected.file << "\"\n";
    }
    if (function.find(expected.function) == std::string_view::npos) {
        differences << "function \"" << function << "\" without \"" << expected.function << "\"\n";
    }
    if (infoOr<boost::throw_line>(caught, 0) <= 0) {
        differences << "no line\n";
    }
    if (boost::get_throw_location(caught).column() == 0) {
        differences << "no column\n";
    }
    return differences.str().empty() ? testing::AssertionSuccess()
                                     : testing::AssertionFailure() << differences.str();
}

} // namespace Support
