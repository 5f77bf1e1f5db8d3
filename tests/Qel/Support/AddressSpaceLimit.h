#pragma once

#include <cstdint>
#include <memory>

namespace Support {

/// During its lifetime, allocations of more than half a GiB fail.
class AddressSpaceLimit {
public:
    /// Whether this system can be limited; elsewhere a test has to be skipped.
    static bool isAvailable();

    AddressSpaceLimit();
    AddressSpaceLimit(const AddressSpaceLimit&) = delete;
    AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;
    ~AddressSpaceLimit();

private:
    struct Former;
    std::unique_ptr<Former> former_;
};

} // namespace Support
