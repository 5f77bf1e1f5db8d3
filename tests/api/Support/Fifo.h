#pragma once

#include <string>

namespace Api {

/// A named pipe with an open reader that never reads, so that it can be opened and written without waiting.
class Fifo {
public:
    explicit Fifo(const std::string& path);
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;
    ~Fifo();

    /// False on systems without such pipes.
    bool isOpen() const { return reader_ >= 0; }

private:
    int reader_ = -1;
};

} // namespace Api
