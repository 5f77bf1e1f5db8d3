#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// The size at which blocks count as full in the files that this process saves, in place of what the environment says.
/// The environment is as before when the object is gone.
class BlockSizeSetting {
public:
    /// @param size In bytes; nothing for the library's own.
    explicit BlockSizeSetting(std::optional<std::uint32_t> size);
    BlockSizeSetting(const BlockSizeSetting&) = delete;
    BlockSizeSetting& operator=(const BlockSizeSetting&) = delete;
    ~BlockSizeSetting();

    /// What the environment of this process says, or else the library's own size.
    static std::uint32_t present();

private:
    std::optional<std::string> former_;
};

} // namespace MoxTool
