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
    bool isOpen() const { return reader >= 0; }

private:
    int reader = -1;
};

} // namespace Api
