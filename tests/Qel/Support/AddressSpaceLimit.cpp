#include "Qel/Support/AddressSpaceLimit.h"

// The only platform-dependent code of this class.
#if defined(__linux__)

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

namespace Support {

namespace {

constexpr rlim_t Slack = rlim_t{512} << 20U;

rlim_t usedAddressSpace() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

struct AddressSpaceLimit::Former {
    rlimit limit{};
};

bool AddressSpaceLimit::isAvailable() {
    return true;
}

AddressSpaceLimit::AddressSpaceLimit() : former_(std::make_unique<Former>()) {
    getrlimit(RLIMIT_AS, &former_->limit);
    rlimit lowered = former_->limit;
    lowered.rlim_cur = usedAddressSpace() + Slack;
    setrlimit(RLIMIT_AS, &lowered);
}

AddressSpaceLimit::~AddressSpaceLimit() {
    setrlimit(RLIMIT_AS, &former_->limit);
}

} // namespace Support

#else

namespace Support {

struct AddressSpaceLimit::Former {};

bool AddressSpaceLimit::isAvailable() {
    return false;
}

AddressSpaceLimit::AddressSpaceLimit() = default;

AddressSpaceLimit::~AddressSpaceLimit() = default;

} // namespace Support

#endif
