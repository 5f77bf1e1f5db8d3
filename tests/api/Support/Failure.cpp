#include "api/Support/Failure.h"

#include <sstream>

namespace Api {

testing::AssertionResult matches(const Qel::Exception::Exception& caught, const Failure& expected) {
    const char* const* const file = boost::get_error_info<boost::throw_file>(caught);
    const char* const* const function = boost::get_error_info<boost::throw_function>(caught);
    const int* const line = boost::get_error_info<boost::throw_line>(caught);
    std::ostringstream differences;
    if (typeid(caught) != *expected.type) {
        differences << "class " << typeid(caught).name() << " instead of " << expected.type->name() << '\n';
    }
    if (caught.code() != expected.code) {
        differences << "code " << caught.code() << " instead of " << expected.code << '\n';
    }
    if (caught.what() != expected.text) {
        differences << "text \"" << caught.what() << "\" instead of \"" << expected.text << "\"\n";
    }
    if (file == nullptr || !std::string_view(*file).ends_with(expected.file)) {
        differences << "file \"" << (file == nullptr ? "" : *file) << "\" instead of \"" << expected.file
                    << "\"\n";
    }
    if (function == nullptr ||
        std::string_view(*function).find(expected.function) == std::string_view::npos) {
        differences << "function \"" << (function == nullptr ? "" : *function) << "\" without \""
                    << expected.function << "\"\n";
    }
    if (line == nullptr || *line <= 0) {
        differences << "no line\n";
    }
    return differences.str().empty() ? testing::AssertionSuccess()
                                     : testing::AssertionFailure() << differences.str();
}

} // namespace Api
