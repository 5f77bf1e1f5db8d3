#pragma once

#include "Support/EnvironmentGuard.h"

#include <Qel/Tnf/Block.h>

#include <optional>
#include <string>
#include <utility>

namespace Support {

/// Sets or removes MOXWRITER_DEFAULT_BLOCK_SIZE and starts from the growth step of a new process. Restores
/// both at the end, so that no test affects the next.
class BlockSizeGuard {
public:
    explicit BlockSizeGuard(const std::optional<std::string>& value = {})
        : variable_(BlockSizeVariable, value),
          formerStep_(std::exchange(QelTnf::defaultBlockSize, 10'485'760)) {}
    BlockSizeGuard(const BlockSizeGuard&) = delete;
    BlockSizeGuard& operator=(const BlockSizeGuard&) = delete;
    ~BlockSizeGuard() { QelTnf::defaultBlockSize = formerStep_; }

    /// Changes the variable again; nothing removes it.
    void set(const std::optional<std::string>& value) { variable_.set(value); }

private:
    EnvironmentGuard variable_;
    std::uint32_t formerStep_;
};

} // namespace Support
