// The test program's own functions take precedence over those of the C library.

#include "Qel/Support/FakeNames.h"

// The only platform-dependent code of this class.
#if defined(__linux__)

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <cstring>

namespace {

bool isFake = false;
std::optional<std::string> fakeName;

template <typename Function>
Function* ofTheSystem(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" int gethostname(char* name, std::size_t len) noexcept {
    if (!isFake) {
        return ofTheSystem<int(char*, std::size_t)>("gethostname")(name, len);
    }
    if (!fakeName) {
        return -1;
    }
    // As in POSIX, a name that is too long ends without a zero byte.
    std::strncpy(name, fakeName->c_str(), len);
    return 0;
}

extern "C" passwd* getpwuid(uid_t id) {
    static passwd user;
    if (!isFake) {
        return ofTheSystem<passwd*(uid_t)>("getpwuid")(id);
    }
    if (!fakeName || id != geteuid()) {
        return nullptr;
    }
    user.pw_name = fakeName->data();
    return &user;
}

namespace Support {

bool FakeNames::isAvailable() {
    return true;
}

FakeNames::FakeNames(const std::optional<std::string>& name) {
    fakeName = name;
    isFake = true;
}

FakeNames::~FakeNames() {
    isFake = false;
}

} // namespace Support

#else

namespace Support {

bool FakeNames::isAvailable() {
    return false;
}

FakeNames::FakeNames(const std::optional<std::string>&) {}

FakeNames::~FakeNames() = default;

} // namespace Support

#endif
