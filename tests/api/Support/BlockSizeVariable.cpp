#include "api/Support/BlockSizeVariable.h"

#include <cstdlib>

namespace Api {

namespace {

constexpr const char* Name = "MOXWRITER_DEFAULT_BLOCK_SIZE";

// The one place where systems differ.
void put(const std::optional<std::string>& value) {
#if defined(_WIN32)
    _putenv_s(Name, value.value_or("").c_str());
#else
    if (value) {
        setenv(Name, value->c_str(), 1);
    } else {
        unsetenv(Name);
    }
#endif
}

} // namespace

BlockSizeVariable::BlockSizeVariable(const std::optional<std::string>& value) {
    if (const char* const present = std::getenv(Name); present != nullptr) {
        former = present;
    }
    put(value);
}

BlockSizeVariable::~BlockSizeVariable() {
    put(former);
}

} // namespace Api
