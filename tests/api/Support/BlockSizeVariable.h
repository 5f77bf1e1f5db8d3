#pragma once

#include <optional>
#include <string>

namespace Api {

/// Sets the environment variable of the block size, or removes it, and restores it at the end.
class BlockSizeVariable {
public:
    explicit BlockSizeVariable(const std::optional<std::string>& value);
    BlockSizeVariable(const BlockSizeVariable&) = delete;
    BlockSizeVariable& operator=(const BlockSizeVariable&) = delete;
    ~BlockSizeVariable();

private:
    std::optional<std::string> former;
};

} // namespace Api
